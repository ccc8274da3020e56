// A mail export under test: engine, pages, mail client, host.
#pragma once

#include "ExportToMail.h"
#include "SorvaneBase/SorvaneException.h"
#include "bxbase/Reference.h"
#include "support/TempFolder.h"
#include "support/TestHost.h"
#include "support/TestPage.h"
#include "support/mail/MailClient.h"

#include <afxwin.h>

#include <gmock/gmock.h>

#include <list>
#include <optional>
#include <string>
#include <vector>

/// The engine with its settings open.
class OpenMailEngine : public ExportToMail {
public:
    using ExportToMail::data;
};

/// An engine without settings, in a host with a temporary root of its own. Pages are named "Page".
class MailExportFixture : public testing::Test {
protected:
    /// What the user saw of a message box.
    struct Box {
        std::wstring caption;
        std::wstring text;
        HWND owner = nullptr;
        HICON icon = nullptr;
        std::vector<int> buttons;
        int defaultButton = 0;
    };

    MailExportFixture();
    ~MailExportFixture() override;

    /// A page whose data lies in a file of its own.
    test::TestPage& addPage(const std::wstring& name, const std::string& bytes);
    /// Pages "1.tif" to "COUNT.tif", each of which holds its own number.
    void addPages(int count);
    /// A page without a file, which writes a copy of these bytes on demand or fails to.
    test::TestPage& addPageWithoutFile(std::optional<std::string> bytes);

    /// Runs the export, which must not show a box.
    int run();
    /// Runs the export and presses the button in the box that it must show.
    int runAndPress(int button);

    /// Expects exactly this report.
    void expectReport(int line, const char* message) const;

    /// Expects that the page has written its copy, once, and that the copy is gone.
    void expectWrittenAndRemoved(const test::TestPage& page) const;

    /// The directory of the export, which must be the only thing in the temporary root.
    std::wstring directory() const;
    /// The names of the files in it.
    std::vector<std::wstring> copies() const;
    /// The names under which the only call of the mail client has shown the attachments.
    std::vector<std::string> attachmentNames() const;

    test::TestHost host;
    test::MemoryStore settings;
    test::MailClient client;
    test::TempFolder tempRoot;
    test::TempFolder pageFolder;
    test::TempFolder scratch;
    const std::wstring temporaryCopy = scratch / L"copy.tmp";
    std::list<test::TestPage> pages;
    CWnd owner;
    SorvaneException errors;
    Box box; ///< of the last runAndPress()
    bxbase::Reference<OpenMailEngine> engine;
};
