// The export to e-mail, as the console program drives it.
#include "host/MailTarget.h"

#include "SorvaneBase/bxdisk/Disk.h"
#include "SorvaneBase/bxdisk/File.h"
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "SorvaneCommon/Application.h"
#include "host/HostError.h"
#include "host/MailDialogControls.h"
#include "host/MailLimit.h"
#include "host/Text.h"

#include <afxwin.h>

#include <cstdint>
#include <utility>

namespace host {
namespace {

using namespace mailDialog;

// What the engine reports.
constexpr char noLibrary[] = "Failed to initialize mail";
constexpr char noAttachments[] = "Failed to prepare attachments";
constexpr char notSent[] = "Failed to send mail";

std::string hostText(const char* key) {
    return bxutils::getResourceManager()->getText("Common", key);
}

bool isSizeQuestion(HWND window) {
    return utf8(windowText(window)) == hostText("ExportToMail.FileSizeLimitTitle") &&
           utf8(messageBoxText(window)) == hostText("ExportToMail.FileSizeLimit");
}

/// Whether the window shows this text of the toolkit's.
bool isPrompt(HWND window, UINT textId) {
    CString text;
    return text.LoadString(textId) && messageBoxText(window) == text.GetString();
}

/// The limit that the engine keeps to. From 2 GiB on it differs from the setting.
int limitInKb() {
    std::string text;
    SorvaneCommon::GetApplication()->getSettingsStore()->read(mailLimitKey, text);
    bool isNumber = false;
    const auto kb = static_cast<std::uint32_t>(Sorvane::string2Int(text, isNumber));
    return static_cast<std::int32_t>(kb << 10) / 1024;
}

std::string exceedsLimit() {
    return "The pages exceed the limit of " + std::to_string(limitInKb()) + " KB for one e-mail";
}

/// Why a file of that size cannot be copied to where attachments are. The engine does not tell.
std::string reasonAgainstCopy(std::int64_t size) {
    std::string folder;
    if (!bxdisk::createTempDir("scanexport", folder))
        return "no folder for temporary files can be made: " + reasonFor(GetLastError());
    ULARGE_INTEGER available{};
    const bool isFull = GetDiskFreeSpaceExW(wide(folder).c_str(), &available, nullptr, nullptr) &&
                        available.QuadPart < static_cast<ULONGLONG>(size);
    RemoveDirectoryW(wide(folder).c_str());
    return isFull ? "the disk of the temporary files is full"
                  : "Windows did not copy it to the temporary files";
}

void press(HWND box, int button) {
    PostMessageW(box, WM_COMMAND, MAKEWPARAM(button, BN_CLICKED),
                 reinterpret_cast<LPARAM>(GetDlgItem(box, button)));
}

} // namespace

MailTarget::MailTarget(MailOptions given) : options(std::move(given)) {}

const char* MailTarget::factoryId() const {
    return "com.brellix.sorvane.exportdata-factory.mail.file";
}

SettingValues MailTarget::settings() const {
    if (!options.maxSizeInKb)
        return {};
    return {{mailLimitKey, std::to_string(*options.maxSizeInKb)}};
}

int MailTarget::tellingControl() const {
    return subjectEdit;
}

void MailTarget::fillIn(HWND dialog) const {
    if (options.subject)
        SetDlgItemTextW(dialog, subjectEdit, options.subject->c_str());
}

// Nothing that anybody has is overwritten: attachments are copied to a new folder.
Overwrite MailTarget::defaultOverwrite() const {
    return Overwrite::No;
}

void MailTarget::beforeExport() {
    failure.emplace();
}

std::string MailTarget::destination() const {
    return "the mail client";
}

const char* MailTarget::outcome() const {
    return "handed to";
}

bool MailTarget::concernsPage(const std::string& report) const {
    return report == noAttachments && !isTooLarge;
}

std::string MailTarget::sentenceFor(const std::string& report) const {
    if (report == noLibrary)
        return "The message cannot be handed over: this system has no library MAPI32.DLL that takes it.";
    if (report == noAttachments && isTooLarge)
        return exceedsLimit() + ", and the answer was No; --yes or --max-size 0 sends them.";
    if (report == noAttachments)
        return "The pages could not be attached: " + reasonAgainstCopy(0) + ".";
    if (report == notSent)
        return "The message was not taken: " + failure->reason().value_or("the mail client did not say why") +
               ".";
    return ExportTarget::sentenceFor(report);
}

std::string MailTarget::reasonForFailure(const FilePage& page, std::size_t, std::size_t) const {
    return reasonAgainstCopy(bxdisk::File(page.path()).getFileSize());
}

bool MailTarget::answer(HWND box, const std::function<bool(const std::string&)>& ask) {
    if (!isSizeQuestion(box))
        return false;
    if (!options.sendAnySize) {
        // It must not look as if it could be answered there as well.
        ShowWindow(box, SW_HIDE);
        isTooLarge = !ask(exceedsLimit() + ". Send them nevertheless?");
    }
    press(box, isTooLarge ? IDNO : IDYES);
    return true;
}

bool MailTarget::isForeign(HWND window) const {
    return !isSizeQuestion(window) && !isPrompt(window, AFX_IDP_INVALID_MAPI_DLL) &&
           !isPrompt(window, AFX_IDP_FAILED_MAPI_SEND);
}

} // namespace host
