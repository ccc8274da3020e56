// The engine that packs the pages into a ZIP archive.
#pragma once

#include "SorvaneCommon/ExportUtils/ExportEngineBase.h"

/// Not built yet: it asks nothing, and every export fails with a report that says so.
class ExportToZip : public ExportUtils::ExportEngineBase {
public:
    ExportToZip();
    ~ExportToZip() override;

    bool showDialog() override;
    int exportData(void* context, ExportErrorSink& errors) override;
};
