// A folder that keeps other users out, in a place that all users can write to.
#include "host/PrivateFolder.h"

#include "host/UniqueHandle.h"

#include <windows.h>

#include <aclapi.h>
#include <sddl.h>

#include <memory>
#include <vector>

namespace host {
namespace {

struct LocalMemory {
    void operator()(void* memory) const { LocalFree(memory); }
};
using SecurityDescriptor = std::unique_ptr<void, LocalMemory>;

/// The user whom the process works for.
class User {
public:
    User() {
        HANDLE token = INVALID_HANDLE_VALUE;
        if (!OpenProcessToken(GetCurrentProcess(), TOKEN_QUERY, &token))
            return;
        const UniqueHandle owned(token);
        DWORD size = 0;
        GetTokenInformation(token, TokenUser, nullptr, 0, &size);
        information.resize(size);
        if (!GetTokenInformation(token, TokenUser, information.data(), size, &size))
            information.clear();
    }

    PSID sid() const {
        return information.empty() ? nullptr
                                   : reinterpret_cast<const TOKEN_USER*>(information.data())->User.Sid;
    }

    std::wstring text() const {
        wchar_t* converted = nullptr;
        if (!sid() || !ConvertSidToStringSidW(sid(), &converted))
            return {};
        const std::unique_ptr<wchar_t, LocalMemory> owned(converted);
        return converted;
    }

private:
    std::vector<unsigned char> information;
};

SecurityDescriptor accessForUserOnly() {
    const std::wstring user = User().text();
    // Inherited by what comes into the folder, and nothing inherited from above.
    const std::wstring text =
        L"O:" + user + L"D:P(A;OICI;FA;;;" + user + L")(A;OICI;FA;;;SY)(A;OICI;FA;;;BA)";
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    ConvertStringSecurityDescriptorToSecurityDescriptorW(text.c_str(), SDDL_REVISION_1, &descriptor, nullptr);
    return SecurityDescriptor(descriptor);
}

/// Not what a link leads to.
UniqueHandle openItself(const std::wstring& folder, DWORD access) {
    return UniqueHandle(
        CreateFileW(folder.c_str(), access, FILE_SHARE_READ | FILE_SHARE_WRITE | FILE_SHARE_DELETE, nullptr,
                    OPEN_EXISTING, FILE_FLAG_BACKUP_SEMANTICS | FILE_FLAG_OPEN_REPARSE_POINT, nullptr));
}

bool isUsersOwn(const UniqueHandle& folder) {
    BY_HANDLE_FILE_INFORMATION information{};
    if (!folder || !GetFileInformationByHandle(folder.get(), &information) ||
        !(information.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) ||
        (information.dwFileAttributes & FILE_ATTRIBUTE_REPARSE_POINT))
        return false;
    PSID owner = nullptr;
    PSECURITY_DESCRIPTOR descriptor = nullptr;
    if (GetSecurityInfo(folder.get(), SE_FILE_OBJECT, OWNER_SECURITY_INFORMATION, &owner, nullptr, nullptr,
                        nullptr, &descriptor) != ERROR_SUCCESS)
        return false;
    const SecurityDescriptor owned(descriptor);
    const User user;
    return user.sid() && EqualSid(owner, user.sid());
}

} // namespace

std::wstring privateFolderBelow(const std::wstring& common) {
    const std::wstring user = User().text();
    return user.empty() || common.empty() ? std::wstring() : common + L"\\Sorvane-ScanHost-" + user;
}

bool isUsersOwn(const std::wstring& folder) {
    return isUsersOwn(openItself(folder, READ_CONTROL));
}

bool makePrivateFolder(const std::wstring& folder) {
    const SecurityDescriptor access = accessForUserOnly();
    if (!access)
        return false;
    SECURITY_ATTRIBUTES attributes{sizeof attributes, access.get(), FALSE};
    if (CreateDirectoryW(folder.c_str(), &attributes))
        return true;
    const UniqueHandle existing = openItself(folder, READ_CONTROL | WRITE_DAC);
    return isUsersOwn(existing) &&
           SetKernelObjectSecurity(existing.get(), DACL_SECURITY_INFORMATION, access.get());
}

} // namespace host
