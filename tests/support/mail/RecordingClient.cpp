// A Simple MAPI client that leaves every call to the test that is running in its process.
#include "support/mail/RecordingClient.h"

namespace {

SendMailHandler handler = nullptr;
void* handlerContext = nullptr;

} // namespace

extern "C" __declspec(dllexport) void setSendMailHandler(SendMailHandler newHandler, void* context) {
    handler = newHandler;
    handlerContext = context;
}

extern "C" __declspec(dllexport) ULONG WINAPI
    MAPISendMail(LHANDLE session, ULONG_PTR ui, lpMapiMessage message, FLAGS flags, ULONG reserved) {
    return handler ? handler(handlerContext, session, ui, message, flags, reserved)
                   : ULONG{MAPI_E_NOT_SUPPORTED};
}
