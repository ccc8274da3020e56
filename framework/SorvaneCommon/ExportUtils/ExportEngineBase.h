// What all engines have in common: the pages and the parent window.
#pragma once

#include "SorvaneCommon/Api.h"
#include "SorvaneCommon/ExportDataItem.h"
#include "SorvaneCommon/ExportEngine.h"
#include "bxbase/Reference.h"

#include <list>

class CWnd;

namespace ExportUtils {

/// Base class of engines.
class SORVANECOMMON_API ExportEngineBase : public SorvaneCommon::ExportEngine {
public:
    using Pages = std::list<bxbase::Reference<ExportDataItem>>;

    ExportEngineBase();

    bool addData(ExportDataItem* item) override;

    /// Slot 5, behind exportData. Releases the pages in their order.
    virtual ~ExportEngineBase();

    /// Slot 6. Sets the window that owns the engine's dialogs and message boxes. Not owned; it must outlive
    /// the engine's use.
    virtual void setParentWindow(CWnd* parent);

protected:
    Pages pages;
    CWnd* parentWindow = nullptr;
};

} // namespace ExportUtils
