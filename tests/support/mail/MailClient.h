// The mail client of the system, played by a test.
#pragma once

#include "support/ScopedRegistryKey.h"

#include <windows.h>

#include <mapi.h>

#include <functional>
#include <future>
#include <optional>
#include <string>
#include <vector>

namespace test {

/// A record byte for byte, with those between its fields.
template <class Record> std::string bytesOfRecord(const Record& record) {
    return {reinterpret_cast<const char*>(&record), sizeof record};
}

/// One call of MAPISendMail: what came, byte for byte, and copies of the texts it pointed to.
struct MailCall {
    struct File {
        MapiFileDesc record;
        std::string bytes; ///< of the record
        std::optional<std::string> path;
        std::optional<std::string> name;
    };

    LHANDLE session;
    ULONG_PTR ui;
    FLAGS flags;
    ULONG reserved;
    MapiMessage message;
    std::string bytes; ///< of the message
    std::optional<std::string> subject;
    std::optional<std::string> note;
    std::vector<File> files;

    HWND owner() const { return reinterpret_cast<HWND>(ui); }
};

/// For the time of its life the system's MAPI32.DLL hands the messages of this process to the test. The registration
/// is seen by this process only, because HKEY_LOCAL_MACHINE is, meanwhile, a key of its own. One at a time.
class MailClient {
public:
    using Behaviour = std::function<ULONG(const MailCall&)>;

    MailClient();
    ~MailClient();
    MailClient(const MailClient&) = delete;
    MailClient& operator=(const MailClient&) = delete;

    /// What the client does with a call, and the code it returns. It accepts everything until a test sets this.
    Behaviour behaviour;
    /// The calls so far. A behaviour has run for each one that `finished` counts.
    std::vector<MailCall> calls;
    int finished = 0;

private:
    static ULONG receive(void* self, LHANDLE session, ULONG_PTR ui, lpMapiMessage message, FLAGS flags,
                         ULONG reserved);
    void handle(bool receiving);

    ScopedRegistryKey key;
    HKEY machine = nullptr;
    HMODULE library = nullptr;
};

// Behaviours of mail clients that have been met.

MailClient::Behaviour returns(ULONG code);
/// Leaves the process in another current directory.
MailClient::Behaviour changesDirectory(std::wstring directory);
/// Disables its owner and enables it again, as between its logon dialog and its compose window.
MailClient::Behaviour enablesOwner();
MailClient::Behaviour destroysOwner();
/// Lets the application handle what waits in its message queue, as a modal window does.
MailClient::Behaviour pumpsMessages();
/// What a mail client has read of an attachment.
struct ReadAttachment {
    std::string name;
    std::string bytes;
    bool operator==(const ReadAttachment&) const = default;
};
/// Returns at once, and reads what the message points to in a thread of its own as soon as it is told to.
MailClient::Behaviour readsAttachmentsLater(std::shared_future<void> start,
                                            std::future<std::vector<ReadAttachment>>& attachments);
/// Does something of the test's meanwhile.
MailClient::Behaviour meanwhile(std::function<void()> action);
/// Executes an illegal instruction, in whatever build, after it has said so on the standard error.
MailClient::Behaviour crashes();

} // namespace test
