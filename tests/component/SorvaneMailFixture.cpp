// A mail transport under test: the system's library, a mail client of the test's, a parent window.
#include "SorvaneMailFixture.h"

#include "support/DialogInspection.h"

#include <chrono>

SorvaneMailFixture::SorvaneMailFixture() {
    parent.CreateEx(0, nullptr, L"parent", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 100, 100, nullptr,
                    nullptr);
    hostApp.m_pMainWnd = &parent;
    EXPECT_TRUE(mail.initialize());
}

std::unique_ptr<SorvaneMailMessage> SorvaneMailFixture::newMessage() {
    return std::unique_ptr<SorvaneMailMessage>(mail.createMessage());
}

bool SorvaneMailFixture::send(SorvaneMailMessage& message, CWnd* owner) {
    const test::NoMessageBoxes noBoxes;
    return message.send(owner);
}

bool SorvaneMailFixture::sendWithPrompt(SorvaneMailMessage& message, CWnd* owner) {
    host::DialogPilot pilot(std::chrono::seconds(30));
    pilot.then("the prompt", host::anyMessageBox(), [this](HWND box) {
        promptText = host::messageBoxText(box);
        promptOwner = GetWindow(box, GW_OWNER);
        loggedBeforePrompt = log.all().back();
        EXPECT_EQ(GetDlgItem(box, IDCANCEL), nullptr) << "there is more than OK";
        return host::click(IDOK)(box);
    });
    const bool sent = message.send(owner);
    EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
    return sent;
}
