// Passes messages on to the host application.
#include "SorvaneCommon/MessageDialog.h"

#include "SorvaneCommon/Application.h"

namespace SorvaneCommon {

MessageDlgResult MessageDialog(HWND owner, MessageDlgType type, const Sorvane::u8string& text,
                               const Sorvane::u8string& title) {
    return GetApplication()->showMessage(owner, type, text, title);
}

} // namespace SorvaneCommon
