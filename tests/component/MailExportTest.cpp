// What the mail engine copies, asks, hands to the mail client and reports.
#include "MailExportFixture.h"

#include "SorvaneBase/bxdisk/Disk.h"
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "host/Text.h"
#include "host/UniqueHandle.h"
#include "support/FreedMemory.h"
#include "support/ImportHook.h"

#include <windows.h>

#include <winioctl.h>

#include <climits>
#include <future>
#include <locale>

namespace {

using testing::ElementsAre;
using testing::IsEmpty;
using testing::SizeIs;

class MailExportTest : public MailExportFixture {};

// Names.

struct PageCount {
    int count;
    const char* first;
    const char* last;
};

class PageCountTest : public MailExportFixture, public testing::WithParamInterface<PageCount> {};

TEST_P(PageCountTest, GivesTheNumbersTheirWidth) {
    test::TestPage page(pageFolder.write(L"p.jpg", "data"));
    for (int i = 0; i < GetParam().count; ++i)
        engine->addData(&page);
    EXPECT_EQ(run(), 0);
    const std::vector<std::string> names = attachmentNames();
    ASSERT_EQ(names.size(), static_cast<std::size_t>(GetParam().count));
    EXPECT_EQ(names.front(), GetParam().first);
    EXPECT_EQ(names.back(), GetParam().last);
    EXPECT_EQ(copies().size(), names.size());
    engine.clear();
}

INSTANTIATE_TEST_SUITE_P(Counts, PageCountTest,
                         testing::Values(PageCount{1, "Page-1.jpg", "Page-1.jpg"},
                                         PageCount{9, "Page-1.jpg", "Page-9.jpg"},
                                         PageCount{10, "Page-01.jpg", "Page-10.jpg"},
                                         PageCount{12, "Page-01.jpg", "Page-12.jpg"},
                                         PageCount{100, "Page-001.jpg", "Page-100.jpg"},
                                         PageCount{1000, "Page-0001.jpg", "Page-1000.jpg"}),
                         [](const auto& info) { return std::to_string(info.param.count); });

TEST_F(MailExportTest, TenThousandPagesAreAttachedInTheirOrder) {
    // Copies nothing: Wine reads the whole directory for every file that is new in it.
    static std::vector<std::wstring> targets;
    const auto noteTarget = +[](const wchar_t*, const wchar_t* target, BOOL) WINAPI -> BOOL {
        targets.emplace_back(target);
        return TRUE;
    };
    const test::ImportHook copyFile("CopyFileW", reinterpret_cast<void*>(noteTarget));
    test::TestPage page(pageFolder.write(L"p.jpg", "data"));
    for (int i = 0; i < 10000; ++i)
        engine->addData(&page);
    EXPECT_EQ(run(), 0);
    const std::vector<std::string> names = attachmentNames();
    ASSERT_THAT(names, SizeIs(10000));
    ASSERT_THAT(targets, SizeIs(10000));
    for (std::size_t i = 0; i < names.size(); ++i) {
        const std::string number = std::to_string(i + 1);
        ASSERT_EQ(names[i], "Page-" + std::string(5 - number.size(), '0') + number + ".jpg");
        ASSERT_EQ(targets[i], directory() + L"\\" + host::wide(names[i]));
    }
    engine.clear();
}

struct PageName {
    const char* what;
    const char* name;
    const char* attached;
};

class PageNameTest : public MailExportFixture, public testing::WithParamInterface<PageName> {};

TEST_P(PageNameTest, GivesTheExtension) {
    addPage(L"source", "data").fileName = GetParam().name;
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(attachmentNames(), ElementsAre(GetParam().attached));
    EXPECT_THAT(copies(), ElementsAre(host::wide(GetParam().attached)));
}

INSTANTIATE_TEST_SUITE_P(Names, PageNameTest,
                         testing::Values(PageName{"Extension", "scan.png", "Page-1.png"},
                                         PageName{"NoExtension", "scan", "Page-1"},
                                         PageName{"EmptyExtension", "scan.", "Page-1"},
                                         PageName{"LastOfTwo", "scan.tar.gz", "Page-1.gz"},
                                         PageName{"ItsOwnCase", "scan.JPG", "Page-1.JPG"},
                                         PageName{"NoNameAtAll", "", "Page-1"}),
                         [](const auto& info) { return std::string(info.param.what); });

TEST_F(MailExportTest, NamesFollowTheHostsLanguage) {
    ASSERT_TRUE(bxutils::getResourceManager()->loadLanguageFile(
        scratch.write(L"cs.ini", "[Scan]\nBasicExport.Page=Stránka č\n")));
    addPages(1);
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(copies(), ElementsAre(L"Stránka č-1.tif"));
    ASSERT_EQ(GetACP(), 1252U);
    // The code page 1252 has no "č".
    EXPECT_THAT(attachmentNames(), ElementsAre("Str\xE1nka _-1.tif"));
}

TEST_F(MailExportTest, PathsOutsideTheCodePageLoseWhatItLacks) {
    ASSERT_TRUE(bxdisk::createDirectories(tempRoot / L"é漢"));
    bxdisk::setTempRoot(tempRoot / L"é漢");
    ASSERT_EQ(GetACP(), 1252U);
    addPages(1);
    EXPECT_EQ(run(), 0);
    ASSERT_THAT(client.calls, SizeIs(1));
    EXPECT_THAT(client.calls[0].files.at(0).path.value_or(""),
                testing::StartsWith(tempRoot.utf8() + "\\\xE9_\\export-mail"));
}

TEST_F(MailExportTest, NumbersDoNotFollowTheProgramsLocale) {
    struct Grouping : std::numpunct<char> {
        char do_thousands_sep() const override { return '.'; }
        std::string do_grouping() const override { return "\1"; }
    };
    const std::locale before = std::locale::global(std::locale(std::locale::classic(), new Grouping));
    addPages(10);
    EXPECT_EQ(run(), 0);
    std::locale::global(before);
    EXPECT_EQ(attachmentNames().back(), "Page-10.tif");
}

// Attachments.

TEST_F(MailExportTest, AttachesCopiesInTheOrderOfThePages) {
    addPage(L"b.tif", "first");
    addPage(L"a.tif", "second");
    EXPECT_EQ(run(), 0);
    EXPECT_TRUE(errors.isEmpty());
    EXPECT_THAT(copies(), ElementsAre(L"Page-1.tif", L"Page-2.tif"));
    ASSERT_THAT(client.calls, SizeIs(1));
    ASSERT_THAT(client.calls[0].files, SizeIs(2));
    EXPECT_EQ(client.calls[0].files[0].path, host::utf8(directory()) + "\\Page-1.tif");
    EXPECT_EQ(client.calls[0].files[1].path, host::utf8(directory()) + "\\Page-2.tif");
    EXPECT_EQ(test::readFile(directory() + L"\\Page-1.tif"), "first");
    EXPECT_EQ(test::readFile(directory() + L"\\Page-2.tif"), "second");
}

TEST_F(MailExportTest, AttachmentsAreThereDuringTheCallAndStayAfterIt) {
    addPage(L"a.tif", "data");
    client.behaviour = [](const test::MailCall& call) {
        EXPECT_EQ(test::readFile(host::wide(call.files.at(0).path.value_or(""))), "data");
        return ULONG{SUCCESS_SUCCESS};
    };
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(client.finished, 1);
    EXPECT_EQ(test::readFile(host::wide(client.calls[0].files.at(0).path.value_or(""))), "data");
}

TEST_F(MailExportTest, ClientThatReadsTheAttachmentsAfterReturningFindsThemWhole) {
    // Strings keep short texts inside themselves, where they would be found after they are freed.
    ASSERT_TRUE(bxutils::getResourceManager()->loadLanguageFile(
        scratch.write(L"long.ini", "[Scan]\nBasicExport.Page=A page with a long name\n")));
    addPage(L"a.tif", "first");
    addPageWithoutFile("second");
    std::promise<void> exportIsOver;
    std::future<std::vector<test::ReadAttachment>> read;
    client.behaviour = test::readsAttachmentsLater(exportIsOver.get_future(), read);
    EXPECT_EQ(run(), 0);
    engine.clear();
    test::overwriteFreedMemory();
    exportIsOver.set_value();
    ASSERT_TRUE(read.valid());
    EXPECT_THAT(read.get(), ElementsAre(test::ReadAttachment{"A page with a long name-1.tif", "first"},
                                        test::ReadAttachment{"A page with a long name-2.tif", "second"}));
}

TEST_F(MailExportTest, DirectoryIsNamedAfterTheExport) {
    addPages(1);
    EXPECT_EQ(run(), 0);
    ASSERT_THAT(tempRoot.list(), SizeIs(1));
    EXPECT_THAT(host::utf8(tempRoot.list()[0]), testing::StartsWith("export-mail"));
}

TEST_F(MailExportTest, EachExportHasADirectoryOfItsOwn) {
    addPages(1);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(tempRoot.list(), SizeIs(2));
}

TEST_F(MailExportTest, WithoutPagesOffersAMessageWithoutAttachments) {
    engine->data.maxTotalSizeInKb = 1;
    EXPECT_EQ(run(), 0);
    ASSERT_THAT(client.calls, SizeIs(1));
    EXPECT_EQ(client.calls[0].message.nFileCount, 0U);
    EXPECT_EQ(client.calls[0].message.lpFiles, nullptr);
    EXPECT_THAT(copies(), IsEmpty());
}

TEST_F(MailExportTest, PageAddedTwiceIsAttachedTwice) {
    test::TestPage& page = addPage(L"a.tif", "data");
    engine->addData(&page);
    EXPECT_EQ(run(), 0);
    EXPECT_THAT(copies(), ElementsAre(L"Page-1.tif", L"Page-2.tif"));
}

TEST_F(MailExportTest, SubjectIsTheSettings) {
    engine->data.subject = "Faktury 10";
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(client.calls.at(0).subject, "Faktury 10");
}

TEST_F(MailExportTest, WithoutDialogHasNoSubjectAndNoLimit) {
    addPage(L"a.tif", std::string(5000, 'x'));
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(client.calls.at(0).subject, std::nullopt);
}

TEST_F(MailExportTest, MailClientsWindowsBelongToTheParentWindow) {
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(client.calls.at(0).owner(), owner.m_hWnd);
}

TEST_F(MailExportTest, PathsOver260CharactersAreCopiedAndAttached) {
    std::wstring deep = tempRoot.path();
    while (deep.size() < 280)
        deep += L"\\" + std::wstring(40, L'd');
    ASSERT_TRUE(bxdisk::createDirectories(deep));
    bxdisk::setTempRoot(deep);
    addPage(L"a.tif", "data");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(test::readFile(host::wide(client.calls.at(0).files.at(0).path.value_or(""))), "data");
}

struct SourceName {
    const char* what;
    std::wstring name;
};

class SourceNameTest : public MailExportFixture, public testing::WithParamInterface<SourceName> {};

TEST_P(SourceNameTest, ReachesTheSystemAsItIs) {
    static std::wstring source;
    const auto noteSource = +[](const wchar_t* path, const wchar_t*, BOOL) WINAPI -> BOOL {
        source = path;
        return TRUE;
    };
    const test::ImportHook copyFile("CopyFileW", reinterpret_cast<void*>(noteSource));
    addPage(L"a.tif", "data").file = L"C:\\" + GetParam().name;
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(source, L"C:\\" + GetParam().name);
}

INSTANTIATE_TEST_SUITE_P(Names, SourceNameTest,
                         testing::Values(SourceName{"OutsideTheCodePage", L"é漢.tif"},
                                         SourceName{"OutsideTheBasicPlane", L"\xD83D\xDCC4.tif"},
                                         SourceName{"WithALoneSurrogate", L"\xD800.tif"}),
                         [](const auto& info) { return std::string(info.param.what); });

TEST_F(MailExportTest, PageWhosePathIsOver260CharactersIsAttached) {
    std::wstring folder;
    while (folder.size() < 280)
        folder += std::wstring(40, L'd') + L"\\";
    ASSERT_TRUE(bxdisk::createDirectories(pageFolder / folder));
    addPage(folder + L"a.tif", "data");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(test::readFile(directory() + L"\\Page-1.tif"), "data");
}

// The host's module state.

TEST_F(MailExportTest, RunsInTheStateThatIsCurrent) {
    AFX_MODULE_STATE hostState(GetModuleHandleW(L"kernel32.dll"));
    const AFX_MAINTAIN_STATE2 hostIsCurrent(&hostState);
    CWinApp hostApp(L"Host");
    client.behaviour = test::meanwhile([&] {
        EXPECT_EQ(AfxGetModuleState(), &hostState);
        EXPECT_FALSE(owner.IsWindowEnabled());
    });
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(client.finished, 1);
    EXPECT_TRUE(owner.IsWindowEnabled());
}

// Pages without a file.

TEST_F(MailExportTest, WrittenCopyIsAttachedAndItsSourceRemoved) {
    addPageWithoutFile("written");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(test::readFile(directory() + L"\\Page-1.tif"), "written");
    expectWrittenAndRemoved(pages.back());
}

TEST_F(MailExportTest, WrittenCopyIsRemovedAlsoWhenALaterPageFails) {
    addPageWithoutFile("written");
    addPage(L"b.tif", "b").file = pageFolder / L"gone.tif";
    EXPECT_EQ(run(), 1);
    expectWrittenAndRemoved(pages.front());
}

TEST_F(MailExportTest, WrittenCopyIsRemovedAlsoWhenTheMessageIsNotSent) {
    addPageWithoutFile("written");
    client.behaviour = test::returns(MAPI_E_FAILURE);
    EXPECT_EQ(runAndPress(IDOK), 1);
    expectWrittenAndRemoved(pages.back());
}

TEST_F(MailExportTest, SourceOfAPageWithAFileStays) {
    addPage(L"a.tif", "data");
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(pages.back().copies, 0);
    EXPECT_EQ(test::readFile(pageFolder / L"a.tif"), "data");
}

TEST_F(MailExportTest, WrittenCopyIsRemovedAlsoWhenItCannotBeCopied) {
    // There is no such folder in the export's directory.
    ASSERT_TRUE(bxutils::getResourceManager()->loadLanguageFile(
        scratch.write(L"slash.ini", "[Scan]\nBasicExport.Page=no/Page\n")));
    addPageWithoutFile("written");
    EXPECT_EQ(run(), 1);
    expectReport(162, "Failed to prepare attachments");
    expectWrittenAndRemoved(pages.back());
}

// The page during its turn.

TEST_F(MailExportTest, HoldsThePageWhileItIsCopied) {
    struct Page : test::TestPage {
        using TestPage::TestPage;
        bool createDataCopy(std::wstring& path, SorvaneException& error) override {
            during = references;
            return TestPage::createDataCopy(path, error);
        }
        int during = 0;
    } page("page.tif", "data", temporaryCopy);
    engine->addData(&page);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(page.during, 2);
    EXPECT_EQ(page.references, 1);
    page.data.reset();
    EXPECT_EQ(run(), 1);
    EXPECT_EQ(page.references, 1);
    engine.clear();
}

// Failures.

TEST_F(MailExportTest, PageWithoutDataIsReportedWithoutItsOwnReasonAndStopsTheExport) {
    addPage(L"a.tif", "a");
    addPageWithoutFile(std::nullopt);
    addPage(L"c.tif", "c");
    EXPECT_EQ(run(), 1);
    expectReport(162, "Failed to prepare attachments");
    EXPECT_THAT(copies(), ElementsAre(L"Page-1.tif"));
    EXPECT_THAT(client.calls, IsEmpty());
}

TEST_F(MailExportTest, PageWhoseFileIsGoneIsReportedAndStopsTheExport) {
    addPage(L"a.tif", "a");
    addPage(L"b.tif", "b").file = pageFolder / L"gone.tif";
    EXPECT_EQ(run(), 1);
    expectReport(162, "Failed to prepare attachments");
    EXPECT_THAT(copies(), ElementsAre(L"Page-1.tif"));
    EXPECT_THAT(client.calls, IsEmpty());
}

TEST_F(MailExportTest, MissingTemporaryRootIsReported) {
    bxdisk::setTempRoot(tempRoot / L"missing");
    addPages(1);
    EXPECT_EQ(run(), 1);
    expectReport(162, "Failed to prepare attachments");
    EXPECT_THAT(client.calls, IsEmpty());
}

class MailFailureTest : public MailExportFixture, public testing::WithParamInterface<ULONG> {};

TEST_P(MailFailureTest, OfTheClientIsShownAndReported) {
    client.behaviour = test::returns(GetParam());
    addPages(1);
    EXPECT_EQ(runAndPress(IDOK), 1);
    EXPECT_EQ(client.finished, 1);
    expectReport(188, "Failed to send mail");
    EXPECT_EQ(box.text, L"The mail program reported a failure. The message has not been sent.");
    EXPECT_THAT(copies(), ElementsAre(L"Page-1.tif"));
}

INSTANTIATE_TEST_SUITE_P(Codes, MailFailureTest,
                         testing::Values(ULONG{MAPI_E_FAILURE}, ULONG{MAPI_E_DISK_FULL},
                                         ULONG{MAPI_E_ATTACHMENT_NOT_FOUND}));

class MailDismissalTest : public MailExportFixture, public testing::WithParamInterface<ULONG> {};

TEST_P(MailDismissalTest, IsDone) {
    client.behaviour = test::returns(GetParam());
    addPages(1);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(client.finished, 1);
    EXPECT_TRUE(errors.isEmpty());
}

INSTANTIATE_TEST_SUITE_P(Codes, MailDismissalTest,
                         testing::Values(ULONG{MAPI_USER_ABORT}, ULONG{MAPI_E_LOGIN_FAILURE}));

// The limit.

struct Limit {
    const char* what;
    int maxTotalSizeInKb;
    std::size_t totalSize;
    bool asks;
};

class LimitTest : public MailExportFixture, public testing::WithParamInterface<Limit> {
protected:
    LimitTest() {
        engine->data.maxTotalSizeInKb = GetParam().maxTotalSizeInKb;
        addPage(L"a.tif", std::string(600, 'a'));
        addPage(L"b.tif", std::string(GetParam().totalSize - 600, 'b'));
    }
};

TEST_P(LimitTest, AsksWhenItIsExceeded) {
    if (GetParam().asks)
        EXPECT_EQ(runAndPress(IDYES), 0);
    else
        EXPECT_EQ(run(), 0);
    EXPECT_THAT(attachmentNames(), SizeIs(2));
}

INSTANTIATE_TEST_SUITE_P(Limits, LimitTest,
                         testing::Values(Limit{"None", 0, 5000, false}, Limit{"Negative", -1, 5000, false},
                                         Limit{"Smallest", INT_MIN, 5000, false},
                                         Limit{"Below", 1, 1023, false}, Limit{"Equal", 1, 1024, false},
                                         Limit{"OneOver", 1, 1025, true}, Limit{"TwoFiles", 1, 1200, true},
                                         Limit{"TwoKiB", 2, 2048, false},
                                         Limit{"OneOverTwoKiB", 2, 2049, true},
                                         Limit{"LargestThatDoesNotWrap", 2097151, 5000, false},
                                         Limit{"WrapsToNegative", 2097152, 5000, false},
                                         Limit{"WrapsToZero", 4194304, 5000, false},
                                         Limit{"WrapsToOneKiB", 4194305, 1024, false},
                                         Limit{"OverWhatWrapsToOneKiB", 4194305, 1025, true},
                                         Limit{"NegativeThatWrapsToOneKiB", -4194303, 1025, true},
                                         Limit{"Largest", INT_MAX, 5000, false}),
                         [](const auto& info) { return std::string(info.param.what); });

class QuestionTest : public MailExportFixture {
protected:
    QuestionTest() {
        engine->data.maxTotalSizeInKb = 1;
        addPage(L"a.tif", std::string(600, 'a'));
        addPage(L"b.tif", std::string(600, 'b'));
    }
};

TEST_F(QuestionTest, IsTheHostsTextAsItIs) {
    EXPECT_EQ(runAndPress(IDYES), 0);
    EXPECT_EQ(box.caption, L"Velké přílohy");
    EXPECT_EQ(box.text, L"Opravdu 100 %s?");
    EXPECT_EQ(box.owner, owner.m_hWnd);
    EXPECT_EQ(box.icon, LoadIconW(nullptr, IDI_QUESTION));
    EXPECT_THAT(box.buttons, ElementsAre(IDYES, IDNO));
    EXPECT_EQ(box.defaultButton, IDYES);
}

TEST_F(QuestionTest, AnsweredNoIsAFailureAfterAllCopies) {
    EXPECT_EQ(runAndPress(IDNO), 1);
    expectReport(162, "Failed to prepare attachments");
    EXPECT_THAT(copies(), ElementsAre(L"Page-1.tif", L"Page-2.tif"));
    EXPECT_THAT(client.calls, IsEmpty());
}

TEST_F(QuestionTest, IsAMessageBoxOfTheParentInExactlyThisStyle) {
    static HWND boxOwner;
    static UINT style;
    const auto noteBox = +[](HWND window, const wchar_t*, const wchar_t*, UINT type) WINAPI -> int {
        boxOwner = window;
        style = type;
        return IDYES;
    };
    const test::ImportHook messageBox("MessageBoxW", reinterpret_cast<void*>(noteBox), L"toolkit.dll");
    EXPECT_EQ(engine->exportData(nullptr, errors), 0);
    EXPECT_EQ(boxOwner, owner.m_hWnd);
    EXPECT_EQ(style, 0x24U);
}

class WrittenPageQuestionTest : public QuestionTest {
protected:
    WrittenPageQuestionTest() {
        pages.back().file.reset();
        pages.back().data = std::string(600, 'b');
        pages.back().copyPath = temporaryCopy;
    }
};

TEST_F(WrittenPageQuestionTest, AnsweredYesSendsWhatWasWrittenAndRemoved) {
    EXPECT_EQ(runAndPress(IDYES), 0);
    EXPECT_EQ(client.finished, 1);
    expectWrittenAndRemoved(pages.back());
}

TEST_F(WrittenPageQuestionTest, AnsweredNoRemovesWhatWasWritten) {
    EXPECT_EQ(runAndPress(IDNO), 1);
    expectWrittenAndRemoved(pages.back());
}

TEST_F(MailExportTest, SizeOver4GibIsNotTakenForASmallOne) {
    // The same in 32 bits is a single byte.
    const auto makeSparse = +[](const wchar_t*, const wchar_t* target, BOOL) WINAPI -> BOOL {
        const host::UniqueHandle file(
            CreateFileW(target, GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr));
        DWORD ignored = 0;
        DeviceIoControl(file.get(), FSCTL_SET_SPARSE, nullptr, 0, nullptr, 0, &ignored, nullptr);
        LARGE_INTEGER size;
        size.QuadPart = (std::int64_t{1} << 32) + 1;
        return SetFilePointerEx(file.get(), size, nullptr, FILE_BEGIN) && SetEndOfFile(file.get());
    };
    const test::ImportHook copyFile("CopyFileW", reinterpret_cast<void*>(makeSparse));
    engine->data.maxTotalSizeInKb = 1;
    addPages(1);
    EXPECT_EQ(runAndPress(IDNO), 1);
    EXPECT_THAT(client.calls, IsEmpty());
}

// Mail clients with habits of their own.

TEST_F(MailExportTest, ClientThatDestroysItsOwnerDoesNotDisturb) {
    client.behaviour = test::destroysOwner();
    addPages(1);
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(client.finished, 1);
    EXPECT_EQ(owner.m_hWnd, nullptr);
}

TEST_F(MailExportTest, ClientThatCallsBackIntoAnExportGetsASecondMessage) {
    addPages(1);
    int inner = -1;
    client.behaviour = test::meanwhile([&] {
        if (client.calls.size() == 1)
            inner = engine->exportData(nullptr, errors);
    });
    EXPECT_EQ(run(), 0);
    EXPECT_EQ(inner, 0);
    EXPECT_EQ(client.finished, 2);
    EXPECT_THAT(tempRoot.list(), SizeIs(2));
    EXPECT_TRUE(owner.IsWindowEnabled());
}

} // namespace
