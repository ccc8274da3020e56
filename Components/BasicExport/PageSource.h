// The file that holds the data of a page while an engine copies them.
#pragma once

#include "SorvaneBase/StringTypes.h"
#include "SorvaneBase/bxdisk/File.h"
#include "SorvaneCommon/ExportDataItem.h"

/// The page's own file, or a copy that it has written for this and that nobody else wants.
class PageSource {
public:
    /// Asks the page for its file. False when it has none and cannot write one; why is not told.
    bool open(ExportDataItem* page);

    /// Copies the data to the target, over a file of that name.
    bool copyTo(const bxdisk::File& target) const;

    /// Deletes the file if the page has written it for this.
    void discard() const;

    const Sorvane::u8string& getPath() const { return path; }

private:
    Sorvane::u8string path;
    bool isTemporaryCopy = false;
};
