// The export to a directory, as the console program drives it.
#include "host/DirectoryTarget.h"

#include "SorvaneBase/bxdisk/Disk.h"
#include "SorvaneBase/bxdisk/File.h"
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "SorvaneCommon/ExportUtils/Extension.h"
#include "host/CommandLinePath.h"
#include "host/DirectoryDialogControls.h"
#include "host/FileNames.h"
#include "host/HostError.h"
#include "host/Text.h"
#include "host/UniqueHandle.h"

#include <algorithm>
#include <set>
#include <utility>

namespace host {
namespace {

using namespace directoryDialog;

void enter(HWND dialog, int control, const std::wstring& text) {
    SetDlgItemTextW(dialog, control, text.c_str());
}

void tick(HWND dialog, int control, bool wanted) {
    // A click rather than a new state, because the dialog reacts to clicks.
    if (IsDlgButtonChecked(dialog, control) != (wanted ? BST_CHECKED : BST_UNCHECKED))
        SendDlgItemMessageW(dialog, control, BM_CLICK, 0, 0);
}

std::wstring trimmedOfSeparators(std::wstring path) {
    while (path.ends_with(L'\\') && !path.ends_with(L":\\"))
        path.pop_back();
    return path;
}

} // namespace

DirectoryTarget::DirectoryTarget(DirectoryOptions given)
    : options(std::move(given)), directory(trimmedOfSeparators(fullPathOf(options.directory))) {
    settings.directory = directory;
}

const char* DirectoryTarget::factoryId() const {
    return "com.brellix.sorvane.exportdata-factory.dir.file";
}

void DirectoryTarget::checkBefore(const FilePages& pages) const {
    if (const auto part = impossiblePartOf(options.directory))
        throw UsageError("--to-dir " + utf8(options.directory) + ": Windows cannot have a folder named \"" +
                         utf8(*part) + "\".");
    if (options.prefix && !isPossibleInFileName(*options.prefix))
        throw UsageError("--prefix \"" + utf8(*options.prefix) +
                         "\" holds a character that Windows does not allow in file names.");
    if (options.noNumber && pages.size() > 1)
        throw UsageError("--no-number is for a single page; " + std::to_string(pages.size()) +
                         " pages would all get one name.");
    const bxdisk::File target(directory);
    if (target.exists() && !target.isDirectory())
        throw HostError("The target " + utf8(directory) + " is a file, not a folder.");
    refuseFolderOf(pages, directory);
}

int DirectoryTarget::tellingControl() const {
    return pathEdit;
}

void DirectoryTarget::fillIn(HWND dialog) const {
    enter(dialog, pathEdit, directory);
    if (options.prefix)
        enter(dialog, prefixEdit, *options.prefix);
    if (options.firstNumber)
        enter(dialog, firstNumberEdit, std::to_wstring(*options.firstNumber));
    if (options.digits)
        enter(dialog, digitsEdit, std::to_wstring(*options.digits));
    if (options.noNumber)
        tick(dialog, appendNumberBox, false);
    else if (options.firstNumber || options.digits)
        tick(dialog, appendNumberBox, true);
    tick(dialog, parentFolderBox, options.useParentFolderName);
}

void DirectoryTarget::observe(HWND dialog) {
    settings.directory = trimmedOfSeparators(windowText(GetDlgItem(dialog, pathEdit)));
    settings.prefix = windowText(GetDlgItem(dialog, prefixEdit));
    settings.firstNumber = GetDlgItemInt(dialog, firstNumberEdit, nullptr, FALSE);
    settings.digits = GetDlgItemInt(dialog, digitsEdit, nullptr, FALSE);
    settings.appendNumber = IsDlgButtonChecked(dialog, appendNumberBox) == BST_CHECKED;
    settings.useParentFolderName = IsDlgButtonChecked(dialog, parentFolderBox) == BST_CHECKED;
}

void DirectoryTarget::checkObserved(const FilePages& pages) const {
    refuseFolderOf(pages, settings.directory);
    for (std::size_t index = 0; index < pages.size(); ++index) {
        const std::wstring name = fileNameFor(*pages[index], index, pages.size());
        if (!isPossibleFileName(name))
            throw HostError("Windows cannot have a file named \"" + utf8(name) + "\", as the page " +
                            utf8(pages[index]->path()) + " would be.");
    }
}

Overwrite DirectoryTarget::defaultOverwrite() const {
    return Overwrite::Ask;
}

std::string DirectoryTarget::destination() const {
    return utf8(settings.directory);
}

std::string DirectoryTarget::reasonForFailure(const FilePage& page, std::size_t index,
                                              std::size_t pageCount) const {
    const bxdisk::File folder(settings.directory);
    if (!folder.isDirectory())
        return destination() + " is not a folder";

    bxdisk::File target(settings.directory);
    target.append(utf8(fileNameFor(page, index, pageCount)));
    const std::int64_t pageSize = bxdisk::File(page.path()).getFileSize();
    const bool existed = target.exists();
    // A larger file is one from before that the copy did not get to.
    const std::string remains = existed && target.getFileSize() < pageSize
                                    ? ", and " + utf8(target.getPath()) + " is incomplete"
                                    : "";

    ULARGE_INTEGER available{};
    if (GetDiskFreeSpaceExW(folder.getPath().c_str(), &available, nullptr, nullptr) &&
        available.QuadPart < static_cast<ULONGLONG>(pageSize))
        return "the disk of " + destination() + " is full" + remains;

    const UniqueHandle file(CreateFileW(target.getPath().c_str(), GENERIC_WRITE | DELETE,
                                        FILE_SHARE_READ | FILE_SHARE_WRITE, nullptr, OPEN_ALWAYS,
                                        existed ? 0 : FILE_FLAG_DELETE_ON_CLOSE, nullptr));
    const DWORD error = file ? ERROR_SUCCESS : GetLastError();
    if (error != ERROR_SUCCESS)
        return utf8(target.getPath()) + " cannot be written: " + reasonFor(error);
    return "Windows did not copy it to " + utf8(target.getPath()) + remains;
}

bool DirectoryTarget::isToldByReason(const std::string& message) const {
    return message.starts_with(bxutils::getResourceManager()->getText("Scan", "ScanExport.Error.CannotCopy") +
                               "\n");
}

void DirectoryTarget::refuseFolderOf(const FilePages& pages, const std::wstring& target) const {
    if (!bxdisk::File(target).isDirectory())
        return;
    std::set<const FileFolder*> seen;
    for (const auto& page : pages) {
        const FileFolder& folder = page->parentFolder();
        if (seen.insert(&folder).second && isSameFile(folder.path() + L'\\', target))
            throw HostError("The target " + utf8(target) + " is the folder of the page " +
                            utf8(page->path()) + ", which a copy could overwrite.");
    }
}

// What the component is going to call the file, so that a name which Windows would lose is refused in time.
std::wstring DirectoryTarget::fileNameFor(const FilePage& page, std::size_t index,
                                          std::size_t pageCount) const {
    constexpr std::size_t longerThanAnyName = 300;
    std::wstring name;
    if (const wchar_t* folder = page.parentFolder().getFolderName(); folder && settings.useParentFolderName)
        name = wide(bxdisk::normalizeFileName(utf8(folder)));
    name += settings.prefix;
    if (settings.appendNumber) {
        const auto number = std::to_wstring(settings.firstNumber + static_cast<unsigned>(index));
        const std::size_t width = std::max<std::size_t>(std::to_wstring(pageCount).size(), settings.digits);
        if (width > number.size())
            name.append(std::min(width - number.size(), longerThanAnyName), L'0');
        name += number;
    }
    if (const std::string extension = ExportUtils::getExtension(utf8(page.fileName())); !extension.empty())
        name += L'.' + wide(extension);
    return name;
}

} // namespace host
