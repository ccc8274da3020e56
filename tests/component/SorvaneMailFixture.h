// A mail transport under test: the system's library, a mail client of the test's, a parent window.
#pragma once

#include "SorvaneMail.h"
#include "host/DialogPilot.h"
#include "support/LogRecords.h"
#include "support/mail/MailClient.h"

#include <afxwin.h>

#include <gmock/gmock.h>

#include <memory>
#include <string>
#include <vector>

/// The transport is initialised, and the host's own application object is current.
class SorvaneMailFixture : public testing::Test {
protected:
    SorvaneMailFixture();

    /// A new message of the transport's.
    std::unique_ptr<SorvaneMailMessage> newMessage();

    /// Sends the message, which must not show a box.
    bool send(SorvaneMailMessage& message, CWnd* parent);
    /// Sends the message, and presses OK in the box that this must show.
    bool sendWithPrompt(SorvaneMailMessage& message, CWnd* parent);

    test::LogRecords log;
    test::MailClient client;
    AFX_MODULE_STATE hostState{GetModuleHandleW(L"kernel32.dll")};
    AFX_MAINTAIN_STATE2 hostIsCurrent{&hostState};
    CWinApp hostApp{L"Host"};
    CWnd parent;
    SorvaneMail mail;
    std::wstring promptText; ///< of the last sendWithPrompt()
    HWND promptOwner = nullptr;
    std::string loggedBeforePrompt; ///< the last record of the log then
};
