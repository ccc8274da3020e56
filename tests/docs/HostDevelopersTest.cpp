// The guide for developers of hosts: the code that it shows is compiled and works.
#include "docs/Documents.h"
#include "docs/HostPieces.h"
#include "host/ComponentModule.h"
#include "host/EnginesManager.h"
#include "host/ProgramFolder.h"
#include "host/ThreadLanguage.h"

#include "SorvaneCommon/ExportEngine.h"
#include "afxwin.h"
#include "bxbase/Reference.h"
#include "support/LogRecords.h"
#include "support/TestPage.h"

#include <gmock/gmock.h>

#include <algorithm>
#include <memory>
#include <string>
#include <vector>

namespace {

constexpr char zipFactory[] = "com.brellix.sorvane.exportdata-factory.zip.file";

std::string nameOf(const host::EnginesManager& manager, const char* id) {
    return manager.findFactory(id)->getName();
}

} // namespace

TEST(HostDevelopersTest, ShowsNoCodeButWhatIsCompiled) {
    const std::vector<std::string> sources = {test::projectFile(L"examples/minimal-host/main.cpp"),
                                              test::projectFile(L"tests/docs/HostPieces.h"),
                                              test::projectFile(L"tests/docs/HostPieces.cpp")};
    const auto blocks = test::codeBlocks(test::projectFile(L"docs/host-developers.md"), "cpp");

    ASSERT_FALSE(blocks.empty());
    for (const std::string& block : blocks) {
        EXPECT_TRUE(std::ranges::any_of(sources, [&block](const std::string& source) {
            return test::standsIn(source, block);
        })) << block;
    }
}

TEST(HostDevelopersTest, ItsChangeOfLanguageRenamesTheFactories) {
    const host::ThreadLanguageKeeper language;
    const example::ScannerApplication application;
    host::EnginesManager manager;
    std::unique_ptr<host::ComponentModule> component;

    ASSERT_TRUE(example::changeLanguage(host::programFolder(), L"en", component, manager));
    const std::string english = nameOf(manager, zipFactory);
    ASSERT_TRUE(example::changeLanguage(host::programFolder(), L"cs", component, manager));

    EXPECT_NE(nameOf(manager, zipFactory), english);
    EXPECT_EQ(manager.getFactories().size(), 3u);
    EXPECT_FALSE(example::changeLanguage(host::programFolder(), L"xx", component, manager));
    EXPECT_EQ(manager.getFactories().size(), 3u);
}

TEST(HostDevelopersTest, ItsTableTellsWhoHoldsAPage) {
    const example::ScannerApplication application;
    host::EnginesManager manager;
    const host::ComponentModule component(host::programFolder() + L"\\BasicExport.dll", manager);
    test::TestPage page(L"Z:\\page.tif");
    CWnd window;
    bxbase::Reference<SorvaneCommon::ExportEngine> engine;
    ASSERT_TRUE(manager.findFactory(zipFactory)->createEngine(&window, engine));

    engine->addData(&page);
    EXPECT_EQ(page.references, 1);
    engine->addData(&page);
    EXPECT_EQ(page.references, 2);
    engine.clear();
    EXPECT_EQ(page.references, 0);
}

TEST(HostDevelopersTest, ItsSinkLogsTheReportsThatItKeeps) {
    const example::ScannerApplication application;
    host::EnginesManager manager;
    const host::ComponentModule component(host::programFolder() + L"\\BasicExport.dll", manager);
    CWnd window;
    bxbase::Reference<SorvaneCommon::ExportEngine> engine;
    ASSERT_TRUE(manager.findFactory(zipFactory)->createEngine(&window, engine));
    const test::LogRecords log;
    std::string told;

    // Its dialog was never confirmed.
    EXPECT_EQ(example::exportAndTell(*engine, window, told), 1);

    EXPECT_EQ(told, "targetPath is empty");
    EXPECT_THAT(log.all(),
                testing::ElementsAre("0 Components/BasicExport/ExportToZip:49 targetPath is empty"));
}
