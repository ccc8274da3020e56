// DraftMail.dll as Simple MAPI loads it.
#include "support/ProcessHandles.h"

#include <gmock/gmock.h>

#include <windows.h>

#include <malloc.h>
#include <mapi.h>

#include <cwchar>
#include <string>
#include <vector>

namespace {

class Library {
public:
    Library() : module(LoadLibraryW(L"DraftMail.dll")) {}
    ~Library() { FreeLibrary(module); }
    Library(const Library&) = delete;
    Library& operator=(const Library&) = delete;

    template <typename Function> Function* find(const char* name) const {
        return reinterpret_cast<Function*>(reinterpret_cast<void*>(GetProcAddress(module, name)));
    }

    /// The names of the DLLs that it needs.
    std::vector<std::string> imports() const {
        const auto* base = reinterpret_cast<const char*>(module);
        const auto* dos = reinterpret_cast<const IMAGE_DOS_HEADER*>(base);
        const auto* headers = reinterpret_cast<const IMAGE_NT_HEADERS*>(base + dos->e_lfanew);
        const auto& directory = headers->OptionalHeader.DataDirectory[IMAGE_DIRECTORY_ENTRY_IMPORT];
        const auto* import =
            reinterpret_cast<const IMAGE_IMPORT_DESCRIPTOR*>(base + directory.VirtualAddress);
        std::vector<std::string> names;
        for (; import->Name; ++import)
            names.emplace_back(base + import->Name);
        return names;
    }

private:
    HMODULE module;
};

TEST(DraftMailLibraryTest, HasWhatSimpleMapiLooksFor) {
    const Library library;
    for (const char* name : {"MAPIAddress", "MAPIDeleteMail", "MAPIDetails", "MAPIFindNext", "MAPIFreeBuffer",
                             "MAPILogoff", "MAPILogon", "MAPIReadMail", "MAPIResolveName", "MAPISaveMail",
                             "MAPISendDocuments", "MAPISendMail", "MAPISendMailW"})
        EXPECT_NE(library.find<void()>(name), nullptr) << name;
}

// Any program may load it, and none has our runtime beside it.
TEST(DraftMailLibraryTest, NeedsOnlyDllsOfTheSystem) {
    wchar_t system[MAX_PATH] = {};
    GetSystemDirectoryW(system, MAX_PATH);
    const Library library;
    const std::vector<std::string> imports = library.imports();
    EXPECT_FALSE(imports.empty());
    for (const std::string& name : imports) {
        // The checked build's own heap.
        if (name == "GuardHeap.dll")
            continue;
        wchar_t path[MAX_PATH] = {};
        GetModuleFileNameW(GetModuleHandleA(name.c_str()), path, MAX_PATH);
        EXPECT_EQ(_wcsnicmp(path, system, std::wcslen(system)), 0) << name;
    }
}

TEST(DraftMailLibraryTest, LogsOnAndOff) {
    const Library library;
    LHANDLE session = 0;
    ASSERT_EQ(library.find<MAPILOGON>("MAPILogon")(0, nullptr, nullptr, MAPI_LOGON_UI, 0, &session),
              static_cast<ULONG>(SUCCESS_SUCCESS));
    EXPECT_NE(session, 0U);
    auto* logoff = library.find<MAPILOGOFF>("MAPILogoff");
    EXPECT_EQ(logoff(session, 0, 0, 0), static_cast<ULONG>(SUCCESS_SUCCESS));
    EXPECT_EQ(logoff(0, 0, 0, 0), static_cast<ULONG>(MAPI_E_INVALID_SESSION));
    EXPECT_EQ(library.find<MAPILOGON>("MAPILogon")(0, nullptr, nullptr, 0, 0, nullptr),
              static_cast<ULONG>(MAPI_E_FAILURE));
}

TEST(DraftMailLibraryTest, TellsThatThereIsNeitherAnAddressBookNorReceivedMail) {
    const Library library;
    constexpr ULONG refused = MAPI_E_NOT_SUPPORTED;
    EXPECT_EQ(library.find<MAPIADDRESS>("MAPIAddress")(0, 0, nullptr, 0, nullptr, 0, nullptr, 0, 0, nullptr,
                                                       nullptr),
              refused);
    EXPECT_EQ(library.find<MAPIDETAILS>("MAPIDetails")(0, 0, nullptr, 0, 0), refused);
    EXPECT_EQ(library.find<MAPIRESOLVENAME>("MAPIResolveName")(0, 0, nullptr, 0, 0, nullptr), refused);
    EXPECT_EQ(library.find<MAPIFINDNEXT>("MAPIFindNext")(0, 0, nullptr, nullptr, 0, 0, nullptr), refused);
    EXPECT_EQ(library.find<MAPIREADMAIL>("MAPIReadMail")(0, 0, nullptr, 0, 0, nullptr), refused);
    EXPECT_EQ(library.find<MAPISAVEMAIL>("MAPISaveMail")(0, 0, nullptr, 0, 0, nullptr), refused);
    EXPECT_EQ(library.find<MAPIDELETEMAIL>("MAPIDeleteMail")(0, 0, nullptr, 0, 0), refused);
}

ULONG sendWithoutFile(const Library& library) {
    MapiFileDesc file{};
    MapiMessage message{};
    message.nFileCount = 1;
    message.lpFiles = &file;
    return library.find<MAPISENDMAIL>("MAPISendMail")(0, 0, &message, MAPI_DIALOG, 0);
}

TEST(DraftMailLibraryTest, ReturnsTheCodeOfAFailure) {
    EXPECT_EQ(sendWithoutFile(Library()), static_cast<ULONG>(MAPI_E_ATTACHMENT_NOT_FOUND));
}

/// What the program and its DLLs have allocated.
std::size_t allocatedBytes() {
    const auto heap = reinterpret_cast<HANDLE>(_get_heap_handle());
    PROCESS_HEAP_ENTRY entry{};
    std::size_t bytes = 0;
    while (HeapWalk(heap, &entry))
        bytes += entry.wFlags & PROCESS_HEAP_ENTRY_BUSY ? entry.cbData : 0;
    return bytes;
}

DWORD nextThreadSlot() {
    const DWORD slot = TlsAlloc();
    TlsFree(slot);
    return slot;
}

// Simple MAPI loads and unloads its client with each message.
TEST(DraftMailLibraryTest, LeavesNothingBehindWhenItIsUnloaded) {
    constexpr std::size_t times = 20;
    const auto use = [] {
        for (std::size_t i = 0; i < times; ++i)
            ASSERT_EQ(sendWithoutFile(Library()), static_cast<ULONG>(MAPI_E_ATTACHMENT_NOT_FOUND));
    };
    use();
    ASSERT_EQ(GetModuleHandleW(L"DraftMail.dll"), nullptr);
    const std::size_t bytes = allocatedBytes();
    const DWORD slot = nextThreadSlot();
    const std::size_t handles = test::countHandles();
    ASSERT_NE(bytes, 0U);
    use();
    EXPECT_EQ(nextThreadSlot(), slot);
    EXPECT_EQ(test::countHandles(), handles);
    EXPECT_LT(allocatedBytes(), bytes + times * 100);
}

} // namespace
