// The calls of Simple MAPI that make a draft.
#include "draftmail/SendMail.h"

#include "draftmail/DraftFile.h"
#include "draftmail/DraftWriter.h"
#include "draftmail/MapiError.h"

#include <new>

namespace draftmail {
namespace {

ULONG deliver(const Draft& draft, ULONG_PTR owner, Desktop& desktop) {
    const Stamp stamp = Stamp::make();
    DraftFile file(desktop.draftsFolder(), stamp.id);
    writeDraft(draft, stamp, [&file](std::string_view bytes) { file.write(bytes); });
    const std::wstring path = file.publish(draftName(draft.subject, stamp.moment.local));
    const DWORD error = desktop.open(path, reinterpret_cast<HWND>(owner));
    return error == ERROR_CANCELLED ? MAPI_E_USER_ABORT : SUCCESS_SUCCESS;
}

/// Makes codes of exceptions.
template <typename Call> ULONG guarded(const Call& call) noexcept {
    try {
        return call();
    } catch (const MapiError& error) {
        return error.code();
    } catch (const std::bad_alloc&) {
        return MAPI_E_INSUFFICIENT_MEMORY;
    } catch (...) {
        return MAPI_E_FAILURE;
    }
}

/// Finding out about the user's desktop can fail too.
template <typename Call> ULONG onUsersDesktop(const Call& call) noexcept {
    return guarded([&call] {
        WindowsDesktop desktop;
        return call(desktop);
    });
}

template <typename ToDraft>
ULONG send(bool hasMessage, FLAGS flags, ULONG_PTR owner, Desktop& desktop, const ToDraft& toDraft) noexcept {
    if (!hasMessage)
        return MAPI_E_FAILURE;
    if (!(flags & MAPI_DIALOG))
        return MAPI_E_NOT_SUPPORTED;
    return guarded([&] { return deliver(toDraft(), owner, desktop); });
}

} // namespace

ULONG sendMail(const MapiMessage* message, FLAGS flags, ULONG_PTR owner, Desktop& desktop) noexcept {
    return send(message, flags, owner, desktop, [message] { return draftOf(*message, CP_ACP); });
}

ULONG sendMail(const MessageW* message, FLAGS flags, ULONG_PTR owner, Desktop& desktop) noexcept {
    return send(message, flags, owner, desktop, [message] { return draftOf(*message); });
}

ULONG sendDocuments(ULONG_PTR owner, const char* delimiter, const char* paths, const char* names,
                    Desktop& desktop) noexcept {
    const ULONG code =
        guarded([&] { return deliver(draftOfDocuments(delimiter, paths, names, CP_ACP), owner, desktop); });
    // This call knows one code for both.
    return code == MAPI_E_ATTACHMENT_NOT_FOUND ? MAPI_E_ATTACHMENT_OPEN_FAILURE : code;
}

ULONG sendMail(const MapiMessage* message, FLAGS flags, ULONG_PTR owner) noexcept {
    return onUsersDesktop([=](Desktop& desktop) { return sendMail(message, flags, owner, desktop); });
}

ULONG sendMail(const MessageW* message, FLAGS flags, ULONG_PTR owner) noexcept {
    return onUsersDesktop([=](Desktop& desktop) { return sendMail(message, flags, owner, desktop); });
}

ULONG sendDocuments(ULONG_PTR owner, const char* delimiter, const char* paths, const char* names) noexcept {
    return onUsersDesktop(
        [=](Desktop& desktop) { return sendDocuments(owner, delimiter, paths, names, desktop); });
}

} // namespace draftmail
