// What callers of Simple MAPI hand over.
#include "draftmail/MapiMessages.h"
#include "draftmail/MapiError.h"

#include <gmock/gmock.h>

#include <array>
#include <cstddef>

namespace {

using draftmail::Draft;
using draftmail::draftOf;
using draftmail::draftOfDocuments;
using testing::ElementsAre;
using testing::Field;
using testing::IsEmpty;

constexpr UINT western = 1252;
constexpr UINT centralEuropean = 1250;

auto isMailbox(const std::string& name, const std::string& address) {
    return testing::AllOf(Field(&draftmail::Mailbox::name, name),
                          Field(&draftmail::Mailbox::address, address));
}

auto isAttachment(const std::wstring& path, const std::wstring& name) {
    return testing::AllOf(Field(&draftmail::Attachment::path, path),
                          Field(&draftmail::Attachment::name, name));
}

// Callers fill in the records of another header. But for the width of the texts they are the ANSI form's.
static_assert(sizeof(draftmail::FileDescW) == sizeof(MapiFileDesc));
static_assert(offsetof(draftmail::FileDescW, nPosition) == offsetof(MapiFileDesc, nPosition));
static_assert(offsetof(draftmail::FileDescW, lpszPathName) == offsetof(MapiFileDesc, lpszPathName));
static_assert(offsetof(draftmail::FileDescW, lpszFileName) == offsetof(MapiFileDesc, lpszFileName));
static_assert(sizeof(draftmail::RecipDescW) == sizeof(MapiRecipDesc));
static_assert(offsetof(draftmail::RecipDescW, ulRecipClass) == offsetof(MapiRecipDesc, ulRecipClass));
static_assert(offsetof(draftmail::RecipDescW, lpszName) == offsetof(MapiRecipDesc, lpszName));
static_assert(offsetof(draftmail::RecipDescW, lpszAddress) == offsetof(MapiRecipDesc, lpszAddress));
static_assert(sizeof(draftmail::MessageW) == sizeof(MapiMessage));
static_assert(offsetof(draftmail::MessageW, lpszSubject) == offsetof(MapiMessage, lpszSubject));
static_assert(offsetof(draftmail::MessageW, lpszNoteText) == offsetof(MapiMessage, lpszNoteText));
static_assert(offsetof(draftmail::MessageW, nRecipCount) == offsetof(MapiMessage, nRecipCount));
static_assert(offsetof(draftmail::MessageW, lpRecips) == offsetof(MapiMessage, lpRecips));
static_assert(offsetof(draftmail::MessageW, nFileCount) == offsetof(MapiMessage, nFileCount));
static_assert(offsetof(draftmail::MessageW, lpFiles) == offsetof(MapiMessage, lpFiles));

/// A text that the records take, which do not promise to leave it alone.
char* text(const char* literal) {
    return const_cast<char*>(literal);
}

class MapiMessagesTest : public testing::Test {
protected:
    void attach(const char* path, const char* name) {
        file.lpszPathName = text(path);
        file.lpszFileName = text(name);
        message.nFileCount = 1;
        message.lpFiles = &file;
    }

    void address(ULONG recipientClass, const char* name, const char* address) {
        recipient.ulRecipClass = recipientClass;
        recipient.lpszName = text(name);
        recipient.lpszAddress = text(address);
        message.nRecipCount = 1;
        message.lpRecips = &recipient;
    }

    ULONG failure() {
        try {
            draftOf(message, western);
        } catch (const draftmail::MapiError& error) {
            return error.code();
        }
        return SUCCESS_SUCCESS;
    }

    MapiMessage message{};
    MapiFileDesc file{};
    MapiRecipDesc recipient{};
};

TEST_F(MapiMessagesTest, AnEmptyMessageIsAnEmptyDraft) {
    const Draft draft = draftOf(message, western);
    EXPECT_EQ(draft.subject, L"");
    EXPECT_EQ(draft.note, L"");
    EXPECT_THAT(draft.attachments, IsEmpty());
    EXPECT_THAT(draft.to, IsEmpty());
}

TEST_F(MapiMessagesTest, TextsAreInTheCodePage) {
    message.lpszSubject = text("\xF8");
    message.lpszNoteText = text("\xE9");
    attach("C:\\\xF8\\x", "\xF8.tif");
    const Draft czech = draftOf(message, centralEuropean);
    EXPECT_EQ(czech.subject, L"\u0159");
    EXPECT_EQ(czech.note, L"\u00E9");
    EXPECT_THAT(czech.attachments, ElementsAre(isAttachment(L"C:\\\u0159\\x", L"\u0159.tif")));
    EXPECT_EQ(draftOf(message, western).subject, L"\u00F8");
}

TEST_F(MapiMessagesTest, TheCodePageMayBeUtf8) {
    message.lpszSubject = text("\xC5\x99");
    EXPECT_EQ(draftOf(message, CP_UTF8).subject, L"\u0159");
    message.lpszSubject = text("a\xFFz");
    EXPECT_EQ(draftOf(message, CP_UTF8).subject, L"a\uFFFDz");
}

TEST_F(MapiMessagesTest, AMessageMayAskForUtf8) {
    message.ulReserved = CP_UTF8;
    message.lpszSubject = text("\xC5\x99");
    message.lpszNoteText = text("\xE4\xB8\xAD");
    attach("C:\\\xC5\x99", "\xE4\xB8\xAD.tif");
    address(MAPI_TO, "\xC5\x99", "a@example.com");
    const Draft draft = draftOf(message, western);
    EXPECT_EQ(draft.subject, L"\u0159");
    EXPECT_EQ(draft.note, L"\u4E2D");
    EXPECT_THAT(draft.attachments, ElementsAre(isAttachment(L"C:\\\u0159", L"\u4E2D.tif")));
    EXPECT_THAT(draft.to, ElementsAre(isMailbox("\xC5\x99", "a@example.com")));
}

TEST_F(MapiMessagesTest, TextsThatAreNoUtf8AreInTheCodePageThoughUtf8IsAskedFor) {
    message.ulReserved = CP_UTF8;
    attach("C:\\\xF8", "\xF8.tif");
    EXPECT_THAT(draftOf(message, western).attachments,
                ElementsAre(isAttachment(L"C:\\\u00F8", L"\u00F8.tif")));
}

TEST_F(MapiMessagesTest, UnicodeMessagesKeepTheirTexts) {
    wchar_t subject[] = L"\u0159\u20AC";
    wchar_t path[] = L"C:\\\u4E2D";
    draftmail::FileDescW wideFile{};
    wideFile.lpszPathName = path;
    draftmail::MessageW wide{};
    wide.lpszSubject = subject;
    wide.nFileCount = 1;
    wide.lpFiles = &wideFile;
    const Draft draft = draftOf(wide);
    EXPECT_EQ(draft.subject, subject);
    EXPECT_THAT(draft.attachments, ElementsAre(isAttachment(path, L"\u4E2D")));
}

TEST_F(MapiMessagesTest, UnicodeMessagesKeepTheirRecipients) {
    wchar_t name[] = L"\u0159";
    wchar_t address[] = L"SMTP:a@example.com";
    draftmail::RecipDescW wideRecipient{};
    wideRecipient.ulRecipClass = MAPI_CC;
    wideRecipient.lpszName = name;
    wideRecipient.lpszAddress = address;
    draftmail::MessageW wide{};
    wide.nRecipCount = 1;
    wide.lpRecips = &wideRecipient;
    EXPECT_THAT(draftOf(wide).cc, ElementsAre(isMailbox("\xC5\x99", "a@example.com")));
}

TEST_F(MapiMessagesTest, AttachmentsKeepTheirOrderWhateverTheirPositions) {
    // Nobody may look at it.
    const auto noType = reinterpret_cast<void*>(1);
    MapiFileDesc files[] = {{0, MAPI_OLE, 9, text("C:\\a"), nullptr, noType},
                            {0, MAPI_OLE_STATIC, 0, text("C:\\b"), nullptr, noType},
                            {0, 0, ~0U, text("C:\\c"), nullptr, noType}};
    message.nFileCount = 3;
    message.lpFiles = files;
    EXPECT_THAT(draftOf(message, western).attachments,
                ElementsAre(isAttachment(L"C:\\a", L"a"), isAttachment(L"C:\\b", L"b"),
                            isAttachment(L"C:\\c", L"c")));
}

struct GivenName {
    const char* given;
    std::wstring name;
};

class AttachmentNameTest : public MapiMessagesTest, public testing::WithParamInterface<GivenName> {};

TEST_P(AttachmentNameTest, IsAFileNameWithoutAFolder) {
    attach("C:\\scans/1.tif", GetParam().given);
    EXPECT_THAT(draftOf(message, western).attachments,
                ElementsAre(isAttachment(L"C:\\scans/1.tif", GetParam().name)));
}

INSTANTIATE_TEST_SUITE_P(
    Names, AttachmentNameTest,
    testing::Values(GivenName{"C:\\other\\a.tif", L"a.tif"}, GivenName{"..\\a.tif", L"a.tif"},
                    GivenName{"Invoice 1/2.tif", L"Invoice 1_2.tif"}, GivenName{"a\r\nb.tif", L"a__b.tif"},
                    GivenName{"a\tb\x7F.tif", L"a_b_.tif"}, GivenName{"C:a.tif", L"C_a.tif"},
                    GivenName{"a.tif:stream", L"a.tif_stream"},
                    GivenName{"a\"b\"<c>|?*.tif", L"a_b__c____.tif"}, GivenName{" a.tif ", L" a.tif "},
                    GivenName{nullptr, L"1.tif"}, GivenName{"", L"1.tif"}, GivenName{"C:\\", L"1.tif"},
                    GivenName{"..", L"1.tif"}, GivenName{" . ", L"1.tif"}));

TEST_F(MapiMessagesTest, AnAttachmentWithoutAPathIsNotFound) {
    for (const char* path : {static_cast<const char*>(nullptr), ""}) {
        attach(path, "a.tif");
        EXPECT_EQ(failure(), static_cast<ULONG>(MAPI_E_ATTACHMENT_NOT_FOUND));
    }
}

TEST_F(MapiMessagesTest, RecipientsAreOfThreeKinds) {
    address(MAPI_TO, "Jana", "SMTP:a@example.com");
    EXPECT_THAT(draftOf(message, western).to, ElementsAre(isMailbox("Jana", "a@example.com")));
    address(MAPI_CC, nullptr, "smtp:a@example.com");
    EXPECT_THAT(draftOf(message, western).cc, ElementsAre(isMailbox("", "a@example.com")));
    address(MAPI_BCC, "J\xF8", "a@example.com");
    EXPECT_THAT(draftOf(message, western).bcc, ElementsAre(isMailbox("J\xC3\xB8", "a@example.com")));
    address(MAPI_ORIG, "", "a@example.com");
    EXPECT_EQ(failure(), static_cast<ULONG>(MAPI_E_BAD_RECIPTYPE));
}

TEST_F(MapiMessagesTest, ARecipientsNameMayBeTheAddress) {
    for (const char* name : {"a@example.com", "SMTP:a@example.com"})
        for (const char* none : {static_cast<const char*>(nullptr), "", "EX:/o=Firm/cn=Jana"}) {
            address(MAPI_TO, name, none);
            EXPECT_THAT(draftOf(message, western).to, ElementsAre(isMailbox("", "a@example.com")));
        }
}

TEST_F(MapiMessagesTest, AnAddressMayBeWrittenInManyWays) {
    for (const char* written : {" a@example.com\t", "<a@example.com>", "mailto:a@example.com",
                                " SMTP:<a@example.com>", "<MAILTO:a@example.com>"}) {
        address(MAPI_TO, "Jana", written);
        EXPECT_THAT(draftOf(message, western).to, ElementsAre(isMailbox("Jana", "a@example.com"))) << written;
    }
}

class UnusableAddressTest : public MapiMessagesTest, public testing::WithParamInterface<const char*> {};

TEST_P(UnusableAddressTest, LeavesItsRecipientOutOfTheDraft) {
    MapiRecipDesc recipients[] = {{0, MAPI_TO, text("A"), text("a@example.com"), 0, nullptr},
                                  {0, MAPI_TO, text("Jana"), text(GetParam()), 0, nullptr},
                                  {0, MAPI_TO, text("B"), text("b@example.com"), 0, nullptr}};
    message.nRecipCount = 3;
    message.lpRecips = recipients;
    EXPECT_THAT(draftOf(message, western).to,
                ElementsAre(isMailbox("A", "a@example.com"), isMailbox("B", "b@example.com")));
}

// The third could end its field and begin another.
INSTANTIATE_TEST_SUITE_P(Addresses, UnusableAddressTest,
                         testing::Values(nullptr, "<>", "a@example.com>\r\nX: y",
                                         "SMTP:", "EX:/o=Firm/cn=Jana"));

TEST_F(MapiMessagesTest, CountsBeyondReasonAreRefusedUnread) {
    message.nFileCount = draftmail::mostFiles + 1;
    EXPECT_EQ(failure(), static_cast<ULONG>(MAPI_E_TOO_MANY_FILES));
    message.nFileCount = 0;
    message.nRecipCount = draftmail::mostRecipients + 1;
    EXPECT_EQ(failure(), static_cast<ULONG>(MAPI_E_TOO_MANY_RECIPIENTS));
}

TEST_F(MapiMessagesTest, CountsWithoutRecordsFail) {
    message.nFileCount = 1;
    EXPECT_EQ(failure(), static_cast<ULONG>(MAPI_E_FAILURE));
    message.nFileCount = 0;
    message.nRecipCount = 1;
    EXPECT_EQ(failure(), static_cast<ULONG>(MAPI_E_FAILURE));
}

TEST_F(MapiMessagesTest, AsManyFilesAsAllowedAreTaken) {
    std::vector<MapiFileDesc> files(draftmail::mostFiles,
                                    MapiFileDesc{0, 0, 0, text("C:\\x"), nullptr, nullptr});
    message.nFileCount = draftmail::mostFiles;
    message.lpFiles = files.data();
    EXPECT_EQ(draftOf(message, western).attachments.size(), draftmail::mostFiles);
}

TEST(DocumentsTest, AreSplitAtTheDelimiter) {
    EXPECT_THAT(draftOfDocuments(";", "C:\\a;C:\\b;C:\\c", "one;;", western).attachments,
                ElementsAre(isAttachment(L"C:\\a", L"one"), isAttachment(L"C:\\b", L"b"),
                            isAttachment(L"C:\\c", L"c")));
}

TEST(DocumentsTest, AreNoneBetweenTwoDelimitersAndAfterTheLast) {
    EXPECT_THAT(draftOfDocuments(";", "C:\\a;;C:\\b;", "one;;two;", western).attachments,
                ElementsAre(isAttachment(L"C:\\a", L"one"), isAttachment(L"C:\\b", L"two")));
}

TEST(DocumentsTest, MayBeOneOrNone) {
    EXPECT_THAT(draftOfDocuments(nullptr, "C:\\a;b", nullptr, western).attachments,
                ElementsAre(isAttachment(L"C:\\a;b", L"a;b")));
    EXPECT_THAT(draftOfDocuments(";", nullptr, nullptr, western).attachments, IsEmpty());
    EXPECT_THAT(draftOfDocuments(";", "", "names", western).attachments, IsEmpty());
}

} // namespace
