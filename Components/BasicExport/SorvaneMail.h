// Hands files to the user's mail client as a new message, through Simple MAPI.
#pragma once

#include "SorvaneBase/StringTypes.h"

#include <windows.h>

#include <mapi.h>

#include <list>
#include <string>

class CWnd;
class SorvaneMailMessage;

/// The system's Simple MAPI library, loaded from initialize() until this is destroyed.
///
/// Every step is told to the host's log. Thread: the host's user-interface thread.
class SorvaneMail {
public:
    SorvaneMail() = default;
    SorvaneMail(const SorvaneMail&) = delete;
    SorvaneMail& operator=(const SorvaneMail&) = delete;
    virtual ~SorvaneMail();

    /// Makes the transport usable. False when the system has no such library, which is only logged, or when the
    /// library is no mail library, which the user is told in a message box.
    virtual bool initialize();

    /// A new, empty message, which the caller owns, or null when the transport is not usable. It must not be used once
    /// the transport is gone.
    SorvaneMailMessage* createMessage();

private:
    friend class SorvaneMailMessage;

    HMODULE mapiModule = nullptr;
    LPMAPISENDMAIL sendMailFunction = nullptr;
};

/// A file to attach, with its texts also in the ANSI code page, which is all that the mail client reads.
struct MailAttachment {
    Sorvane::u8string pathName;
    Sorvane::u8string fileName; ///< shown by the mail client
    std::string pathNameAcp;
    std::string fileNameAcp;
};

/// A subject and attachments. The user adds the rest in the mail client's window, and sends the message there or not.
class SorvaneMailMessage {
public:
    explicit SorvaneMailMessage(SorvaneMail* mail) : mail(mail) {}
    SorvaneMailMessage(const SorvaneMailMessage&) = delete;
    SorvaneMailMessage& operator=(const SorvaneMailMessage&) = delete;
    virtual ~SorvaneMailMessage();

    void setSubject(const Sorvane::u8string& subject);
    void addAttachment(const Sorvane::u8string& pathName, const Sorvane::u8string& fileName);

    /// Shows the message in the mail client and returns when the user is done with it there. The message stays as it
    /// is and can be sent again.
    /// @param parent  owns the mail client's windows and gets no input meanwhile; may be null
    /// @return false after a failure, which has been logged and shown to the user. A user who does not send the
    ///         message or does not log on to the mail client is no failure.
    bool send(CWnd* parent);

private:
    lpMapiFileDesc describeAttachments();

    SorvaneMail* mail;
    std::list<MailAttachment> attachments;
    Sorvane::u8string subject;
};
