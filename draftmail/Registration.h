// Makes DraftMail the mail client that Simple MAPI calls, and undoes it.
//
// Below the key of mail clients each has a key by its name, with the value "DLLPath", and the key's default value
// names the one that is called. One DLL is called for all programs, so while this 64-bit one is registered, 32-bit
// programs have no mail client. For that reason nothing registers it but a person's explicit wish.
//
// A program that offers this links the library draft_mail and gives the path of the DraftMail.dll beside itself, which
// has to stay there as long as it is registered. On Windows it needs no rights that the person does not have.
#pragma once

#include <windows.h>

#include <string>

namespace draftmail {

/// The name that it is registered by.
inline constexpr wchar_t clientName[] = L"DraftMail";

/// Where mail clients are registered. The key need not exist.
struct ClientsKey {
    HKEY root;
    std::wstring path;

    /// Where this system's Simple MAPI looks: in the user's own registry, which takes precedence on Windows; in the
    /// computer's under Wine, which knows no other.
    static ClientsKey ofThisSystem();
};

/// Whether DraftMail is registered, be it the one that is called or not; a client of that name that is not this one
/// does not count.
bool isDraftMailRegistered(const ClientsKey& clients);

/// Makes DraftMail the registered client, remembering below its own key what was there before. Registering again
/// only changes the path, or makes it the client again when another took its place. After a failure everything is
/// as it was, as far as the registry allows.
/// @param dllPath  the full path of DraftMail.dll, in less than MAX_PATH characters
/// @return an error code of Windows: ERROR_ALREADY_EXISTS when a client of that name is registered that is not this
///         one, ERROR_ACCESS_DENIED when the user may not register clients there, and ERROR_BAD_PATHNAME or
///         ERROR_FILENAME_EXCED_RANGE when Simple MAPI could not make use of the path
LSTATUS registerDraftMail(const ClientsKey& clients, const std::wstring& dllPath);

/// Puts back what was there before registerDraftMail(). A client that has been registered since stays so.
/// @return an error code of Windows: ERROR_FILE_NOT_FOUND when DraftMail is not registered
LSTATUS unregisterDraftMail(const ClientsKey& clients);

} // namespace draftmail
