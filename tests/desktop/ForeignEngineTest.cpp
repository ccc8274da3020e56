// Exports through engines that behave otherwise than those of the component.
#include "SorvaneCommon/ExportEngine.h"
#include "SorvaneCommon/ExportUtils/ExportFactoryBase.h"
#include "desktop/ExportRunFixture.h"
#include "host/desktop/Texts.h"

#include <gmock/gmock.h>

#include <commctrl.h>

#include <stdexcept>

namespace {

using host::ExportResult;
using Items = std::vector<bxbase::Reference<ExportDataItem>>;
using Work = std::function<int(const Items&, ExportErrorSink&)>;

class ForeignEngine : public SorvaneCommon::ExportEngine {
public:
    explicit ForeignEngine(Work work) : work(std::move(work)) {}
    virtual ~ForeignEngine() = default;

    bool showDialog() override { return true; }
    bool addData(ExportDataItem* item) override {
        items.emplace_back(item);
        return true;
    }
    int exportData(void*, ExportErrorSink& errors) override { return work(items, errors); }

private:
    Work work;
    Items items;
};

class ForeignFactory : public ExportUtils::ExportFactoryBase {
public:
    explicit ForeignFactory(Work work) : work(std::move(work)) { name = "Foreign"; }

    const char* getId() const override { return "foreign"; }
    bool isAvailable() const override { return true; }
    bool createEngine(CWnd*, bxbase::Reference<SorvaneCommon::ExportEngine>& engine) override {
        if (!work)
            return false;
        engine =
            bxbase::Reference<SorvaneCommon::ExportEngine>(new bxbase::ReferencedImpl<ForeignEngine>(work));
        return true;
    }

private:
    Work work;
};

void askForData(const Items& items) {
    for (const auto& item : items) {
        std::wstring path;
        item->getFilePath(path);
    }
}

class ForeignEngineTest : public test::ExportRunFixture {
protected:
    ExportResult exportBy(Work work) {
        if (seesResult)
            pilot.then("the result", host::dialogWith(IDC_RESULT_TEXT), [this](HWND dialog) {
                shown = read(dialog);
                return host::click(IDOK)(dialog);
            });
        const bxbase::Reference<SorvaneCommon::ExportEngineFactory> factory(
            new bxbase::ReferencedImpl<ForeignFactory>(std::move(work)));
        const auto result = host::runExport(owner, *factory, pages, watch);
        EXPECT_EQ(pilot.failure(), "");
        EXPECT_FALSE(watch.isRunning());
        return result;
    }

    bool seesResult = true;
};

TEST_F(ForeignEngineTest, TellsWhenThereIsNoEngine) {
    addPages(1);
    EXPECT_EQ(exportBy(nullptr), ExportResult::Failed);
    EXPECT_EQ(shown.title, L"Foreign");
    EXPECT_EQ(shown.text, host::localText("ScanHost.Export", "Failure.NotAvailable"));
    EXPECT_EQ(shown.details, L"");
}

TEST_F(ForeignEngineTest, AStopIsNoSuccessOfAnEngineThatPassesOverPages) {
    addPages(3);
    watch.whenAtPage = [this](std::size_t index) {
        if (index == 1)
            watch.stop();
    };
    EXPECT_EQ(exportBy([](const Items& items, ExportErrorSink&) {
                  askForData(items);
                  return 0;
              }),
              ExportResult::Stopped);
}

TEST_F(ForeignEngineTest, PagesPassedOverAreNotExported) {
    addPages(3);
    watch.whenAtPage = [this](std::size_t) { watch.stop(); };
    EXPECT_EQ(exportBy([](const Items& items, ExportErrorSink&) {
                  askForData(items);
                  return 0;
              }),
              ExportResult::Stopped);
    EXPECT_EQ(shown.text, L"The export was stopped.\nNo pages were exported.");
}

TEST_F(ForeignEngineTest, AStopThatComesTooLateIsNone) {
    addPages(2);
    EXPECT_EQ(exportBy([this](const Items& items, ExportErrorSink&) {
                  askForData(items);
                  watch.stop();
                  return 0;
              }),
              ExportResult::Done);
}

TEST_F(ForeignEngineTest, AResultThatNobodyKnowsIsAFailure) {
    addPages(1);
    EXPECT_EQ(exportBy([](const Items&, ExportErrorSink&) { return 3; }), ExportResult::Failed);
    EXPECT_EQ(shown.text, L"The export failed.");
}

TEST_F(ForeignEngineTest, AnExceptionIsAFailure) {
    addPages(1);
    EXPECT_EQ(exportBy([](const Items&, ExportErrorSink&) -> int { throw std::runtime_error("no flux"); }),
              ExportResult::Failed);
    EXPECT_EQ(shown.text, L"The export failed.");
    EXPECT_THAT(shown.details, testing::HasSubstr(L"no flux"));
}

TEST_F(ForeignEngineTest, TellsTheResultWithoutAnOwnerToo) {
    addPages(2);
    watch.whenAtPage = [this](std::size_t index) {
        if (index == 1)
            owner.DestroyWindow();
    };
    EXPECT_EQ(exportBy([](const Items& items, ExportErrorSink&) {
                  askForData(items);
                  return 0;
              }),
              ExportResult::Done);
    EXPECT_EQ(shown.text, L"2 pages have been exported.");
}

TEST_F(ForeignEngineTest, DoesNotKeepTheProgramFromEnding) {
    addPages(1);
    seesResult = false;
    exportBy([](const Items&, ExportErrorSink&) {
        PostQuitMessage(7);
        return 0;
    });
    MSG message{};
    EXPECT_TRUE(PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE));
    EXPECT_EQ(message.message, UINT{WM_QUIT});
    EXPECT_EQ(message.wParam, 7u);
}

TEST_F(ForeignEngineTest, IsNotDisturbedByPagesOfOthers) {
    addPages(2);
    const auto other = pages.back();
    pages.pop_back();
    EXPECT_EQ(exportBy([&](const Items& items, ExportErrorSink&) {
                  std::wstring path;
                  other->getFilePath(path);
                  askForData(items);
                  other->getFilePath(path);
                  return 1;
              }),
              ExportResult::Failed);
    EXPECT_EQ(shown.text, L"The export failed.");
}

TEST_F(ForeignEngineTest, ShowsWhereItIs) {
    addPages(1, std::string(1000, 'x'));
    addPages(1, std::string(3000, 'x'));
    std::wstring texts[2];
    watch.whenAtPage = [&texts](std::size_t index) {
        ASSERT_TRUE(test::waitUntil(test::progressWindow));
        const auto text = [](int control) {
            return host::windowText(GetDlgItem(test::progressWindow(), control));
        };
        const std::wstring name = L"page " + std::to_wstring(index + 1) + L".tif";
        EXPECT_TRUE(test::waitUntil([&] { return text(IDC_PROGRESS_NAME) == name; }));
        EXPECT_TRUE(test::waitUntil([&] {
            return SendDlgItemMessageW(test::progressWindow(), IDC_PROGRESS_BAR, PBM_GETPOS, 0, 0) ==
                   (index ? 250 : 0);
        }));
        texts[0] = text(IDC_PROGRESS_PAGE);
        texts[1] = text(IDC_PROGRESS_BYTES);
    };
    EXPECT_EQ(exportBy([](const Items& items, ExportErrorSink&) {
                  askForData(items);
                  return 0;
              }),
              ExportResult::Done);
    EXPECT_EQ(texts[0], L"Page 2 of 2");
    EXPECT_THAT(texts[1], testing::AllOf(testing::HasSubstr(L"1000"), testing::HasSubstr(L"3.90")));
}

} // namespace
