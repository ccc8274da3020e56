// Systems whose MAPI32.DLL cannot send mail.
#pragma once

#include "host/ProgramFolder.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <stdexcept>
#include <string>

// Both need a system that does without its own library: programs of such tests run with Wine's override mapi32=n.
namespace test {

inline constexpr char mailLibraryHint[] = "these tests need Wine's override mapi32=n, which ctest sets";

/// Fails the test when there is a MAPI32.DLL.
inline void expectNoMailLibrary() {
    const HMODULE found = LoadLibraryW(L"MAPI32.DLL");
    ASSERT_EQ(found, nullptr) << mailLibraryHint;
}

/// A library without MAPISendMail that is loaded as MAPI32.DLL, so that the system gives it for the name alone, too.
class PlantedMailLibrary {
public:
    PlantedMailLibrary() {
        const std::wstring original = host::programFolder() + L"\\library_without_mail.dll";
        const std::wstring planted = folder / L"MAPI32.DLL";
        if (CopyFileW(original.c_str(), planted.c_str(), TRUE))
            module = LoadLibraryW(planted.c_str());
        if (!module || !GetProcAddress(module, "notMail"))
            throw std::runtime_error(mailLibraryHint);
    }
    ~PlantedMailLibrary() { FreeLibrary(module); }
    PlantedMailLibrary(const PlantedMailLibrary&) = delete;
    PlantedMailLibrary& operator=(const PlantedMailLibrary&) = delete;

private:
    TempFolder folder;
    HMODULE module = nullptr;
};

} // namespace test
