// The engine that hands the pages to the mail client.
#pragma once

#include "SorvaneCommon/ExportUtils/ExportEngineBase.h"

/// Not built yet: it asks nothing, and every export fails with a report that says so.
class ExportToMail : public ExportUtils::ExportEngineBase {
public:
    ExportToMail();
    ~ExportToMail() override;

    bool showDialog() override;
    int exportData(void* context, ExportErrorSink& errors) override;
};
