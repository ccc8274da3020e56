// An export, from the engine's dialog to the result.
#pragma once

#include "host/FilePage.h"

#include <functional>
#include <string>

class CWnd;

namespace SorvaneCommon {
class ExportEngineFactory;
}

namespace host {

class ExportWatch;

enum class ExportResult {
    Cancelled, ///< in the engine's dialog
    Done,
    Failed,
    Stopped, ///< by the person, part-way
};

/// Shows a file, or a folder's content, in a window of the system's.
void showInFolder(const std::wstring& path);

/// Exports pages in the way that the factory offers: lets the person fill in the engine's dialog, shows how far the
/// export has come and lets it be stopped, and tells at the end what became of the pages. It returns when the person has
/// closed that. What goes wrong is told in the person's language and logged as the engine reports it.
///
/// Windows paint meanwhile but get no input, and the end of the Windows session is held up.
///
/// Thread: the user-interface thread. Nothing throws but want of memory.
/// @param owner    a top-level window, which owns the dialogs; the object must outlive the call
/// @param factory  not null; must stay until the call returns
/// @param pages    a list of its own: whoever gets to handle messages meanwhile may change theirs
/// @param watch    the watcher of the pages
/// @param open     opens the place where the pages are now, a folder or a file, when the person wants to see it
ExportResult runExport(CWnd& owner, SorvaneCommon::ExportEngineFactory& factory, FilePages pages,
                       ExportWatch& watch,
                       const std::function<void(const std::wstring& path)>& open = showInFolder);

} // namespace host
