// Hands files to the user's mail client as a new message, through Simple MAPI.
#include "SorvaneMail.h"

#include "SorvaneBase/Conversions.h"
#include "SorvaneBase/StringBuilders.h"
#include "SorvaneBase/bxutils/SystemLog.h"

#include <afxwin.h>

#include <cstdint>
#include <cstring>
#include <memory>
#include <string>

namespace {

constexpr std::int32_t FAILURE = 0;
constexpr std::int32_t PROGRESS = 2;

// Readers of the log know the steps by these numbers, so they stay when the code around them moves.
constexpr int LINE_SEND = 61;
constexpr int LINE_NO_TRANSPORT = 64;
constexpr int LINE_ATTACHMENTS = 72;
constexpr int LINE_MESSAGE = 100;
constexpr int LINE_CALL = 114;
constexpr int LINE_RETURN = 132;
constexpr int LINE_FAILED = 154;
constexpr int LINE_ADD_ATTACHMENT = 170;
constexpr int LINE_INITIALIZE = 188;
constexpr int LINE_NO_LIBRARY = 193;
constexpr int LINE_CREATE_MESSAGE = 210;
constexpr int LINE_NOT_AVAILABLE = 213;

void log(std::int32_t level, const char* message, int line) {
    bxutils::getSystemLogFormater()->log(level, message, "Components/BasicExport/SorvaneMail", line);
}

void showPrompt(UINT id) {
    AfxMessageBox(id, MB_OK, static_cast<UINT>(-1));
}

/// Keeps the user out of the window that owns those of the mail client. The flag holds also when the mail client
/// enables its owner, as it does between two windows of its own.
HWND holdOff(CWnd* parent) {
    parent->SetCapture();
    SetFocus(nullptr);
    parent->m_nFlags |= WF_STAYDISABLED;
    return parent->m_hWnd;
}

void giveBack(CWnd* parent, HWND window) {
    ReleaseCapture();
    parent->m_nFlags &= ~static_cast<UINT>(WF_STAYDISABLED);
    parent->EnableWindow(TRUE);
    SetActiveWindow(nullptr);
    parent->SetActiveWindow();
    parent->SetFocus();
    // Once more without the object, which may have got another window or none meanwhile.
    if (window)
        EnableWindow(window, TRUE);
}

bool isFailure(ULONG result) {
    return result != SUCCESS_SUCCESS && result != MAPI_USER_ABORT && result != MAPI_E_LOGIN_FAILURE;
}

} // namespace

SorvaneMail::~SorvaneMail() {
    if (mapiModule)
        FreeLibrary(mapiModule);
}

bool SorvaneMail::initialize() {
    log(PROGRESS, "Initializing SorvaneMail", LINE_INITIALIZE);
    if (!mapiModule) {
        mapiModule = LoadLibraryW(L"MAPI32.DLL");
        if (!mapiModule) {
            log(FAILURE, "Failed to load MAPI32.DLL", LINE_NO_LIBRARY);
            return false;
        }
    }
    sendMailFunction =
        reinterpret_cast<LPMAPISENDMAIL>(reinterpret_cast<void*>(GetProcAddress(mapiModule, "MAPISendMail")));
    if (!sendMailFunction) {
        showPrompt(AFX_IDP_INVALID_MAPI_DLL);
        return false;
    }
    return true;
}

SorvaneMailMessage* SorvaneMail::createMessage() {
    log(PROGRESS, "SorvaneMail::createMessage", LINE_CREATE_MESSAGE);
    if (!sendMailFunction) {
        log(FAILURE, "Mail not available", LINE_NOT_AVAILABLE);
        return nullptr;
    }
    return std::make_unique<SorvaneMailMessage>(this).release();
}

SorvaneMailMessage::~SorvaneMailMessage() = default;

void SorvaneMailMessage::setSubject(const Sorvane::u8string& newSubject) {
    subject = newSubject;
}

void SorvaneMailMessage::addAttachment(const Sorvane::u8string& pathName, const Sorvane::u8string& fileName) {
    log(PROGRESS, "SorvaneMailMessage::addAttachment", LINE_ADD_ATTACHMENT);
    MailAttachment& attachment = attachments.emplace_back(MailAttachment{pathName, fileName, {}, {}});
    Sorvane::c_u8acp(attachment.pathNameAcp, attachment.pathName);
    Sorvane::c_u8acp(attachment.fileNameAcp, attachment.fileName);
}

lpMapiFileDesc SorvaneMailMessage::describeAttachments() {
    if (attachments.empty())
        return nullptr;
    log(PROGRESS, "Adding attachments", LINE_ATTACHMENTS);
    // Zero in every byte, also between the fields, which an initialiser may leave out.
    auto files = std::make_unique_for_overwrite<MapiFileDesc[]>(attachments.size());
    std::memset(files.get(), 0, attachments.size() * sizeof(MapiFileDesc));
    lpMapiFileDesc file = files.get();
    for (MailAttachment& attachment : attachments) {
        // The note's only character.
        file->nPosition = 0;
        file->lpszPathName = attachment.pathNameAcp.data();
        file->lpszFileName = attachment.fileNameAcp.data();
        ++file;
    }
    // Never freed: a mail client may go on reading it after its function has returned.
    return files.release();
}

bool SorvaneMailMessage::send(CWnd* parent) {
    log(PROGRESS, "SorvaneMailMessage::send", LINE_SEND);
    if (!mail) {
        log(FAILURE, "mail component not available", LINE_NO_TRANSPORT);
        return false;
    }
    const lpMapiFileDesc files = describeAttachments();

    std::string subjectAcp;
    Sorvane::c_u8acp(subjectAcp, subject);
    // Attachments need a character of the note to stand at.
    std::string noteAcp = " ";

    log(PROGRESS, "Preparing MapiMessage", LINE_MESSAGE);
    MapiMessage message;
    std::memset(&message, 0, sizeof message);
    message.nFileCount = static_cast<ULONG>(attachments.size());
    message.lpFiles = files;
    message.lpszNoteText = noteAcp.data();
    if (!subjectAcp.empty())
        message.lpszSubject = subjectAcp.data();

    // A host may do without an application object; then nobody disables its other windows.
    CWinApp* const application = AfxGetModuleState()->m_pCurrentWinApp;
    if (application)
        application->EnableModeless(FALSE);

    log(PROGRESS, "Sending message to MAPI", LINE_CALL);
    const HWND window = parent ? holdOff(parent) : nullptr;
    const ULONG result = mail->sendMailFunction(0, reinterpret_cast<ULONG_PTR>(window), &message,
                                                MAPI_LOGON_UI | MAPI_DIALOG, 0);
    log(PROGRESS, "Back from MAPI", LINE_RETURN);
    if (parent)
        giveBack(parent, window);
    if (application)
        application->EnableModeless(TRUE);

    if (!isFailure(result))
        return true;
    const Sorvane::u8string text =
        Sorvane::U8StringBuilder().append("MAPI failure, error code=").append(static_cast<int>(result));
    log(FAILURE, text.c_str(), LINE_FAILED);
    showPrompt(AFX_IDP_FAILED_MAPI_SEND);
    return false;
}
