// A directory export under test: engine, pages, target, host.
#pragma once

#include "ExportToDirectory.h"
#include "SorvaneBase/SorvaneException.h"
#include "bxbase/Reference.h"
#include "support/TempFolder.h"
#include "support/TestHost.h"
#include "support/TestPage.h"

#include <afxwin.h>

#include <gmock/gmock.h>

#include <functional>
#include <list>
#include <optional>
#include <string>
#include <vector>

/// The engine with its settings open, as a confirmed dialog would fill them.
class OpenEngine : public ExportToDirectory {
public:
    using ExportToDirectory::appendIndex;
    using ExportToDirectory::digits;
    using ExportToDirectory::firstNumber;
    using ExportToDirectory::prefix;
    using ExportToDirectory::targetPath;
    using ExportToDirectory::useParentFolderName;
};

/// An engine with the prefix "Scan" that writes into an empty folder. The texts are Czech.
class DirectoryExportFixture : public testing::Test {
protected:
    /// What the user saw of an error box.
    struct ErrorBox {
        std::wstring caption;
        std::wstring text;
        HWND owner = nullptr;
        HICON icon = nullptr;
        std::vector<int> buttons;
    };

    DirectoryExportFixture();

    /// A page whose data lies in a file of its own.
    test::TestPage& addPage(const std::wstring& name, const std::string& bytes);
    /// Pages "1.tif" to "COUNT.tif", each of which holds its own number.
    void addPages(int count);
    /// A page without a file, which writes a copy of these bytes on demand or fails to.
    test::TestPage& addPageWithoutFile(std::optional<std::string> bytes);

    /// Runs the export, which must not show a box.
    int run();
    /// Runs the export and presses OK in the error box that it must show.
    int runWithErrorBox();

    /// Expects exactly this report.
    void expectReport(int line, const char* message) const;

    /// Lets the page's copy fail: a file that nobody else may open stands where it goes, until the end of the test.
    void lock(const std::wstring& path);

    std::string written(const std::wstring& name) const { return test::readFile(target / name); }

    ~DirectoryExportFixture() override;

    test::TestHost host;
    test::TempFolder target;
    test::TempFolder pageFolder;
    test::TempFolder scratch;
    const std::wstring temporaryCopy = scratch / L"copy.tmp";
    std::list<test::TestPage> pages;
    CWnd owner;
    SorvaneException errors;
    ErrorBox box;
    bxbase::Reference<OpenEngine> engine;

private:
    HANDLE locked = INVALID_HANDLE_VALUE;
};
