// The mail clients that Simple MAPI knows, and which of them it calls.
#pragma once

#include "draftmail/Registration.h"

#include <string>
#include <vector>

namespace host {

/// The keys of mail clients, with the one first whose choice counts where several make one: on Windows the user's
/// own before the computer's; under Wine, which knows no other, the computer's alone.
std::vector<draftmail::ClientsKey> mailClientPlaces();

/// Reads the registry each time it is asked, and writes only to the first of the places. Nothing throws.
class MailClients {
public:
    struct Client {
        std::wstring key;  ///< by which the registry knows it; "" stands for none
        std::wstring name; ///< for people

        friend bool operator==(const Client&, const Client&) = default;
    };

    /// @param places       not empty
    /// @param draftMailDll  the full path of the DraftMail.dll of this program; need not exist
    MailClients(std::vector<draftmail::ClientsKey> places, std::wstring draftMailDll);

    /// The key of the client that is called, whether or not it is registered; "" when there is none.
    std::wstring current() const;

    /// Those that can be chosen, sorted by name, with the current one: those that take messages from other programs,
    /// and DraftMail if this program has it.
    std::vector<Client> all() const;

    /// Whether the key is that of our DraftMail, not of another client that is named so.
    bool isDraftMail(const std::wstring& key) const;

    /// Makes a client the current one for the user. DraftMail is registered for that, and is so no longer once another
    /// is chosen, which first brings back what was there before it. "" does no more than that.
    /// @return an error code of Windows: ERROR_ACCESS_DENIED when the user may not change it
    LSTATUS choose(const std::wstring& key) const;

private:
    const draftmail::ClientsKey& own() const { return places.front(); }

    std::vector<draftmail::ClientsKey> places;
    std::wstring draftMailDll;
};

} // namespace host
