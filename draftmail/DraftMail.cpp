// The functions that Simple MAPI looks for in a mail client.
//
// Windows' and Wine's MAPI32.DLL load this DLL when it is the registered client, and hand their callers' calls on.
#include "draftmail/SendMail.h"

#include <windows.h>

#include <mapi.h>

namespace {

/// There is nothing that a session would have to know.
constexpr LHANDLE onlySession = 1;

} // namespace

extern "C" {

/// Exported as MAPISendMailW, which some <mapi.h> declare with records of their own.
ULONG WINAPI DraftMailSendMailW(LHANDLE, ULONG_PTR owner, const draftmail::MessageW* message, FLAGS flags,
                                ULONG) {
    return draftmail::sendMail(message, flags, owner);
}

ULONG WINAPI MAPISendMail(LHANDLE, ULONG_PTR owner, lpMapiMessage message, FLAGS flags, ULONG) {
    return draftmail::sendMail(message, flags, owner);
}

ULONG WINAPI MAPISendDocuments(ULONG_PTR owner, LPSTR delimiter, LPSTR paths, LPSTR names, ULONG) {
    return draftmail::sendDocuments(owner, delimiter, paths, names);
}

ULONG WINAPI MAPILogon(ULONG_PTR, LPSTR, LPSTR, FLAGS, ULONG, LPLHANDLE session) {
    if (!session)
        return MAPI_E_FAILURE;
    *session = onlySession;
    return SUCCESS_SUCCESS;
}

ULONG WINAPI MAPILogoff(LHANDLE session, ULONG_PTR, FLAGS, ULONG) {
    return session == onlySession ? SUCCESS_SUCCESS : MAPI_E_INVALID_SESSION;
}

// Nothing here hands out memory.
ULONG WINAPI MAPIFreeBuffer(LPVOID memory) {
    return memory ? MAPI_E_FAILURE : SUCCESS_SUCCESS;
}

// There is neither an address book nor received mail.

ULONG WINAPI MAPIAddress(LHANDLE, ULONG_PTR, LPSTR, ULONG, LPSTR, ULONG, lpMapiRecipDesc, FLAGS, ULONG,
                         LPULONG, lpMapiRecipDesc*) {
    return MAPI_E_NOT_SUPPORTED;
}

ULONG WINAPI MAPIDetails(LHANDLE, ULONG_PTR, lpMapiRecipDesc, FLAGS, ULONG) {
    return MAPI_E_NOT_SUPPORTED;
}

ULONG WINAPI MAPIResolveName(LHANDLE, ULONG_PTR, LPSTR, FLAGS, ULONG, lpMapiRecipDesc*) {
    return MAPI_E_NOT_SUPPORTED;
}

ULONG WINAPI MAPIFindNext(LHANDLE, ULONG_PTR, LPSTR, LPSTR, FLAGS, ULONG, LPSTR) {
    return MAPI_E_NOT_SUPPORTED;
}

ULONG WINAPI MAPIReadMail(LHANDLE, ULONG_PTR, LPSTR, FLAGS, ULONG, lpMapiMessage*) {
    return MAPI_E_NOT_SUPPORTED;
}

ULONG WINAPI MAPISaveMail(LHANDLE, ULONG_PTR, lpMapiMessage, FLAGS, ULONG, LPSTR) {
    return MAPI_E_NOT_SUPPORTED;
}

ULONG WINAPI MAPIDeleteMail(LHANDLE, ULONG_PTR, LPSTR, FLAGS, ULONG) {
    return MAPI_E_NOT_SUPPORTED;
}

} // extern "C"
