// The engine that writes each page as a file into a directory.
#pragma once

#include "SorvaneBase/StringTypes.h"
#include "SorvaneCommon/ExportUtils/ExportEngineBase.h"

#include <cstdint>

/// Names the files from an optional folder name, a prefix, an optional running number and the extension of the
/// page's own file. Asks before it overwrites any of them. Files written before a failure or a cancel stay.
class ExportToDirectory : public ExportUtils::ExportEngineBase {
public:
    ExportToDirectory();
    ~ExportToDirectory() override;

    bool showDialog() override;
    int exportData(void* context, ExportErrorSink& errors) override;

protected:
    Sorvane::u8string targetPath;
    Sorvane::u8string prefix;
    std::uint32_t digits = 3; ///< the number's least width; the dialog offers 4, on purpose
    std::uint32_t firstNumber = 1;
    bool appendIndex = true;
    bool useParentFolderName = false;

private:
    int exportPage(ExportDataItem* page, std::uint32_t number, std::uint32_t width);
};
