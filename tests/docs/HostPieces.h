// Pieces of hosts that docs/host-developers.md shows.
#pragma once

#include "SorvaneCommon/Application.h"
#include "SorvaneCommon/ExportErrorSink.h"
#include "SorvaneCommon/SettingsStore.h"

#include <map>
#include <memory>
#include <string>

class CWnd;

namespace host {
class ComponentModule;
class EnginesManager;
} // namespace host

namespace SorvaneCommon {
class ExportEngine;
}

namespace example {

/// Settings of the host's own, which components read and write through the contract.
class ScannerSettings : public SorvaneCommon::SettingsStore {
public:
    bool read(const Sorvane::u8string& key, Sorvane::u8string& value) override {
        const auto found = values.find(key);
        if (found == values.end())
            return false;
        value = found->second;
        return true;
    }

    bool write(const Sorvane::u8string& key, const Sorvane::u8string& value) override {
        values[key] = value;
        return true;
    }

private:
    std::map<std::string, std::string> values;
};

class ScannerApplication : public SorvaneCommon::Application {
public:
    ScannerApplication() { SorvaneCommon::SetApplication(this); }
    ~ScannerApplication() override { SorvaneCommon::SetApplication(nullptr); }

    std::wstring getBaseRegistryPath() const override { return L"Example\\Scanner"; }
    std::wstring getRegistryVersion() const override { return L"3.1"; }
    SorvaneCommon::SettingsStore* getSettingsStore() override { return &settings; }

    SorvaneCommon::MessageDlgResult showMessage(HWND owner, SorvaneCommon::MessageDlgType type,
                                                const Sorvane::u8string& text,
                                                const Sorvane::u8string& title) override {
        return Application::showMessage(owner, type, text, title.empty() ? "Scanner" : title);
    }

private:
    ScannerSettings settings;
};

/// Keeps the reports and logs each as it comes.
class LoggedErrors : public ExportErrorSink {
public:
    void reportError(const Sorvane::u8string& sourceFile, int line,
                     const Sorvane::u8string& message) override;
};

/// Exports, and tells of a crash in words of the host's own.
int exportAndTell(SorvaneCommon::ExportEngine& engine, CWnd& window, std::string& told);

/// Changes the language of everything that the component shows.
bool changeLanguage(const std::wstring& programs, const std::wstring& language,
                    std::unique_ptr<host::ComponentModule>& component, host::EnginesManager& manager);

} // namespace example
