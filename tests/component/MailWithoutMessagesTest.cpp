// The mail engine over a transport that starts and then has no message to give.
#include "MailExportFixture.h"
#include "SorvaneMail.h"

// These stand in for the component's own.

SorvaneMail::~SorvaneMail() = default;

bool SorvaneMail::initialize() {
    return true;
}

SorvaneMailMessage* SorvaneMail::createMessage() {
    return nullptr;
}

SorvaneMailMessage::~SorvaneMailMessage() = default;

void SorvaneMailMessage::setSubject(const Sorvane::u8string&) {
    ADD_FAILURE() << "there is no message";
}

void SorvaneMailMessage::addAttachment(const Sorvane::u8string&, const Sorvane::u8string&) {
    ADD_FAILURE() << "there is no message";
}

bool SorvaneMailMessage::send(CWnd*) {
    ADD_FAILURE() << "there is no message";
    return true;
}

namespace {

class MailWithoutMessagesTest : public MailExportFixture {};

TEST_F(MailWithoutMessagesTest, IsReportedWithTheCopiesMade) {
    addPages(1);
    EXPECT_EQ(run(), 1);
    expectReport(169, "Failed to create message");
    EXPECT_THAT(copies(), testing::ElementsAre(L"Page-1.tif"));
}

} // namespace
