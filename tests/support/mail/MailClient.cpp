// The mail client of the system, played by a test.
#include "support/mail/MailClient.h"

#include "host/Text.h"
#include "support/TempFolder.h"
#include "support/mail/RecordingClient.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cstdio>
#include <utility>

namespace test {
namespace {

constexpr wchar_t clientName[] = L"Recording";

std::wstring keyPath() {
    return L"SOFTWARE\\BasicExportTests\\Mail" + std::to_wstring(GetCurrentProcessId());
}

std::optional<std::string> copyOf(const char* text) {
    return text ? std::optional<std::string>(text) : std::nullopt;
}

std::wstring pathOf(HMODULE module) {
    std::wstring path(MAX_PATH, L'\0');
    path.resize(GetModuleFileNameW(module, path.data(), MAX_PATH));
    return path;
}

void setText(HKEY key, const std::wstring& subkey, const wchar_t* name, const std::wstring& text) {
    EXPECT_EQ(RegSetKeyValueW(key, subkey.c_str(), name, REG_SZ, text.c_str(),
                              static_cast<DWORD>((text.size() + 1) * sizeof(wchar_t))),
              ERROR_SUCCESS);
}

} // namespace

MailClient::MailClient()
    : behaviour(returns(SUCCESS_SUCCESS)), key(keyPath()),
      library(LoadLibraryW(L"recording_mail_client.dll")) {
    handle(true);
    EXPECT_EQ(RegCreateKeyExW(HKEY_CURRENT_USER, keyPath().c_str(), 0, nullptr, 0, KEY_ALL_ACCESS, nullptr,
                              &machine, nullptr),
              ERROR_SUCCESS);
    const std::wstring clients = L"Software\\Clients\\Mail";
    setText(machine, clients, nullptr, clientName);
    setText(machine, clients + L"\\" + clientName, L"DLLPath", pathOf(library));
    EXPECT_EQ(RegOverridePredefKey(HKEY_LOCAL_MACHINE, machine), ERROR_SUCCESS);
}

MailClient::~MailClient() {
    RegOverridePredefKey(HKEY_LOCAL_MACHINE, nullptr);
    RegCloseKey(machine);
    handle(false);
    FreeLibrary(library);
}

void MailClient::handle(bool receiving) {
    auto* const setHandler = reinterpret_cast<SetSendMailHandler*>(
        reinterpret_cast<void*>(GetProcAddress(library, "setSendMailHandler")));
    ASSERT_NE(setHandler, nullptr) << "the recording mail client is not there";
    setHandler(receiving ? &receive : nullptr, this);
}

ULONG MailClient::receive(void* self, LHANDLE session, ULONG_PTR ui, lpMapiMessage message, FLAGS flags,
                          ULONG reserved) {
    auto* const client = static_cast<MailClient*>(self);
    MailCall call{session,
                  ui,
                  flags,
                  reserved,
                  *message,
                  bytesOfRecord(*message),
                  copyOf(message->lpszSubject),
                  copyOf(message->lpszNoteText),
                  {}};
    for (ULONG i = 0; i < message->nFileCount; ++i) {
        const MapiFileDesc& file = message->lpFiles[i];
        call.files.push_back(
            {file, bytesOfRecord(file), copyOf(file.lpszPathName), copyOf(file.lpszFileName)});
    }
    client->calls.push_back(call);
    const ULONG result = client->behaviour(call);
    ++client->finished;
    return result;
}

MailClient::Behaviour returns(ULONG code) {
    return [code](const MailCall&) { return code; };
}

MailClient::Behaviour changesDirectory(std::wstring directory) {
    return [directory = std::move(directory)](const MailCall&) {
        EXPECT_TRUE(SetCurrentDirectoryW(directory.c_str()));
        return ULONG{SUCCESS_SUCCESS};
    };
}

MailClient::Behaviour enablesOwner() {
    return [](const MailCall& call) {
        EnableWindow(call.owner(), FALSE);
        EnableWindow(call.owner(), TRUE);
        return ULONG{SUCCESS_SUCCESS};
    };
}

MailClient::Behaviour destroysOwner() {
    return [](const MailCall& call) {
        EXPECT_TRUE(DestroyWindow(call.owner()));
        return ULONG{SUCCESS_SUCCESS};
    };
}

MailClient::Behaviour pumpsMessages() {
    return meanwhile([] {
        MSG message;
        while (PeekMessageW(&message, nullptr, 0, 0, PM_REMOVE)) {
            TranslateMessage(&message);
            DispatchMessageW(&message);
        }
    });
}

MailClient::Behaviour readsAttachmentsLater(std::shared_future<void> start,
                                            std::future<std::vector<ReadAttachment>>& attachments) {
    return [start = std::move(start), &attachments](const MailCall& call) {
        attachments = std::async(std::launch::async, [start, message = call.message] {
            start.wait_for(std::chrono::seconds(30));
            std::vector<ReadAttachment> read;
            for (ULONG i = 0; i < message.nFileCount; ++i)
                read.push_back(
                    {message.lpFiles[i].lpszFileName, readFile(host::wide(message.lpFiles[i].lpszPathName))});
            return read;
        });
        return ULONG{SUCCESS_SUCCESS};
    };
}

MailClient::Behaviour meanwhile(std::function<void()> action) {
    return [action = std::move(action)](const MailCall&) {
        action();
        return ULONG{SUCCESS_SUCCESS};
    };
}

MailClient::Behaviour crashes() {
    return [](const MailCall&) -> ULONG {
        std::fputs("the mail client crashes now\n", stderr);
        std::fflush(stderr);
        __builtin_trap();
    };
}

} // namespace test
