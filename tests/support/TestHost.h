// A host application that a test controls and looks into.
#pragma once

#include "SorvaneCommon/Application.h"
#include "SorvaneCommon/ExportEngineFactory.h"
#include "SorvaneCommon/ExportEnginesManager.h"
#include "SorvaneCommon/SettingsStore.h"
#include "bxbase/Reference.h"
#include "support/ScopedRegistryKey.h"

#include <deque>
#include <map>
#include <string>
#include <utility>
#include <vector>

namespace test {

/// A host's settings in memory.
class MemoryStore : public SorvaneCommon::SettingsStore {
public:
    bool read(const Sorvane::u8string& key, Sorvane::u8string& value) override;
    bool write(const Sorvane::u8string& key, const Sorvane::u8string& value) override;

    std::map<std::string, std::string> values;                ///< what is there; not changed by writing
    std::vector<std::pair<std::string, std::string>> written; ///< in order
    bool readOnly = false;                                    ///< makes writing fail
};

/// The host application for the time of its life, with a registry key of the process's own.
class TestHost : public SorvaneCommon::Application {
public:
    struct Message {
        HWND owner;
        SorvaneCommon::MessageDlgType type;
        std::string text;
        std::string title;
    };

    TestHost();
    ~TestHost() override;

    std::wstring getBaseRegistryPath() const override { return basePath; }
    std::wstring getRegistryVersion() const override { return L"2.0"; }
    SorvaneCommon::SettingsStore* getSettingsStore() override { return settingsStore; }

    /// Records the message and gives the next scripted answer; without one the test fails.
    SorvaneCommon::MessageDlgResult showMessage(HWND owner, SorvaneCommon::MessageDlgType type,
                                                const Sorvane::u8string& text,
                                                const Sorvane::u8string& title) override;

    SorvaneCommon::SettingsStore* settingsStore = nullptr;
    std::deque<SorvaneCommon::MessageDlgResult> answers;
    std::vector<Message> messages;

private:
    std::wstring basePath;
    ScopedRegistryKey registryKey;
};

/// The engines manager for the time of its life. Keeps what it was told, in order.
class TestEnginesManager : public SorvaneCommon::ExportEnginesManager {
public:
    enum class Call { Register, Unregister };

    TestEnginesManager() { SorvaneCommon::setExportEnginesManager(this); }
    ~TestEnginesManager() override { SorvaneCommon::setExportEnginesManager(nullptr); }

    void registerFactory(SorvaneCommon::ExportEngineFactory* factory) override;
    void unregisterFactory(SorvaneCommon::ExportEngineFactory* factory) override;

    std::vector<std::pair<Call, SorvaneCommon::ExportEngineFactory*>> calls;
    std::vector<bxbase::Reference<SorvaneCommon::ExportEngineFactory>> factories;
};

} // namespace test
