// Runs an engine's export and protects the host from the mail client, which is somebody else's code in its process.
#pragma once

#include "SorvaneCommon/ExportErrorSink.h"

class CWnd;

namespace SorvaneCommon {
class ExportEngine;
}

namespace host {

/// Returns what engine.exportData(nullptr, errors) returns.
///
/// - Meanwhile MAPI32.DLL is the system's own, whoever asks for it by that name alone: a file so named in the program's,
///   the current or a PATH folder is not what runs. A system without one is none of this function's business.
/// - The current directory is afterwards what it was before, however the export ended.
/// - A crash inside, say of the mail client, throws HostError that says where it happened and that nobody knows whether
///   the pages were taken over.
/// - After a crash or an exception the owner and the application's other windows can be used as before: the mouse and
///   the keyboard focus are given back, and whatever windows were disabled for the mail client are enabled.
///
/// The program's application object (CWinApp), if there is one, is the current one and keeps the user out of the other
/// windows while the mail client has control. Without one these stay open to the user, and prompts have no caption.
///
/// After a crash every module that is loaded stays so until the process ends, because windows, timers and threads of
/// those that crashed may still run their code. The engine can be released and its component be taken away.
///
/// Thread: the user-interface thread. Calls nest, as when the mail client handles the host's messages meanwhile.
/// @param owner  the engine's parent window. The mail client may destroy the window, but the object must outlive the
///               call: none of a class that deletes itself with its window.
int exportGuarded(SorvaneCommon::ExportEngine& engine, CWnd& owner, ExportErrorSink& errors);

} // namespace host
