// An export from the engine's dialog to the result, through the real component.
#include "host/desktop/ExportRun.h"

#include "SorvaneBase/bxutils/SystemLog.h"
#include "desktop/ExportRunFixture.h"
#include "host/Text.h"
#include "support/OpenFile.h"
#include "support/ZipParser.h"
#include "support/mail/MailClient.h"

#include <gmock/gmock.h>

#include <thread>

namespace {

using host::ExportResult;
using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Not;
using testing::StartsWith;

class ExportRunTest : public test::ExportRunFixture {
protected:
    std::wstring pagePath(std::size_t number) const { return pages[number - 1]->path(); }
};

TEST_F(ExportRunTest, TellsHowManyPagesAreInTheFolderAndOpensIt) {
    addPages(2);
    resultButton = IDC_RESULT_OPEN;

    EXPECT_EQ(exportToDirectory(out), ExportResult::Done);

    EXPECT_THAT(test::namesIn(out), ElementsAre(L"Scan0001.tif", L"Scan0002.tif"));
    EXPECT_EQ(shown.title, L"Export to folder");
    EXPECT_EQ(shown.text, L"2 pages have been exported.");
    EXPECT_EQ(shown.pathLabel, L"Exported to:");
    EXPECT_EQ(shown.path, out);
    EXPECT_EQ(shown.details, L"");
    EXPECT_FALSE(shown.canCopy);
    EXPECT_THAT(opened, ElementsAre(out));
}

TEST_F(ExportRunTest, TellsWhereTheArchiveIs) {
    addPages(1);

    EXPECT_EQ(exportToZip(folder / L"scans.zip"), ExportResult::Done);

    EXPECT_EQ(shown.text, L"1 page has been exported.");
    EXPECT_EQ(shown.path, folder / L"scans.zip");
    EXPECT_TRUE(shown.canOpen);
    EXPECT_THAT(opened, IsEmpty());
    EXPECT_EQ(test::parseZip(test::readFile(folder / L"scans.zip")).items.size(), 1u);
}

TEST_F(ExportRunTest, KnowsNoPlaceOfPagesThatWereMailed) {
    const test::MailClient client;
    addPages(3);

    EXPECT_EQ(exportToMail(), ExportResult::Done);

    EXPECT_EQ(client.calls.size(), 1u);
    EXPECT_EQ(shown.text, L"3 pages have been exported.");
    EXPECT_EQ(shown.path, L"");
    EXPECT_FALSE(shown.canOpen);
}

TEST_F(ExportRunTest, TellsOfNoPlaceThatIsNotThere) {
    const test::MailClient client;
    addPages(1);
    using host::mailDialog::subjectEdit;

    EXPECT_EQ(run("mail.file", subjectEdit, {host::enterText(subjectEdit, folder / L"march")}),
              ExportResult::Done);

    EXPECT_EQ(shown.path, L"");
    EXPECT_FALSE(shown.canOpen);
}

TEST_F(ExportRunTest, IsOverWithoutAWordWhenTheEnginesDialogIsCancelled) {
    addPages(1);
    dialogButton = IDCANCEL;

    EXPECT_EQ(exportToDirectory(out), ExportResult::Cancelled);

    EXPECT_THAT(folder.list(), Not(Contains(L"out")));
}

TEST_F(ExportRunTest, StopsAtTheNextPageAndTellsWhatIsThere) {
    addPages(5);
    watch.whenAtPage = [this](std::size_t index) {
        if (index == 2)
            pressStop();
    };

    EXPECT_EQ(exportToDirectory(out), ExportResult::Stopped);

    EXPECT_THAT(test::namesIn(out), ElementsAre(L"Scan0001.tif", L"Scan0002.tif"));
    EXPECT_EQ(shown.text, L"The export was stopped.\n2 of 5 pages were exported.");
    EXPECT_EQ(shown.path, out);
    EXPECT_EQ(shown.details, L"") << "the engine's failure is of the person's making";
    EXPECT_TRUE(shown.canOpen);
}

TEST_F(ExportRunTest, AStoppedArchiveHoldsThePagesBefore) {
    addPages(5);
    watch.whenAtPage = [this](std::size_t index) {
        if (index == 3)
            pressStop();
    };

    EXPECT_EQ(exportToZip(folder / L"scans.zip"), ExportResult::Stopped);

    EXPECT_EQ(shown.text, L"The export was stopped.\n3 of 5 pages were exported.");
    EXPECT_EQ(test::parseZip(test::readFile(folder / L"scans.zip")).items.size(), 3u);
}

TEST_F(ExportRunTest, AStopBeforeTheMailClientIsCalledMailsNothing) {
    const test::MailClient client;
    addPages(2);
    watch.whenAtPage = [this](std::size_t index) {
        if (index == 1)
            pressStop();
    };

    EXPECT_EQ(exportToMail(), ExportResult::Stopped);

    EXPECT_EQ(shown.text, L"The export was stopped.") << "the first page was attached, but is in no message";
    EXPECT_THAT(client.calls, IsEmpty());
}

TEST_F(ExportRunTest, AStopAtTheFirstPageExportsNothing) {
    addPages(2);
    watch.whenAtPage = [this](std::size_t) { pressStop(); };

    EXPECT_EQ(exportToDirectory(out), ExportResult::Stopped);

    EXPECT_EQ(shown.text, L"The export was stopped.\nNo pages were exported.");
    EXPECT_EQ(shown.path, L"") << "nothing is there yet";
}

TEST_F(ExportRunTest, TheNextExportIsNotStopped) {
    addPages(3);
    watch.whenAtPage = [this](std::size_t) { pressStop(); };
    EXPECT_EQ(exportToDirectory(out), ExportResult::Stopped);
    watch.whenAtPage = nullptr;

    EXPECT_EQ(exportToDirectory(out), ExportResult::Done);
}

TEST_F(ExportRunTest, ANoToOverwritingIsAStop) {
    addPages(2);
    ASSERT_EQ(exportToDirectory(out), ExportResult::Done);
    DeleteFileW((out + L"\\Scan0001.tif").c_str());
    question = IDNO;

    EXPECT_EQ(exportToDirectory(out), ExportResult::Stopped);

    EXPECT_EQ(shown.text, L"The export was stopped.\n1 of 2 pages was exported.");
}

TEST_F(ExportRunTest, ANoToALargeMessageIsAStop) {
    const test::MailClient client;
    application.getSettingsStore()->write("Export.ToMail.MaxTotalSizeInKb", "1");
    addPages(1, std::string(2000, 'x'));
    question = IDNO;

    EXPECT_EQ(exportToMail(), ExportResult::Stopped);

    EXPECT_EQ(shown.text, L"The export was stopped.");
    EXPECT_EQ(shown.details, L"");
    EXPECT_THAT(client.calls, IsEmpty());
}

TEST_F(ExportRunTest, NamesThePageThatAnotherProgramUses) {
    addPages(3);
    const test::OpenFile used(pagePath(2));
    question = IDOK;

    EXPECT_EQ(exportToDirectory(out), ExportResult::Failed);

    EXPECT_EQ(shown.text, L"Page 2 could not be exported.\nAnother program is using the file.");
    EXPECT_EQ(shown.pathLabel, L"File or folder:");
    EXPECT_EQ(shown.path, pagePath(2));
    EXPECT_EQ(shown.details, L"Components/BasicExport/ExportToDirectory:76: Failed to export file");
    EXPECT_TRUE(shown.canCopy);
    EXPECT_FALSE(shown.canOpen);
}

TEST_F(ExportRunTest, NamesThePageThatIsGone) {
    addPages(2);
    DeleteFileW(pagePath(1).c_str());

    EXPECT_EQ(exportToZip(folder / L"scans.zip"), ExportResult::Failed);

    EXPECT_EQ(shown.text, L"Page 1 could not be read.\nThe file or folder does not exist.");
    EXPECT_EQ(shown.path, pagePath(1));
    EXPECT_THAT(host::utf8(shown.details),
                AllOf(HasSubstr("host/FilePage:"), HasSubstr("ExportToZip:97: Failed to get data copy")));
}

TEST_F(ExportRunTest, NamesTheFileToOverwriteThatAnotherProgramUses) {
    addPages(1);
    ASSERT_EQ(exportToDirectory(out), ExportResult::Done);
    const std::wstring copy = out + L"\\Scan0001.tif";
    const test::OpenFile used(copy);
    pilot.always(host::anyMessageBox(), host::click(IDOK));
    question = IDYES;

    EXPECT_EQ(exportToDirectory(out), ExportResult::Failed);

    EXPECT_EQ(shown.text, L"Page 1 could not be exported.\nAnother program is using the file.");
    EXPECT_EQ(shown.path, copy);
}

TEST_F(ExportRunTest, TellsWhyTheArchiveCannotBeMade) {
    addPages(1);
    folder.write(L"scans.zip", "old");
    const test::OpenFile used(folder / L"scans.zip");

    EXPECT_EQ(exportToZip(folder / L"scans.zip"), ExportResult::Failed);

    EXPECT_EQ(shown.text, L"The ZIP archive could not be created.\nAnother program is using the file.");
    EXPECT_EQ(shown.path, folder / L"scans.zip");
}

TEST_F(ExportRunTest, TellsOfAnArchiveWithoutAPath) {
    addPages(1);

    EXPECT_EQ(exportToZip(L""), ExportResult::Failed);

    EXPECT_EQ(shown.text, L"No path was entered for the ZIP archive.");
    EXPECT_EQ(shown.path, L"");
}

TEST_F(ExportRunTest, TellsWhyTheMailProgramDidNotTakeTheMessage) {
    test::MailClient client;
    client.behaviour = test::returns(MAPI_E_INSUFFICIENT_MEMORY);
    addPages(1);
    question = IDOK;

    EXPECT_EQ(exportToMail(), ExportResult::Failed);

    EXPECT_EQ(shown.text, L"The mail program did not take the message.\nThere is not enough memory.");
    EXPECT_EQ(shown.path, L"") << "no page is to blame";
    EXPECT_THAT(host::utf8(shown.details), HasSubstr("MAPI failure, error code=5"));
}

TEST_F(ExportRunTest, TellsAnUnknownCodeOfTheMailProgram) {
    test::MailClient client;
    client.behaviour = test::returns(77);
    addPages(1);
    question = IDOK;

    EXPECT_EQ(exportToMail(), ExportResult::Failed);

    EXPECT_EQ(shown.text, L"The mail program did not take the message.\n"
                          L"The mail program gave no reason but Simple MAPI code 77.");
}

TEST_F(ExportRunTest, ANoToTheMailProgramIsNoStop) {
    test::MailClient client;
    client.behaviour = [](const test::MailCall&) -> ULONG {
        MessageBoxW(nullptr, L"Try again?", L"Mail", MB_YESNO);
        return MAPI_E_FAILURE;
    };
    addPages(1);
    question = IDNO;
    pilot.always(host::anyMessageBox(), host::click(IDOK));

    EXPECT_EQ(exportToMail(), ExportResult::Failed);

    EXPECT_THAT(shown.text, StartsWith(L"The mail program did not take the message."));
}

TEST_F(ExportRunTest, TellsOfACrash) {
    test::MailClient client;
    client.behaviour = test::crashes();
    addPages(1);

    EXPECT_EQ(exportToMail(), ExportResult::Failed);

    EXPECT_EQ(shown.text, L"The export crashed. It is not known whether the pages were exported.");
    EXPECT_THAT(host::utf8(shown.details),
                HasSubstr("crashed with exception 0xc000001d at desktop_tests.exe+0x"));
    EXPECT_FALSE(test::progressWindow());
}

TEST_F(ExportRunTest, DoesNotHearWhatOtherThreadsLog) {
    addPages(1);
    watch.whenAtPage = [](std::size_t) {
        std::thread([] { bxutils::getSystemLogFormater()->log(0, "No thumbnail", "Other", 1); }).join();
    };

    EXPECT_EQ(exportToDirectory(out), ExportResult::Done);
}

TEST_F(ExportRunTest, FailsWhenAComponentLogsAFailureThatItDoesNotReport) {
    addPages(1);
    watch.whenAtPage = [](std::size_t) {
        bxutils::getSystemLogFormater()->log(0, "The disk was pulled out, error 21", "Driver", 7);
    };

    EXPECT_EQ(exportToDirectory(out), ExportResult::Failed);

    EXPECT_EQ(shown.text, L"The export failed.\nThe drive is not available.");
    EXPECT_EQ(shown.details, L"Driver:7: The disk was pulled out, error 21");
}

TEST_F(ExportRunTest, CopiesWhatIsShownToTheClipboard) {
    addPages(2);
    DeleteFileW(pagePath(2).c_str());
    resultButton = IDC_RESULT_COPY;
    pilot.always(host::dialogWith(IDC_RESULT_COPY), host::click(IDOK));

    EXPECT_EQ(exportToZip(folder / L"scans.zip"), ExportResult::Failed);

    const std::string text = host::utf8(clipboardText());
    EXPECT_THAT(text, StartsWith("Page 2 could not be read.\r\nThe file or folder does not exist.\r\n"
                                 "File or folder: " +
                                 host::utf8(pagePath(2)) + "\r\n\r\n"));
    EXPECT_THAT(text, HasSubstr("ExportToZip:97: Failed to get data copy"));
}

TEST_F(ExportRunTest, DoesNotLetTheWindowsSessionEndMeanwhile) {
    addPages(1);
    LRESULT mayEnd = TRUE;
    watch.whenAtPage = [&](std::size_t) { mayEnd = owner.SendMessage(WM_QUERYENDSESSION); };

    EXPECT_EQ(exportToDirectory(out), ExportResult::Done);

    EXPECT_FALSE(mayEnd);
    EXPECT_TRUE(owner.SendMessage(WM_QUERYENDSESSION));
}

TEST_F(ExportRunTest, LetsTheOwnerPaintButGivesItNoInput) {
    addPages(2);
    bool hadInput = false;
    bool isPainted = false;
    watch.whenAtPage = [&](std::size_t index) {
        RECT rest;
        if (index == 0) {
            owner.Invalidate();
            owner.PostMessage(WM_KEYDOWN, VK_F5, 0);
        } else {
            isPainted = !GetUpdateRect(owner, &rest, FALSE);
        }
    };
    owner.whenKeyDown = [&] { hadInput = true; };

    EXPECT_EQ(exportToDirectory(out), ExportResult::Done);

    EXPECT_TRUE(isPainted);
    EXPECT_FALSE(hadInput);
}

} // namespace
