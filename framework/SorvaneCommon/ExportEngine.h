// One export, from the settings dialog to the written files.
#pragma once

#include "SorvaneCommon/ExportErrorSink.h"
#include "bxbase/ReferencedObject.h"

class ExportDataItem;

namespace SorvaneCommon {

/// Made by a factory for one export, with one reference, the caller's, and its parent window set.
///
/// The host calls, in this order: addData() for every page, showDialog(), exportData() once, release().
/// Engines number their outputs by the order of addData() and size the numbers by the count of pages, so all
/// pages come before exportData().
///
/// Thread: the host's user-interface thread. Nothing throws.
class ExportEngine : public bxbase::ReferencedObject {
public:
    /// Slot 2. Shows the modal settings dialog. True when the user confirmed it; the engine then holds the
    /// settings. After false the host does not export.
    virtual bool showDialog() = 0;

    /// Slot 3. Adds a page behind those added before; the engine keeps a reference to it until it is
    /// destroyed. A page added twice is exported twice.
    /// @param item  never null
    /// @return always true
    virtual bool addData(ExportDataItem* item) = 0;

    /// Slot 4. Exports all pages in order, blocking until done.
    /// @param context  read by no engine; pass null
    /// @param errors   where a failure is reported before the result 1 is returned
    /// @return 0 done (also with no pages), 1 failed and reported, 2 stopped by the user
    virtual int exportData(void* context, ExportErrorSink& errors) = 0;

protected:
    ~ExportEngine() = default;
};

} // namespace SorvaneCommon
