// What all engines have in common.
#include "SorvaneCommon/ExportUtils/ExportEngineBase.h"
#include "bxbase/ReferencedImpl.h"
#include "support/TestPage.h"

#include <gmock/gmock.h>

#include <vector>

namespace {

/// An engine that shows what its base keeps.
class Engine : public ExportUtils::ExportEngineBase {
public:
    bool showDialog() override { return false; }
    int exportData(void*, ExportErrorSink&) override { return 0; }

    std::vector<ExportDataItem*> heldPages() const {
        std::vector<ExportDataItem*> held;
        for (const auto& page : pages)
            held.push_back(page.get());
        return held;
    }
    using ExportEngineBase::parentWindow;
};

class EngineBaseTest : public testing::Test {
protected:
    test::TestPage first{L"1.tif"};
    test::TestPage second{L"2.tif"};
    bxbase::Reference<Engine> engine{new bxbase::ReferencedImpl<Engine>};
};

TEST_F(EngineBaseTest, KeepsPagesInTheOrderTheyWereAdded) {
    EXPECT_TRUE(engine->addData(&second));
    EXPECT_TRUE(engine->addData(&first));
    EXPECT_THAT(engine->heldPages(), testing::ElementsAre(&second, &first));
}

TEST_F(EngineBaseTest, HoldsOneReferenceToAPageUntilItDies) {
    engine->addData(&first);
    EXPECT_EQ(first.references, 1);
    engine.clear();
    EXPECT_EQ(first.references, 0);
}

TEST_F(EngineBaseTest, HoldsTwoReferencesToAPageAddedTwice) {
    engine->addData(&first);
    engine->addData(&first);
    EXPECT_EQ(first.references, 2);
    EXPECT_THAT(engine->heldPages(), testing::ElementsAre(&first, &first));
    engine.clear();
    EXPECT_EQ(first.references, 0);
}

TEST_F(EngineBaseTest, ReleasesPagesInTheOrderTheyWereAdded) {
    struct Recorder : test::TestPage {
        Recorder(std::vector<int>& order, int number) : TestPage(L"p.tif"), order(order), number(number) {}
        void release() override {
            order.push_back(number);
            TestPage::release();
        }
        std::vector<int>& order;
        int number;
    };
    std::vector<int> order;
    Recorder one(order, 1);
    Recorder two(order, 2);
    Recorder three(order, 3);
    for (Recorder* page : {&one, &two, &three})
        engine->addData(page);
    engine.clear();
    EXPECT_THAT(order, testing::ElementsAre(1, 2, 3));
}

TEST_F(EngineBaseTest, HasNoParentWindowUntilOneIsSet) {
    EXPECT_EQ(engine->parentWindow, nullptr);
    // The base only keeps the pointer; any address will do.
    auto* const window = reinterpret_cast<CWnd*>(&first);
    engine->setParentWindow(window);
    EXPECT_EQ(engine->parentWindow, window);
}

} // namespace
