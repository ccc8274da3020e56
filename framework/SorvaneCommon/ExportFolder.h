// The folder a page lies in, as the host keeps it.
#pragma once

#include "SorvaneBase/StringTypes.h"

/// A host folder. Owned by the host; engines get it as a plain pointer that stays valid as long as they hold
/// the page that gave it.
///
/// Thread: the host's user-interface thread.
class ExportFolder {
public:
    virtual ~ExportFolder() = default;

    /// The folder's name, NUL-terminated, or null when it has none. Owned by the folder; valid until the
    /// folder changes or dies.
    virtual const wchar_t* getFolderName() const = 0;

    /// The same name into a text of the caller's; empty when the folder has none.
    virtual void getFolderName(Sorvane::astring& name) const {
        const wchar_t* own = getFolderName();
        name = own ? own : L"";
    }
};
