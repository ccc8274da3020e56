// Hands the pages to the mail client as attachments of a new message.
#include "ExportToMail.h"

#include "EngineCreation.h"
#include "ExportFactories.h"
#include "ExportToMailDlg.h"
#include "LocalizedText.h"
#include "PageName.h"
#include "PageSource.h"
#include "SorvaneBase/Conversions.h"
#include "SorvaneBase/bxdisk/Disk.h"
#include "SorvaneBase/bxdisk/File.h"
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "SorvaneCommon/ExportUtils/Extension.h"
#include "SorvaneMail.h"

#include <afxwin.h>

#include <cstdint>
#include <string>

namespace {

constexpr int DONE = 0;
constexpr int FAILED = 1;

// The host tells the reports apart by these numbers, so they stay when the code around them moves.
constexpr char SOURCE_FILE[] = "Components/BasicExport/ExportToMail";
constexpr int LINE_INITIALIZE = 155;
constexpr int LINE_ATTACHMENTS = 162;
constexpr int LINE_MESSAGE = 169;
constexpr int LINE_SEND = 188;

/// Copies the page's data to the path and adds its size to the total.
bool copyPage(ExportDataItem* page, const bxdisk::File& target, std::int64_t& totalSize) {
    PageSource source;
    if (!source.open(page))
        return false;
    const bool copied = source.copyTo(target);
    totalSize += target.getFileSize();
    source.discard();
    return copied;
}

} // namespace

bool ExportToMailFactory::createEngine(CWnd* parent, bxbase::Reference<SorvaneCommon::ExportEngine>& engine) {
    return createEngineOf<ExportToMail>(parent, engine);
}

ExportToMail::ExportToMail() = default;

ExportToMail::~ExportToMail() = default;

bool ExportToMail::showDialog() {
    AFX_MAINTAIN_STATE2 maintainState(AfxGetStaticModuleState());
    if (!data.load())
        return false;
    Sorvane::astring subject;
    Sorvane::c_u8u16(subject, data.subject);
    ExportToMailDlg dialog(CWnd::FromHandle(GetActiveWindow()), &subject);
    if (dialog.DoModal() != IDOK)
        return false;

    Sorvane::c_u16u8(data.subject, dialog.getSubject());
    // A subject that cannot be remembered still serves this export.
    data.save();
    return true;
}

int ExportToMail::exportData(void*, ExportErrorSink& errors) {
    const auto failed = [&errors](int line, const char* message) {
        errors.reportError(SOURCE_FILE, line, message);
        return FAILED;
    };
    SorvaneMail mail;
    if (!mail.initialize())
        return failed(LINE_INITIALIZE, "Failed to initialize mail");
    Sorvane::u8string tempDir;
    std::list<Sorvane::u8string> names;
    if (!prepareTempDirectory(tempDir, names))
        return failed(LINE_ATTACHMENTS, "Failed to prepare attachments");
    // Never deleted: the mail client may go on reading its texts after the export.
    SorvaneMailMessage* const message = mail.createMessage();
    if (!message)
        return failed(LINE_MESSAGE, "Failed to create message");

    message->setSubject(data.subject);
    for (const Sorvane::u8string& name : names) {
        bxdisk::File file(tempDir);
        file.append(name);
        Sorvane::u8string path;
        Sorvane::c_u16u8(path, file.getPath());
        message->addAttachment(path, name);
    }
    if (!message->send(parentWindow))
        return failed(LINE_SEND, "Failed to send mail");
    return DONE;
}

bool ExportToMail::prepareTempDirectory(Sorvane::u8string& tempDir, std::list<Sorvane::u8string>& names) {
    Sorvane::u8string directory;
    if (!bxdisk::createTempDir("export-mail", directory) || !prepareAttachments(directory, names))
        return false;
    tempDir = directory;
    return true;
}

bool ExportToMail::prepareAttachments(const Sorvane::u8string& tempDir, std::list<Sorvane::u8string>& names) {
    const std::uint32_t width = countDecimalDigits(static_cast<std::uint32_t>(pages.size()));
    std::uint32_t number = 1;
    std::int64_t totalSize = 0;
    for (const bxbase::Reference<ExportDataItem>& added : pages) {
        // A page that writes its copy may let the host run, which must not take it from under us.
        const bxbase::Reference<ExportDataItem> page = added;
        Sorvane::u8string fileName;
        page->getFileName(fileName);
        names.push_back(bxutils::getResourceManager()->getText("Scan", "BasicExport.Page") + "-" +
                        paddedNumber(number, width) + dottedExtension(ExportUtils::getExtension(fileName)));
        bxdisk::File target(tempDir);
        target.append(names.back());
        if (!copyPage(page.get(), target, totalSize))
            return false;
        ++number;
    }

    // In 32 bits, on purpose: settings of 2 GiB and more wrap around, so that 2097152 and 4194304 are no limit.
    const auto limit = static_cast<std::int32_t>(static_cast<std::uint32_t>(data.maxTotalSizeInKb) << 10);
    if (limit <= 0 || totalSize <= limit)
        return true;
    return parentWindow->MessageBoxW(localizedText("Common", "ExportToMail.FileSizeLimit").c_str(),
                                     localizedText("Common", "ExportToMail.FileSizeLimitTitle").c_str(),
                                     MB_YESNO | MB_ICONQUESTION) == IDYES;
}
