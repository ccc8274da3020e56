// A kind of export that a component offers.
#pragma once

#include "SorvaneBase/StringTypes.h"
#include "bxbase/Reference.h"
#include "bxbase/ReferencedObject.h"

class CWnd;

namespace BXImage {
class Image;
}

namespace SorvaneCommon {

class ExportEngine;

/// Created by a component, registered with the ExportEnginesManager and owned by it from then on.
///
/// Thread: the host's user-interface thread. Nothing throws.
class ExportEngineFactory : public bxbase::ReferencedObject {
public:
    /// Slot 2. The constant identifier of this kind of export; static lifetime, never null.
    virtual const char* getId() const = 0;

    /// Slot 3. The localised name under which it is offered. Valid as long as the factory.
    virtual const Sorvane::u8string& getName() const = 0;

    /// Slot 4. Stores the icon into `icon`, which takes one reference, and returns true; or returns false
    /// with `icon` untouched when there is none.
    virtual bool getIcon(bxbase::Reference<BXImage::Image>& icon) const = 0;

    /// Slot 5. Whether an engine can be created now.
    virtual bool isAvailable() const = 0;

    /// Slot 6. Creates an engine for one export.
    /// @param parent  the window that is to own the engine's dialogs and message boxes; not owned, must
    ///                outlive the engine's use
    /// @param engine  out: an empty handle, which receives the engine with exactly one reference. What the
    ///                handle held before would not be released.
    /// @return false, with nothing created, when `parent` is null
    virtual bool createEngine(CWnd* parent, bxbase::Reference<ExportEngine>& engine) = 0;

protected:
    ~ExportEngineFactory() = default;
};

} // namespace SorvaneCommon
