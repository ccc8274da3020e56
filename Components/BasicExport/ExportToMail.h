// The engine that hands the pages to the mail client.
#pragma once

#include "ExportToMailData.h"
#include "SorvaneBase/StringTypes.h"
#include "SorvaneCommon/ExportUtils/ExportEngineBase.h"

#include <list>

/// Copies the pages under numbered names into a temporary directory and attaches the copies to a new message, in
/// which the user goes on in the mail client's own window. The directory is left to the host: the mail client may
/// read it long after the export.
class ExportToMail : public ExportUtils::ExportEngineBase {
public:
    ExportToMail();
    ~ExportToMail() override;

    /// Loads the settings, also those that exportData() goes by. False also when the host keeps none.
    bool showDialog() override;

    /// Never gives 2: to refuse the large size is a failure, and not to send the message is none.
    int exportData(void* context, ExportErrorSink& errors) override;

protected:
    ExportToMailData data;

private:
    bool prepareTempDirectory(Sorvane::u8string& tempDir, std::list<Sorvane::u8string>& names);
    bool prepareAttachments(const Sorvane::u8string& tempDir, std::list<Sorvane::u8string>& names);
};
