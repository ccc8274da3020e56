// The owning handle and the count it maintains.
#include "bxbase/Reference.h"
#include "bxbase/LiveObjects.h"
#include "bxbase/ReferencedImpl.h"
#include "bxbase/ReferencedObject.h"

#include <gtest/gtest.h>

#include <utility>

namespace {

/// Tells its test when it dies.
class Thing : public bxbase::ReferencedObject {
public:
    explicit Thing(int& deaths) : deaths(deaths) {}
    virtual ~Thing() { ++deaths; }

private:
    int& deaths;
};

class ReferenceTest : public testing::Test {
protected:
    Thing* makeThing() { return new bxbase::ReferencedImpl<Thing>(deaths); }

    int deaths = 0;
};

TEST_F(ReferenceTest, NewObjectDiesWithTheOnlyHandle) {
    {
        const bxbase::Reference<Thing> thing(makeThing());
        EXPECT_EQ(deaths, 0);
    }
    EXPECT_EQ(deaths, 1);
}

TEST_F(ReferenceTest, CopyKeepsTheObjectAlive) {
    bxbase::Reference<Thing> first(makeThing());
    bxbase::Reference<Thing> second = first;
    first.clear();
    EXPECT_EQ(deaths, 0);
    EXPECT_FALSE(first);
    second.clear();
    EXPECT_EQ(deaths, 1);
}

TEST_F(ReferenceTest, MoveHandsTheReferenceOver) {
    bxbase::Reference<Thing> first(makeThing());
    bxbase::Reference<Thing> second = std::move(first);
    EXPECT_EQ(first.get(), nullptr);
    second.clear();
    EXPECT_EQ(deaths, 1);
}

TEST_F(ReferenceTest, AssignmentReleasesWhatWasHeld) {
    int otherDeaths = 0;
    bxbase::Reference<Thing> handle(makeThing());
    handle = new bxbase::ReferencedImpl<Thing>(otherDeaths);
    EXPECT_EQ(deaths, 1);
    EXPECT_EQ(otherDeaths, 0);
    handle = nullptr;
    EXPECT_EQ(otherDeaths, 1);
}

TEST_F(ReferenceTest, AssignmentToItselfKeepsTheObject) {
    bxbase::Reference<Thing> handle(makeThing());
    const bxbase::Reference<Thing>& same = handle;
    handle = same;
    EXPECT_EQ(deaths, 0);
    ASSERT_TRUE(handle);
    handle = handle.get();
    EXPECT_EQ(deaths, 0);
    handle.clear();
    EXPECT_EQ(deaths, 1);
}

TEST_F(ReferenceTest, DetachLeavesTheReleaseToTheCaller) {
    bxbase::Reference<Thing> handle(makeThing());
    Thing* const thing = handle.detach();
    EXPECT_FALSE(handle);
    EXPECT_EQ(deaths, 0);
    thing->release();
    EXPECT_EQ(deaths, 1);
}

TEST_F(ReferenceTest, PointerWrittenThroughTheAddressIsReleasedOnce) {
    {
        bxbase::Reference<Thing> handle;
        *handle.getAddressOf() = bxbase::Reference<Thing>(makeThing()).detach();
        EXPECT_EQ(deaths, 0);
    }
    EXPECT_EQ(deaths, 1);
}

TEST_F(ReferenceTest, EveryObjectAliveIsCountedByItsType) {
    const int before = bxbase::LiveObjects::total();
    bxbase::Reference<Thing> first(makeThing());
    bxbase::Reference<Thing> second(makeThing());
    EXPECT_EQ(bxbase::LiveObjects::total(), before + 2);
    EXPECT_EQ(bxbase::LiveObjects::counter(typeid(Thing)), 2);
    first.clear();
    second.clear();
    EXPECT_EQ(bxbase::LiveObjects::total(), before);
}

} // namespace
