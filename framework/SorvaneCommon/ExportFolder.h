// The folder a page lies in, as the host keeps it.
#pragma once

#include "SorvaneBase/StringTypes.h"

/// A host folder. Owned by the host; engines get it as a plain pointer that stays valid as long as they hold
/// the page that gave it.
///
/// Thread: the host's user-interface thread.
///
/// Microsoft's compilers put the overloads of one name next to each other in reverse order, hence the slots.
class ExportFolder {
public:
    virtual ~ExportFolder() = default; // slot 0

    /// Slot 2. The folder's name, NUL-terminated, or null when it has none. Owned by the folder; valid until the
    /// folder changes or dies.
    virtual const wchar_t* getFolderName() const = 0;

    /// Slot 1. The same name into a text of the caller's; empty when the folder has none.
    virtual void getFolderName(Sorvane::astring& name) const {
        const wchar_t* own = getFolderName();
        name = own ? own : L"";
    }
};
