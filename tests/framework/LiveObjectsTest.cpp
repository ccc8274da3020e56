// Counts the reference-counted objects that are alive, over all modules of the process.
#include "bxbase/LiveObjects.h"

#include <gmock/gmock.h>

namespace livetest {

struct Engine {};
template <class T> struct Wrapper {};

} // namespace livetest

namespace {

using bxbase::LiveObjects;

class LiveObjectsTest : public testing::Test {
protected:
    ~LiveObjectsTest() override {
        LiveObjects::counter(typeid(livetest::Engine)) = 0;
        LiveObjects::counter(typeid(livetest::Wrapper<int>)) = 0;
    }
};

TEST_F(LiveObjectsTest, GivesEachTypeOneCounter) {
    int& first = LiveObjects::counter(typeid(livetest::Engine));
    int& other = LiveObjects::counter(typeid(livetest::Wrapper<int>));
    EXPECT_EQ(&first, &LiveObjects::counter(typeid(livetest::Engine)));
    EXPECT_NE(&first, &other);
}

TEST_F(LiveObjectsTest, ListsLiveObjectsByReadableName) {
    LiveObjects::counter(typeid(livetest::Engine)) = 2;
    LiveObjects::counter(typeid(livetest::Wrapper<int>)) = 1;
    EXPECT_THAT(LiveObjects::byType(),
                testing::IsSupersetOf({std::pair<const std::string, int>("livetest::Engine", 2),
                                       std::pair<const std::string, int>("livetest::Wrapper<int>", 1)}));
}

TEST_F(LiveObjectsTest, LeavesOutTypesOfWhichNothingLives) {
    LiveObjects::counter(typeid(livetest::Engine)) = 0;
    EXPECT_EQ(LiveObjects::byType().count("livetest::Engine"), 0u);
}

TEST_F(LiveObjectsTest, TotalsAllTypes) {
    const int before = LiveObjects::total();
    LiveObjects::counter(typeid(livetest::Engine)) += 2;
    LiveObjects::counter(typeid(livetest::Wrapper<int>)) += 3;
    EXPECT_EQ(LiveObjects::total(), before + 5);
}

} // namespace
