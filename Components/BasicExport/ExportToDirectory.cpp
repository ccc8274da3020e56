// Writes each page as a file into a directory.
#include "ExportToDirectory.h"

#include "EngineCreation.h"
#include "ExportDirectoryDialog.h"
#include "ExportFactories.h"
#include "LocalizedText.h"
#include "PageName.h"
#include "PageSource.h"
#include "SorvaneBase/Conversions.h"
#include "SorvaneBase/StringBuilders.h"
#include "SorvaneBase/bxdisk/Disk.h"
#include "SorvaneBase/bxdisk/File.h"
#include "SorvaneCommon/ExportFolder.h"
#include "SorvaneCommon/ExportUtils/Extension.h"
#include "SorvaneCommon/MessageDialog.h"

#include <afxwin.h>

#include <algorithm>

namespace {

constexpr int DONE = 0;
constexpr int FAILED = 1;
constexpr int STOPPED_BY_USER = 2;

// The host tells the reports apart by these numbers, so they stay when the code around them moves.
constexpr char SOURCE_FILE[] = "Components/BasicExport/ExportToDirectory";
constexpr int LINE_TARGET_PATH = 52;
constexpr int LINE_PAGE = 76;

Sorvane::u8string overwriteQuestion(const std::wstring& path) {
    CString question;
    question.Format(localizedText("Common", "Question.OverwriteFile").c_str(), path.c_str());
    return Sorvane::U8StringBuilder().appendInAcp(question.GetString());
}

} // namespace

bool ExportToDirectoryFactory::createEngine(CWnd* parent,
                                            bxbase::Reference<SorvaneCommon::ExportEngine>& engine) {
    return createEngineOf<ExportToDirectory>(parent, engine);
}

ExportToDirectory::ExportToDirectory() = default;

ExportToDirectory::~ExportToDirectory() = default;

bool ExportToDirectory::showDialog() {
    AFX_MAINTAIN_STATE2 maintainState(AfxGetStaticModuleState());
    ExportDirectoryDialog dialog(parentWindow, &pages);
    if (dialog.DoModal() != IDOK)
        return false;

    appendIndex = dialog.appendIndex != 0;
    useParentFolderName = dialog.useParentFolderName != 0;
    firstNumber = static_cast<std::uint32_t>(dialog.firstNumber);
    digits = static_cast<std::uint32_t>(dialog.digits);
    Sorvane::c_u16u8(targetPath, dialog.exportPath);
    Sorvane::c_u16u8(prefix, dialog.prefix.GetString());
    return true;
}

int ExportToDirectory::exportData(void*, ExportErrorSink& errors) {
    bxdisk::createDirectories(targetPath);
    if (!bxdisk::isDirectory(targetPath)) {
        errors.reportError(SOURCE_FILE, LINE_TARGET_PATH, "targetPath is not directory");
        return FAILED;
    }

    const std::uint32_t width = std::max(countDecimalDigits(pages.size()), digits);
    std::uint32_t number = firstNumber;
    for (const bxbase::Reference<ExportDataItem>& added : pages) {
        // Questions about the page let the host run, which must not take it from under us.
        const bxbase::Reference<ExportDataItem> page = added;
        const int result = exportPage(page.get(), number, width);
        if (result == FAILED) {
            errors.reportError(SOURCE_FILE, LINE_PAGE, "Failed to export file");
            return FAILED;
        }
        if (result == STOPPED_BY_USER)
            return STOPPED_BY_USER;
        ++number;
    }
    return DONE;
}

int ExportToDirectory::exportPage(ExportDataItem* page, std::uint32_t number, std::uint32_t width) {
    Sorvane::u8string fileName;
    page->getFileName(fileName);
    const Sorvane::u8string extension = ExportUtils::getExtension(fileName);

    Sorvane::u8string name = prefix;
    if (appendIndex)
        name += paddedNumber(number, width);

    Sorvane::u8string folderPart;
    if (useParentFolderName) {
        if (const ExportFolder* const folder = page->getParentFolder()) {
            Sorvane::u8string folderName;
            Sorvane::c_u16u8(folderName, folder->getFolderName());
            folderPart = bxdisk::normalizeFileName(folderName);
        }
    }

    bxdisk::File target(targetPath);
    target.append(folderPart + name + dottedExtension(extension));

    // No answer covers the remaining files: each is somebody's document, and each is asked about.
    if (target.exists() &&
        SorvaneCommon::MessageDialog(parentWindow->GetSafeHwnd(), SorvaneCommon::MessageDlgType::Question,
                                     overwriteQuestion(target.getPath()),
                                     {}) != SorvaneCommon::MessageDlgResult::Yes)
        return STOPPED_BY_USER;

    PageSource source;
    if (!source.open(page))
        return FAILED;
    const bool copied = source.copyTo(target);
    source.discard();
    if (copied)
        return DONE;

    std::wstring shownSource;
    Sorvane::c_u8u16(shownSource, source.getPath());
    parentWindow->MessageBoxW(
        (localizedText("Scan", "ScanExport.Error.CannotCopy") + L"\n" + shownSource).c_str(),
        localizedText("Common", "Error").c_str(), MB_ICONERROR);
    return FAILED;
}
