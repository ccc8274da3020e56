// The engine that packs the pages into a ZIP archive.
#pragma once

#include "SorvaneBase/StringTypes.h"
#include "SorvaneCommon/ExportUtils/ExportEngineBase.h"

/// Names the entries from a prefix, a running number and the extension of the page's own file. A failure leaves
/// the archive with the entries added so far; copies that pages made of their data are left to the host.
class ExportToZip : public ExportUtils::ExportEngineBase {
public:
    ExportToZip();
    ~ExportToZip() override;

    bool showDialog() override;
    int exportData(void* context, ExportErrorSink& errors) override;

protected:
    Sorvane::u8string targetPath;
    Sorvane::u8string prefix;
};
