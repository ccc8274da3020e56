// The host application that components reach, and its message box.
#include "SorvaneCommon/Application.h"

#include "SorvaneBase/Conversions.h"

namespace SorvaneCommon {

namespace {

Application* currentApplication = nullptr;

UINT boxStyle(MessageDlgType type) {
    switch (type) {
    case MessageDlgType::Warning:
        return MB_OK | MB_ICONWARNING;
    case MessageDlgType::Error:
        return MB_OK | MB_ICONERROR;
    case MessageDlgType::Question:
        return MB_YESNO | MB_ICONQUESTION;
    case MessageDlgType::Information:
        break;
    }
    return MB_OK | MB_ICONINFORMATION;
}

} // namespace

Application::~Application() = default;

MessageDlgResult Application::showMessage(HWND owner, MessageDlgType type, const Sorvane::u8string& text,
                                          const Sorvane::u8string& title) {
    std::wstring wideText;
    std::wstring wideTitle;
    Sorvane::c_u8u16(wideText, text);
    Sorvane::c_u8u16(wideTitle, title);

    switch (MessageBoxW(owner, wideText.c_str(), wideTitle.c_str(), boxStyle(type))) {
    case IDOK:
        return MessageDlgResult::Ok;
    case IDYES:
        return MessageDlgResult::Yes;
    case IDNO:
        return MessageDlgResult::No;
    default:
        return MessageDlgResult::Closed;
    }
}

Application* GetApplication() {
    return currentApplication;
}

void SetApplication(Application* application) {
    currentApplication = application;
}

std::wstring getRegistryVersion() {
    return currentApplication->getRegistryVersion();
}

} // namespace SorvaneCommon
