// A host application that a test controls and looks into.
#include "support/TestHost.h"

#include <gtest/gtest.h>

namespace test {

bool MemoryStore::read(const Sorvane::u8string& key, Sorvane::u8string& value) {
    const auto found = values.find(key);
    if (found == values.end())
        return false;
    value = found->second;
    return true;
}

bool MemoryStore::write(const Sorvane::u8string& key, const Sorvane::u8string& value) {
    written.emplace_back(key, value);
    return !readOnly;
}

TestHost::TestHost()
    : basePath(L"BasicExportTests\\" + std::to_wstring(GetCurrentProcessId())),
      registryKey(L"SOFTWARE\\" + basePath) {
    SorvaneCommon::SetApplication(this);
}

TestHost::~TestHost() {
    SorvaneCommon::SetApplication(nullptr);
}

SorvaneCommon::MessageDlgResult TestHost::showMessage(HWND owner, SorvaneCommon::MessageDlgType type,
                                                      const Sorvane::u8string& text,
                                                      const Sorvane::u8string& title) {
    messages.push_back({owner, type, text, title});
    if (answers.empty()) {
        ADD_FAILURE() << "nobody expected the message: " << text;
        return SorvaneCommon::MessageDlgResult::Closed;
    }
    const SorvaneCommon::MessageDlgResult answer = answers.front();
    answers.pop_front();
    return answer;
}

void TestEnginesManager::registerFactory(SorvaneCommon::ExportEngineFactory* factory) {
    calls.emplace_back(Call::Register, factory);
    factories.emplace_back(factory);
}

void TestEnginesManager::unregisterFactory(SorvaneCommon::ExportEngineFactory* factory) {
    calls.emplace_back(Call::Unregister, factory);
    std::erase_if(factories, [factory](const auto& held) { return held.get() == factory; });
}

} // namespace test
