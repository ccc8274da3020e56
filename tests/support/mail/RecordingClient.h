// What recording_mail_client.dll exports beside MAPISendMail.
#pragma once

#include <windows.h>

#include <mapi.h>

using SendMailHandler = ULONG (*)(void* context, LHANDLE session, ULONG_PTR ui, lpMapiMessage message,
                                  FLAGS flags, ULONG reserved);

/// From now on each call of MAPISendMail is the handler's, until null is set. Without one it fails.
using SetSendMailHandler = void(SendMailHandler handler, void* context);
