// The host's way to tell or ask the user something.
#pragma once

#include "SorvaneBase/StringTypes.h"
#include "SorvaneCommon/Api.h"

#include <windows.h>

namespace SorvaneCommon {

enum class MessageDlgType {
    Information = 0, ///< OK
    Warning = 1,     ///< OK
    Error = 2,       ///< OK
    Question = 3,    ///< Yes and No
};

enum class MessageDlgResult {
    Closed = 0, ///< without an answer
    Ok = 1,
    Yes = 2,
    No = 3,
};

/// Shows a message and waits for the answer. The host application decides how (Application::showMessage); by
/// default it is the system's message box.
/// @param owner  the window that is disabled meanwhile; may be null
/// @param text   UTF-8
/// @param title  UTF-8; may be empty
/// @return for a question Yes, No or Closed, never Ok: closing a question is not consent
SORVANECOMMON_API MessageDlgResult MessageDialog(HWND owner, MessageDlgType type,
                                                 const Sorvane::u8string& text,
                                                 const Sorvane::u8string& title);

} // namespace SorvaneCommon
