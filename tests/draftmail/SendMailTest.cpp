// A call of Simple MAPI from its records to the draft and the code.
#include "draftmail/SendMail.h"

#include "draftmail/MapiError.h"
#include "host/UniqueHandle.h"
#include "support/AllocationFaults.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

#include <stdexcept>

namespace {

using testing::ElementsAre;
using testing::EndsWith;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr FLAGS asked = MAPI_LOGON_UI | MAPI_DIALOG;

class FakeDesktop : public draftmail::Desktop {
public:
    std::wstring draftsFolder() override {
        if (broken)
            throw std::runtime_error("no desktop");
        return folder;
    }
    DWORD open(const std::wstring& draft, HWND owner) noexcept override {
        lastOwner = owner;
        if (recording)
            opened.push_back(draft);
        return openError;
    }

    std::wstring folder;
    bool broken = false;
    bool recording = true;
    DWORD openError = ERROR_SUCCESS;
    std::vector<std::wstring> opened;
    HWND lastOwner = nullptr;
};

class SendMailTest : public testing::Test {
protected:
    SendMailTest() {
        desktop.folder = folder / L"Drafts";
        message.lpszSubject = subject;
        message.lpszNoteText = note;
        message.nFileCount = 1;
        message.lpFiles = &file;
        file.lpszPathName = path.data();
        file.lpszFileName = name;
    }

    ULONG send(FLAGS flags = asked) { return draftmail::sendMail(&message, flags, 42, desktop); }

    std::vector<std::wstring> drafts() { return filesIn(desktop.folder); }

    static std::vector<std::wstring> filesIn(const std::wstring& directory) {
        std::vector<std::wstring> names;
        WIN32_FIND_DATAW data;
        HANDLE search = FindFirstFileW((directory + L"\\*.*").c_str(), &data);
        if (search == INVALID_HANDLE_VALUE)
            return names;
        do {
            if (!(data.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY))
                names.push_back(directory + L"\\" + data.cFileName);
        } while (FindNextFileW(search, &data));
        FindClose(search);
        return names;
    }

    static std::string ansi(const std::wstring& text) {
        std::string result(text.size() * 3, '\0');
        const int size =
            WideCharToMultiByte(CP_ACP, 0, text.data(), static_cast<int>(text.size()), result.data(),
                                static_cast<int>(result.size()), nullptr, nullptr);
        result.resize(static_cast<std::size_t>(size));
        return result;
    }

    test::TempFolder folder;
    FakeDesktop desktop;
    char subject[8] = "Scans";
    char note[2] = " ";
    char name[16] = "Page-1.tif";
    std::string path = ansi(folder.write(L"source", "foobar"));
    MapiFileDesc file{};
    MapiMessage message{};
};

TEST_F(SendMailTest, LeavesADraftAndOpensIt) {
    EXPECT_EQ(send(), static_cast<ULONG>(SUCCESS_SUCCESS));
    const std::vector<std::wstring> found = drafts();
    ASSERT_EQ(found.size(), 1U);
    EXPECT_THAT(found[0], testing::StartsWith(desktop.folder + L"\\Scans 20"));
    EXPECT_THAT(found[0], EndsWith(L".eml"));
    EXPECT_THAT(desktop.opened, ElementsAre(found[0]));
    EXPECT_EQ(desktop.lastOwner, reinterpret_cast<HWND>(42));
    const std::string bytes = test::readFile(found[0]);
    EXPECT_THAT(bytes, HasSubstr("\r\nSubject: Scans\r\n"));
    EXPECT_THAT(bytes, HasSubstr("filename=\"Page-1.tif\"\r\n\r\nZm9vYmFy\r\n"));
}

TEST_F(SendMailTest, ReadsTextsInTheSystemsCodePage) {
    std::string text = ansi(L"\u00E9");
    message.lpszSubject = text.data();
    EXPECT_EQ(send(), static_cast<ULONG>(SUCCESS_SUCCESS));
    ASSERT_EQ(drafts().size(), 1U);
    EXPECT_THAT(test::readFile(drafts()[0]), HasSubstr("\r\nSubject: =?utf-8?B?w6k=?=\r\n"));
}

TEST_F(SendMailTest, LeavesTwoDraftsOfOneSubject) {
    EXPECT_EQ(send(), static_cast<ULONG>(SUCCESS_SUCCESS));
    EXPECT_EQ(send(), static_cast<ULONG>(SUCCESS_SUCCESS));
    EXPECT_EQ(drafts().size(), 2U);
}

TEST_F(SendMailTest, HasCopiedTheAttachmentsWhenItOpensTheDraft) {
    ASSERT_EQ(send(), static_cast<ULONG>(SUCCESS_SUCCESS));
    ASSERT_TRUE(DeleteFileW((folder / L"source").c_str()));
    EXPECT_THAT(test::readFile(desktop.opened.at(0)), HasSubstr("Zm9vYmFy"));
}

TEST_F(SendMailTest, TakesAThousandAttachments) {
    std::vector<MapiFileDesc> files(1000, file);
    message.nFileCount = 1000;
    message.lpFiles = files.data();
    ASSERT_EQ(send(), static_cast<ULONG>(SUCCESS_SUCCESS));
    const std::string bytes = test::readFile(desktop.opened.at(0));
    std::size_t count = 0;
    for (std::size_t at = 0; (at = bytes.find("\r\nZm9vYmFy\r\n", at)) != std::string::npos; ++at)
        ++count;
    EXPECT_EQ(count, 1000U);
}

TEST_F(SendMailTest, SucceedsThoughNoProgramOpensTheDraft) {
    desktop.openError = ERROR_NO_ASSOCIATION;
    EXPECT_EQ(send(), static_cast<ULONG>(SUCCESS_SUCCESS));
    EXPECT_EQ(drafts().size(), 1U);
}

TEST_F(SendMailTest, TellsThatTheUserDismissedTheQuestionForAProgramAndKeepsTheDraft) {
    desktop.openError = ERROR_CANCELLED;
    EXPECT_EQ(send(), static_cast<ULONG>(MAPI_E_USER_ABORT));
    EXPECT_EQ(drafts().size(), 1U);
}

TEST_F(SendMailTest, RefusesToSendWithoutADialog) {
    EXPECT_EQ(send(MAPI_LOGON_UI), static_cast<ULONG>(MAPI_E_NOT_SUPPORTED));
    EXPECT_THAT(drafts(), IsEmpty());
    EXPECT_THAT(desktop.opened, IsEmpty());
}

TEST_F(SendMailTest, TakesWhatElseMayBeAskedForForTheDialog) {
    // Modeless, and with texts that the code page may lack; not every <mapi.h> has these.
    constexpr FLAGS modeless = 0x4 | MAPI_DIALOG;
    constexpr FLAGS forceUnicode = 0x40000;
    EXPECT_EQ(send(modeless), static_cast<ULONG>(SUCCESS_SUCCESS));
    EXPECT_EQ(send(MAPI_DIALOG | MAPI_NEW_SESSION | forceUnicode), static_cast<ULONG>(SUCCESS_SUCCESS));
    EXPECT_EQ(drafts().size(), 2U);
}

TEST_F(SendMailTest, LeavesOutWhatHasNoPlaceInADraft) {
    char sender[] = "sender@example.com";
    char type[] = "IPM.Test";
    char date[] = "2001/02/03 04:05";
    char conversation[] = "conversation-1";
    MapiRecipDesc originator{0, MAPI_ORIG, sender, sender, 0, nullptr};
    message.lpOriginator = &originator;
    message.lpszMessageType = type;
    message.lpszDateReceived = date;
    message.lpszConversationID = conversation;
    ASSERT_EQ(send(), static_cast<ULONG>(SUCCESS_SUCCESS));
    const std::string bytes = test::readFile(desktop.opened.at(0));
    for (const char* none : std::initializer_list<const char*>{"From:", sender, type, date, conversation})
        EXPECT_THAT(bytes, testing::Not(HasSubstr(none)));
}

TEST_F(SendMailTest, FailsWithoutAMessage) {
    EXPECT_EQ(draftmail::sendMail(static_cast<const MapiMessage*>(nullptr), asked, 0, desktop),
              static_cast<ULONG>(MAPI_E_FAILURE));
}

TEST_F(SendMailTest, LeavesNothingWhenAnAttachmentIsMissing) {
    ASSERT_TRUE(DeleteFileW((folder / L"source").c_str()));
    EXPECT_EQ(send(), static_cast<ULONG>(MAPI_E_ATTACHMENT_NOT_FOUND));
    EXPECT_THAT(drafts(), IsEmpty());
    EXPECT_THAT(desktop.opened, IsEmpty());
}

TEST_F(SendMailTest, LeavesNothingWhenTheLastAttachmentIsLocked) {
    std::string locked = ansi(folder.write(L"locked", "x"));
    const host::UniqueHandle owner(
        CreateFileW((folder / L"locked").c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    MapiFileDesc files[] = {file, file};
    files[1].lpszPathName = locked.data();
    message.nFileCount = 2;
    message.lpFiles = files;
    EXPECT_EQ(send(), static_cast<ULONG>(MAPI_E_ATTACHMENT_OPEN_FAILURE));
    EXPECT_THAT(drafts(), IsEmpty());
}

TEST_F(SendMailTest, IsDeniedWhereAFileIsInThePlaceOfTheDraftsFolder) {
    folder.write(L"Drafts", "");
    EXPECT_EQ(send(), static_cast<ULONG>(MAPI_E_ACCESS_DENIED));
}

TEST_F(SendMailTest, LetsNoExceptionOut) {
    desktop.broken = true;
    EXPECT_EQ(send(), static_cast<ULONG>(MAPI_E_FAILURE));
}

/// Whether memory fails for a moment or for good.
class ShortMemoryTest : public SendMailTest, public testing::WithParamInterface<bool> {};

TEST_P(ShortMemoryTest, IsToldWhereverItRunsOutAndLeavesNothing) {
    // The call alone is to run out of it.
    desktop.recording = false;
    int number = 1;
    for (bool struck = true; struck; ++number) {
        test::AllocationFaults faults(number, GetParam());
        faults.arm();
        const ULONG code = send();
        faults.disarm();
        struck = faults.hasStruck();
        EXPECT_EQ(code, static_cast<ULONG>(struck ? MAPI_E_INSUFFICIENT_MEMORY : SUCCESS_SUCCESS)) << number;
        EXPECT_EQ(drafts().size(), struck ? 0U : 1U) << number;
    }
    EXPECT_GT(number, 10);
}

// Nothing comes of it: without memory the folder of the user's drafts cannot even be named.
TEST_F(SendMailTest, LetsNoExceptionOutWhenThereIsNoMemoryForTheUsersDesktop) {
    test::AllocationFaults faults(1, false);
    faults.arm();
    const ULONG ansi = draftmail::sendMail(&message, asked, 0);
    const ULONG documents = draftmail::sendDocuments(0, ";", path.c_str(), name);
    faults.disarm();
    EXPECT_EQ(ansi, static_cast<ULONG>(MAPI_E_INSUFFICIENT_MEMORY));
    EXPECT_EQ(documents, static_cast<ULONG>(MAPI_E_INSUFFICIENT_MEMORY));
}

INSTANTIATE_TEST_SUITE_P(OnceOrForGood, ShortMemoryTest, testing::Bool());

TEST_F(SendMailTest, TakesUnicodeMessages) {
    wchar_t wideSubject[] = L"\u4E2D";
    draftmail::MessageW wide{};
    wide.lpszSubject = wideSubject;
    EXPECT_EQ(draftmail::sendMail(&wide, asked, 0, desktop), static_cast<ULONG>(SUCCESS_SUCCESS));
    ASSERT_EQ(drafts().size(), 1U);
    EXPECT_THAT(drafts()[0], HasSubstr(L"\\\u4E2D 20"));
}

TEST_F(SendMailTest, TakesDocuments) {
    const std::string paths = path + "|" + path;
    EXPECT_EQ(draftmail::sendDocuments(0, "|", paths.c_str(), "a|b", desktop),
              static_cast<ULONG>(SUCCESS_SUCCESS));
    ASSERT_EQ(drafts().size(), 1U);
    const std::string bytes = test::readFile(drafts()[0]);
    EXPECT_THAT(bytes, HasSubstr("filename=\"a\""));
    EXPECT_THAT(bytes, HasSubstr("filename=\"b\""));
}

TEST_F(SendMailTest, HasOneCodeForDocumentsThatAreMissing) {
    EXPECT_EQ(draftmail::sendDocuments(0, ";", (path + "x").c_str(), "", desktop),
              static_cast<ULONG>(MAPI_E_ATTACHMENT_OPEN_FAILURE));
}

struct Reason {
    DWORD error;
    ULONG code;
};

// Conditions that cannot be brought about here.
class DraftErrorTest : public testing::TestWithParam<Reason> {};

TEST_P(DraftErrorTest, HasItsCode) {
    EXPECT_EQ(draftmail::draftError(GetParam().error).code(), GetParam().code);
}

INSTANTIATE_TEST_SUITE_P(Reasons, DraftErrorTest,
                         testing::Values(Reason{ERROR_DISK_FULL, MAPI_E_DISK_FULL},
                                         Reason{ERROR_HANDLE_DISK_FULL, MAPI_E_DISK_FULL},
                                         Reason{1295, MAPI_E_DISK_FULL},
                                         Reason{ERROR_WRITE_PROTECT, MAPI_E_ACCESS_DENIED},
                                         Reason{ERROR_NOT_ENOUGH_MEMORY, MAPI_E_INSUFFICIENT_MEMORY},
                                         Reason{ERROR_CRC, MAPI_E_FAILURE}));

class AttachmentErrorTest : public testing::TestWithParam<Reason> {};

TEST_P(AttachmentErrorTest, HasItsCode) {
    EXPECT_EQ(draftmail::attachmentError(GetParam().error).code(), GetParam().code);
}

INSTANTIATE_TEST_SUITE_P(Reasons, AttachmentErrorTest,
                         testing::Values(Reason{ERROR_LOCK_VIOLATION, MAPI_E_ATTACHMENT_OPEN_FAILURE},
                                         Reason{ERROR_CRC, MAPI_E_ATTACHMENT_OPEN_FAILURE},
                                         Reason{ERROR_BAD_NETPATH, MAPI_E_ATTACHMENT_NOT_FOUND},
                                         Reason{ERROR_NOT_ENOUGH_MEMORY, MAPI_E_INSUFFICIENT_MEMORY}));

} // namespace
