// The file that holds the data of a page while an engine copies them.
#include "PageSource.h"

#include "SorvaneBase/Conversions.h"
#include "SorvaneBase/SorvaneException.h"
#include "SorvaneBase/bxdisk/Disk.h"

#include <windows.h>

#include <string>

bool PageSource::open(ExportDataItem* page) {
    std::wstring file;
    isTemporaryCopy = !page->getFilePath(file);
    if (isTemporaryCopy) {
        SorvaneException ignored;
        if (!page->createDataCopy(file, ignored))
            return false;
    }
    Sorvane::c_u16u8(path, file);
    return true;
}

bool PageSource::copyTo(const bxdisk::File& target) const {
    return CopyFileW(bxdisk::File(path).getPath().c_str(), target.getPath().c_str(), FALSE) != FALSE;
}

void PageSource::discard() const {
    if (isTemporaryCopy)
        bxdisk::deleteFile(path);
}
