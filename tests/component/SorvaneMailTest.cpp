// What the mail transport hands to the mail client, and what it makes of the answer.
#include "SorvaneMailFixture.h"

#include "support/FreedMemory.h"

#include <cstring>

namespace {

using testing::AllOf;
using testing::Contains;
using testing::Each;
using testing::IsEmpty;
using testing::SizeIs;
using testing::StartsWith;

const std::string source = "Components/BasicExport/SorvaneMail:";

std::vector<std::string> records(std::initializer_list<const char*> levelLineText) {
    std::vector<std::string> result;
    for (const char* record : levelLineText)
        result.push_back(std::string(record, 2) + source + (record + 2));
    return result;
}

class SorvaneMailTest : public SorvaneMailFixture {
protected:
    /// The only call the mail client has got.
    const test::MailCall& call() {
        EXPECT_EQ(client.calls.size(), 1U);
        EXPECT_EQ(client.finished, 1);
        return client.calls.at(0);
    }
};

// The message.

TEST_F(SorvaneMailTest, CallHasNoSessionTheDialogFlagsAndTheOwnersHandle) {
    EXPECT_TRUE(send(*newMessage(), &parent));
    EXPECT_EQ(call().session, 0U);
    EXPECT_EQ(call().ui, reinterpret_cast<ULONG_PTR>(parent.m_hWnd));
    EXPECT_EQ(call().flags, 9U);
    EXPECT_EQ(call().reserved, 0U);
}

TEST_F(SorvaneMailTest, WithoutParentTheOwnersHandleIsZero) {
    EXPECT_TRUE(send(*newMessage(), nullptr));
    EXPECT_EQ(call().ui, 0U);
}

TEST_F(SorvaneMailTest, EmptyMessageIsASingleSpaceAndOtherwiseZeroBytes) {
    EXPECT_TRUE(send(*newMessage(), &parent));
    EXPECT_EQ(call().note, " ");
    MapiMessage expected;
    std::memset(&expected, 0, sizeof expected);
    expected.lpszNoteText = call().message.lpszNoteText;
    EXPECT_EQ(call().bytes, test::bytesOfRecord(expected));
}

TEST_F(SorvaneMailTest, SubjectAndAttachmentsAreTheOnlyOtherFields) {
    const auto message = newMessage();
    message->setSubject("Invoices");
    message->addAttachment("C:\\temp\\1.tif", "Page-1.tif");
    EXPECT_TRUE(send(*message, &parent));
    EXPECT_EQ(call().subject, "Invoices");
    EXPECT_EQ(call().note, " ");
    MapiMessage expected;
    std::memset(&expected, 0, sizeof expected);
    expected.lpszSubject = call().message.lpszSubject;
    expected.lpszNoteText = call().message.lpszNoteText;
    expected.nFileCount = 1;
    expected.lpFiles = call().message.lpFiles;
    EXPECT_EQ(call().bytes, test::bytesOfRecord(expected));
}

TEST_F(SorvaneMailTest, SubjectSetAgainReplacesTheFirst) {
    const auto message = newMessage();
    message->setSubject("first");
    message->setSubject("second");
    EXPECT_TRUE(send(*message, &parent));
    EXPECT_EQ(call().subject, "second");
}

TEST_F(SorvaneMailTest, EmptySubjectIsNull) {
    const auto message = newMessage();
    message->setSubject("first");
    message->setSubject("");
    EXPECT_TRUE(send(*message, &parent));
    EXPECT_EQ(call().message.lpszSubject, nullptr);
}

TEST_F(SorvaneMailTest, AttachmentsHaveTheirTextsAndOtherwiseZeroBytes) {
    const auto message = newMessage();
    message->addAttachment("C:\\temp\\b.tif", "Page-1.tif");
    message->addAttachment("C:\\temp\\a.tif", "Page-2.tif");
    EXPECT_TRUE(send(*message, &parent));
    ASSERT_THAT(call().files, SizeIs(2));
    EXPECT_EQ(call().files[0].path, "C:\\temp\\b.tif");
    EXPECT_EQ(call().files[0].name, "Page-1.tif");
    EXPECT_EQ(call().files[1].path, "C:\\temp\\a.tif");
    EXPECT_EQ(call().files[1].name, "Page-2.tif");
    for (const test::MailCall::File& file : call().files) {
        MapiFileDesc expected;
        std::memset(&expected, 0, sizeof expected);
        expected.lpszPathName = file.record.lpszPathName;
        expected.lpszFileName = file.record.lpszFileName;
        EXPECT_EQ(file.bytes, test::bytesOfRecord(expected));
    }
}

TEST_F(SorvaneMailTest, AttachmentWithEmptyTextsHasEmptyTexts) {
    const auto message = newMessage();
    message->addAttachment("", "");
    EXPECT_TRUE(send(*message, &parent));
    EXPECT_EQ(call().files.at(0).path, "");
    EXPECT_EQ(call().files.at(0).name, "");
}

class AttachmentCountTest : public SorvaneMailFixture, public testing::WithParamInterface<unsigned> {};

TEST_P(AttachmentCountTest, ArrivesInTheOrderOfAdding) {
    const auto message = newMessage();
    std::vector<std::string> names;
    for (unsigned i = 0; i < GetParam(); ++i) {
        names.push_back("Page-" + std::to_string(i));
        message->addAttachment("C:\\" + names.back(), names.back());
    }
    EXPECT_TRUE(send(*message, &parent));
    ASSERT_THAT(client.calls, SizeIs(1));
    EXPECT_EQ(client.calls[0].message.nFileCount, GetParam());
    EXPECT_EQ(client.calls[0].message.lpFiles == nullptr, GetParam() == 0);
    std::vector<std::string> arrived;
    for (const test::MailCall::File& file : client.calls[0].files) {
        EXPECT_EQ(file.path, "C:\\" + file.name.value_or("none"));
        arrived.push_back(file.name.value_or("none"));
    }
    EXPECT_EQ(arrived, names);
}

INSTANTIATE_TEST_SUITE_P(Counts, AttachmentCountTest, testing::Values(0U, 1U, 9U, 10U, 100U, 10000U));

TEST_F(SorvaneMailTest, TextsArriveInTheAnsiCodePage) {
    // Wine's code page here is 1252, which knows "é" and lacks the Chinese character.
    ASSERT_EQ(GetACP(), 1252U);
    const auto message = newMessage();
    message->setSubject("Café 漢");
    message->addAttachment("C:\\é\\漢.tif", "Café-漢.tif");
    EXPECT_TRUE(send(*message, &parent));
    EXPECT_EQ(call().subject, "Caf\xE9 _");
    EXPECT_EQ(call().files.at(0).path, "C:\\\xE9\\_.tif");
    EXPECT_EQ(call().files.at(0).name, "Caf\xE9-_.tif");
}

TEST_F(SorvaneMailTest, MessageCanBeSentAgainUnchanged) {
    const auto message = newMessage();
    message->setSubject("Invoices");
    message->addAttachment("C:\\1.tif", "Page-1.tif");
    EXPECT_TRUE(send(*message, &parent));
    EXPECT_TRUE(send(*message, nullptr));
    ASSERT_THAT(client.calls, SizeIs(2));
    EXPECT_EQ(client.calls[1].subject, "Invoices");
    EXPECT_EQ(client.calls[1].files.at(0).name, "Page-1.tif");
}

TEST_F(SorvaneMailTest, AttachmentRecordsOfEveryCallStayReadable) {
    constexpr std::size_t count = 20;
    const auto message = newMessage();
    for (std::size_t i = 0; i < count; ++i)
        message->addAttachment("C:\\1.tif", "Page-1.tif");
    EXPECT_TRUE(send(*message, &parent));
    EXPECT_TRUE(send(*message, &parent));
    ASSERT_THAT(client.calls, SizeIs(2));
    EXPECT_NE(client.calls[0].message.lpFiles, client.calls[1].message.lpFiles);
    test::overwriteFreedMemory();
    for (const test::MailCall& sent : client.calls)
        for (std::size_t i = 0; i < count; ++i)
            EXPECT_EQ(test::bytesOfRecord(sent.message.lpFiles[i]), sent.files.at(i).bytes);
}

// The result.

class ResultTest : public SorvaneMailFixture, public testing::WithParamInterface<ULONG> {
protected:
    ResultTest() { client.behaviour = test::returns(GetParam()); }
};

class SuccessTest : public ResultTest {};

TEST_P(SuccessTest, IsToldToTheCallerOnly) {
    EXPECT_TRUE(send(*newMessage(), &parent));
    EXPECT_EQ(client.finished, 1);
    EXPECT_THAT(log.all(), Each(StartsWith("2 ")));
}

INSTANTIATE_TEST_SUITE_P(Codes, SuccessTest, testing::Values(0U, 1U, 3U));

class FailureTest : public ResultTest {};

TEST_P(FailureTest, IsLoggedAndShown) {
    EXPECT_FALSE(sendWithPrompt(*newMessage(), &parent));
    EXPECT_EQ(client.finished, 1);
    EXPECT_EQ(log.all().back(),
              "0 " + source + "154 MAPI failure, error code=" + std::to_string(static_cast<int>(GetParam())));
    EXPECT_EQ(loggedBeforePrompt, log.all().back());
    EXPECT_EQ(promptText, L"The mail program reported a failure. The message has not been sent.");
    EXPECT_EQ(promptOwner, parent.m_hWnd);
    EXPECT_TRUE(parent.IsWindowEnabled());
}

INSTANTIATE_TEST_SUITE_P(Codes, FailureTest,
                         testing::Values(2U, 4U, 5U, 6U, 7U, 8U, 9U, 10U, 11U, 12U, 13U, 14U, 15U, 16U, 17U,
                                         18U, 19U, 20U, 21U, 22U, 23U, 24U, 25U, 26U, 27U, 0x80000000U,
                                         0xFFFFFFFFU));

TEST_F(SorvaneMailTest, FailureOfTheLargestCodeIsLoggedAsMinusOne) {
    client.behaviour = test::returns(0xFFFFFFFF);
    EXPECT_FALSE(sendWithPrompt(*newMessage(), nullptr));
    EXPECT_EQ(log.all().back(), "0 " + source + "154 MAPI failure, error code=-1");
}

// The log.

TEST_F(SorvaneMailTest, LogsEveryStepWithItsLine) {
    const auto message = newMessage();
    message->setSubject("not logged");
    message->addAttachment("C:\\1.tif", "1.tif");
    EXPECT_TRUE(send(*message, &parent));
    EXPECT_EQ(log.all(), records({"2 188 Initializing SorvaneMail", "2 210 SorvaneMail::createMessage",
                                  "2 170 SorvaneMailMessage::addAttachment", "2 61 SorvaneMailMessage::send",
                                  "2 72 Adding attachments", "2 100 Preparing MapiMessage",
                                  "2 114 Sending message to MAPI", "2 132 Back from MAPI"}));
}

TEST_F(SorvaneMailTest, WithoutAttachmentsLogsNoneAdded) {
    EXPECT_TRUE(send(*newMessage(), &parent));
    EXPECT_EQ(log.all(), records({"2 188 Initializing SorvaneMail", "2 210 SorvaneMail::createMessage",
                                  "2 61 SorvaneMailMessage::send", "2 100 Preparing MapiMessage",
                                  "2 114 Sending message to MAPI", "2 132 Back from MAPI"}));
}

// Transport and messages.

TEST_F(SorvaneMailTest, UninitialisedTransportHasNoMessages) {
    SorvaneMail other;
    EXPECT_EQ(other.createMessage(), nullptr);
    EXPECT_THAT(log.all(), AllOf(SizeIs(3), Contains(records({"0 213 Mail not available"})[0])));
}

TEST_F(SorvaneMailTest, MessageWithoutTransportIsOnlyLogged) {
    SorvaneMailMessage message(nullptr);
    message.addAttachment("C:\\1.tif", "1.tif");
    EXPECT_FALSE(send(message, &parent));
    EXPECT_EQ(log.all().back(), records({"0 64 mail component not available"})[0]);
    EXPECT_THAT(client.calls, IsEmpty());
}

TEST(SorvaneMailLibraryTest, IsLoadedFromInitialisingToTheEnd) {
    const test::MailClient client;
    ASSERT_EQ(GetModuleHandleW(L"mapi32.dll"), nullptr);
    {
        SorvaneMail mail;
        EXPECT_EQ(GetModuleHandleW(L"mapi32.dll"), nullptr);
        EXPECT_TRUE(mail.initialize());
        EXPECT_NE(GetModuleHandleW(L"mapi32.dll"), nullptr);
    }
    EXPECT_EQ(GetModuleHandleW(L"mapi32.dll"), nullptr);
}

TEST(SorvaneMailLibraryTest, IsLoadedOnceHoweverOftenItIsInitialised) {
    const test::MailClient client;
    {
        SorvaneMail mail;
        EXPECT_TRUE(mail.initialize());
        EXPECT_TRUE(mail.initialize());
        EXPECT_TRUE(mail.initialize());
    }
    EXPECT_EQ(GetModuleHandleW(L"mapi32.dll"), nullptr);
}

TEST(SorvaneMailLibraryTest, IsNotTouchedWithoutInitialising) {
    { const SorvaneMail mail; }
    EXPECT_EQ(GetModuleHandleW(L"mapi32.dll"), nullptr);
}

} // namespace
