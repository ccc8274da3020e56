// The bytes of a message.
#include "draftmail/DraftWriter.h"
#include "draftmail/MapiError.h"
#include "host/UniqueHandle.h"
#include "support/TempFolder.h"

#include <gmock/gmock.h>

namespace {

using draftmail::Draft;
using draftmail::MapiError;
using draftmail::Stamp;
using testing::HasSubstr;
using testing::Not;

class DraftWriterTest : public testing::Test {
protected:
    std::string write() {
        std::string bytes;
        longestPiece = 0;
        draftmail::writeDraft(draft, stamp, [&](std::string_view piece) {
            bytes += piece;
            longestPiece = std::max(longestPiece, piece.size());
        });
        return bytes;
    }

    ULONG failure() {
        try {
            write();
        } catch (const MapiError& error) {
            return error.code();
        }
        return SUCCESS_SUCCESS;
    }

    test::TempFolder folder;
    Draft draft;
    Stamp stamp{{{2026, 11, 6, 21, 1, 2, 3, 0}, 60}, "0123456789abcdef"};
    std::size_t longestPiece = 0;
};

TEST_F(DraftWriterTest, WritesTheNoteAloneAsThatText) {
    draft.subject = L"Invoices";
    draft.note = L"See below.";
    EXPECT_EQ(write(), "X-Unsent: 1\r\n"
                       "Date: Sat, 21 Nov 2026 01:02:03 +0100\r\n"
                       "Message-ID: <0123456789abcdef@draftmail.invalid>\r\n"
                       "Subject: Invoices\r\n"
                       "MIME-Version: 1.0\r\n"
                       "Content-Type: text/plain; charset=utf-8\r\n"
                       "Content-Transfer-Encoding: 7bit\r\n"
                       "\r\n"
                       "See below.\r\n");
}

TEST_F(DraftWriterTest, WritesAttachmentsAfterTheNoteInTheirOrder) {
    draft.subject = L"Faktury \u0159\u00EDjen";
    draft.note = L" ";
    draft.attachments = {{folder.write(L"one", "foobar"), L"Page-1.jpg"},
                         {folder.write(L"two", ""), L"P\u0159\u00EDloha.bin"}};
    EXPECT_EQ(write(), "X-Unsent: 1\r\n"
                       "Date: Sat, 21 Nov 2026 01:02:03 +0100\r\n"
                       "Message-ID: <0123456789abcdef@draftmail.invalid>\r\n"
                       "Subject: =?utf-8?B?RmFrdHVyeSDFmcOtamVu?=\r\n"
                       "MIME-Version: 1.0\r\n"
                       "Content-Type: multipart/mixed;\r\n"
                       " boundary=\"=_0123456789abcdef\"\r\n"
                       "\r\n"
                       "--=_0123456789abcdef\r\n"
                       "Content-Type: text/plain; charset=utf-8\r\n"
                       "Content-Transfer-Encoding: 7bit\r\n"
                       "\r\n"
                       " \r\n"
                       "--=_0123456789abcdef\r\n"
                       "Content-Type: image/jpeg;\r\n"
                       " name=\"Page-1.jpg\"\r\n"
                       "Content-Transfer-Encoding: base64\r\n"
                       "Content-Disposition: attachment;\r\n"
                       " filename=\"Page-1.jpg\"\r\n"
                       "\r\n"
                       "Zm9vYmFy\r\n"
                       "\r\n"
                       "--=_0123456789abcdef\r\n"
                       "Content-Type: application/octet-stream;\r\n"
                       " name=\"=?utf-8?B?UMWZw61sb2hhLmJpbg==?=\"\r\n"
                       "Content-Transfer-Encoding: base64\r\n"
                       "Content-Disposition: attachment;\r\n"
                       " filename*=utf-8''P%C5%99%C3%ADloha.bin\r\n"
                       "\r\n"
                       "\r\n"
                       "--=_0123456789abcdef--\r\n");
}

TEST_F(DraftWriterTest, NamesRecipientsBeforeTheSubject) {
    draft.subject = L"S";
    draft.to = {{"", "a@example.com"}};
    draft.cc = {{"B", "b@example.com"}};
    draft.bcc = {{"", "c@example.com"}};
    EXPECT_THAT(write(),
                HasSubstr("\r\nTo: a@example.com\r\nCc: \"B\" <b@example.com>\r\nBcc: c@example.com\r\n"
                          "Subject: S\r\n"));
}

TEST_F(DraftWriterTest, LeavesOutWhatThereIsNone) {
    const std::string bytes = write();
    for (const char* field : {"Subject:", "From:", "To:", "Cc:", "Bcc:"})
        EXPECT_THAT(bytes, Not(HasSubstr(field)));
}

TEST_F(DraftWriterTest, EndsEachLineOfTheNoteInTheSameWay) {
    draft.note = L"a\rb\nc\r\nd\n\ne";
    EXPECT_THAT(write(), testing::EndsWith("\r\n\r\na\r\nb\r\nc\r\nd\r\n\r\ne\r\n"));
}

TEST_F(DraftWriterTest, EncodesANoteThatMailCannotHoldAsItIs) {
    draft.note = L"\u0159";
    EXPECT_THAT(write(), testing::EndsWith("Content-Transfer-Encoding: base64\r\n\r\nxZk=\r\n\r\n"));
    draft.note = std::wstring(76, L'x') + L"\n" + std::wstring(76, L'x');
    EXPECT_THAT(write(), HasSubstr("7bit"));
    draft.note = std::wstring(77, L'x');
    EXPECT_THAT(write(), HasSubstr("base64"));
    draft.note = L"\x1B[31m";
    EXPECT_THAT(write(), HasSubstr("base64"));
}

struct NamedType {
    const wchar_t* name;
    const char* type;
};

class ContentTypeTest : public DraftWriterTest, public testing::WithParamInterface<NamedType> {};

TEST_P(ContentTypeTest, FollowsTheNamesExtension) {
    draft.attachments = {{folder.write(L"x", "x"), GetParam().name}};
    EXPECT_THAT(write(), HasSubstr("\r\nContent-Type: " + std::string(GetParam().type) + ";\r\n"));
}

INSTANTIATE_TEST_SUITE_P(Names, ContentTypeTest,
                         testing::Values(NamedType{L"a.tif", "image/tiff"},
                                         NamedType{L"a.TIFF", "image/tiff"}, NamedType{L"a.png", "image/png"},
                                         NamedType{L"a.pdf", "application/pdf"},
                                         NamedType{L"a.jpg.exe", "application/octet-stream"},
                                         NamedType{L"jpg", "application/octet-stream"}));

TEST_F(DraftWriterTest, PassesALargeAttachmentOnInPieces) {
    std::string content(5'000'000, '\0');
    for (std::size_t i = 0; i < content.size(); ++i)
        content[i] = static_cast<char>(i * i >> 8);
    draft.attachments = {{folder.write(L"x", content), L"x"}};
    std::string expected;
    draftmail::encodeBase64(content, expected);
    // A failure would print ten megabytes with a matcher.
    EXPECT_NE(write().find("\r\n\r\n" + expected + "\r\n--=_"), std::string::npos);
    EXPECT_LE(longestPiece, 320'000U);
}

TEST_F(DraftWriterTest, WritesWholePiecesToTheirLastByte) {
    // The file ends where a piece does.
    const std::string content(draftmail::bytesPerBase64Line * 4096, 'x');
    draft.attachments = {{folder.write(L"x", content), L"x"}};
    std::string expected;
    draftmail::encodeBase64(content, expected);
    EXPECT_NE(write().find("\r\n\r\n" + expected + "\r\n--=_0123456789abcdef--"), std::string::npos);
}

TEST_F(DraftWriterTest, ReadsAFileThatSomebodyIsWriting) {
    const std::wstring path = folder.write(L"x", "foobar");
    const host::UniqueHandle writer(CreateFileW(
        path.c_str(), GENERIC_WRITE, FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(writer);
    draft.attachments = {{path, L"x"}};
    EXPECT_THAT(write(), HasSubstr("\r\n\r\nZm9vYmFy\r\n"));
}

TEST_F(DraftWriterTest, ReadsAFileWhoseFoldersAreDeep) {
    std::wstring path = L"\\\\?\\" + folder.path();
    for (int i = 0; i < 3; ++i) {
        path += L"\\" + std::wstring(100, L'x');
        ASSERT_TRUE(CreateDirectoryW(path.c_str(), nullptr));
    }
    const std::wstring inside = path.substr(4 + folder.path().size() + 1) + L"\\x";
    draft.attachments = {{folder.write(inside, "foobar"), L"x"}};
    EXPECT_THAT(write(), HasSubstr("\r\n\r\nZm9vYmFy\r\n"));
}

TEST_F(DraftWriterTest, FailsWithoutAnAttachment) {
    for (const wchar_t* missing : {L"none", L"none\\x"}) {
        draft.attachments = {{folder / missing, L"x"}};
        EXPECT_EQ(failure(), static_cast<ULONG>(MAPI_E_ATTACHMENT_NOT_FOUND));
    }
}

TEST_F(DraftWriterTest, FailsOnALockedAttachment) {
    const std::wstring path = folder.write(L"x", "foobar");
    const host::UniqueHandle owner(
        CreateFileW(path.c_str(), GENERIC_READ, 0, nullptr, OPEN_EXISTING, 0, nullptr));
    ASSERT_TRUE(owner);
    draft.attachments = {{path, L"x"}};
    EXPECT_EQ(failure(), static_cast<ULONG>(MAPI_E_ATTACHMENT_OPEN_FAILURE));
}

TEST_F(DraftWriterTest, FailsOnAFolderAndOnADevice) {
    for (const std::wstring& path : {folder.path(), std::wstring(L"NUL")}) {
        draft.attachments = {{path, L"x"}};
        EXPECT_EQ(failure(), static_cast<ULONG>(MAPI_E_ATTACHMENT_OPEN_FAILURE));
    }
}

TEST(StampTest, IsAnotherEachTime) {
    const Stamp one = Stamp::make();
    EXPECT_EQ(one.id.find_first_not_of("0123456789abcdef"), std::string::npos);
    EXPECT_EQ(one.id.size(), 32U);
    EXPECT_NE(one.id, Stamp::make().id);
}

} // namespace
