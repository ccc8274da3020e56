// The host application, as its components see it.
#pragma once

#include "SorvaneCommon/Application.h"
#include "SorvaneCommon/RegistrySettingsStore.h"

namespace host {

/// The process's application object for the time of its life. Messages are shown in the system's message box;
/// a host without windows overrides showMessage().
class HostApplication : public SorvaneCommon::Application {
public:
    static constexpr wchar_t defaultBasePath[] = L"Sorvane\\ScanHost";
    static constexpr wchar_t version[] = L"1.0";

    /// @param basePath  where in the registry the host and its components keep what they remember
    explicit HostApplication(std::wstring basePath = defaultBasePath);
    ~HostApplication() override;
    HostApplication(const HostApplication&) = delete;
    HostApplication& operator=(const HostApplication&) = delete;

    std::wstring getBaseRegistryPath() const override { return basePath; }
    std::wstring getRegistryVersion() const override { return version; }
    SorvaneCommon::SettingsStore* getSettingsStore() override { return &settings; }

    /// A message without a title gets the program's name: a person finds windows by their titles, and screen readers
    /// read them.
    SorvaneCommon::MessageDlgResult showMessage(HWND owner, SorvaneCommon::MessageDlgType type,
                                                const Sorvane::u8string& text,
                                                const Sorvane::u8string& title) override;

private:
    std::wstring basePath;
    SorvaneCommon::RegistrySettingsStore settings;
};

} // namespace host
