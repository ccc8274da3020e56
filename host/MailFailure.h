// Why the mail client did not take a message.
#pragma once

#include "SorvaneBase/bxutils/SystemLog.h"

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>

namespace host {

/// Learns the code that the mail client returned. The engine's result does not have it; the transport logs it.
class MailFailure : public bxutils::LogListener {
public:
    /// Listens to the log from now on.
    MailFailure();
    ~MailFailure();
    MailFailure(const MailFailure&) = delete;
    MailFailure& operator=(const MailFailure&) = delete;

    void logged(std::int32_t level, const char* message, const char* sourceFile,
                std::int32_t line) noexcept override;

    /// The code that a record of the log tells of. None when it is about something else.
    static std::optional<int> codeIn(std::string_view message);

    /// What a code means, by the key of a text in the language files. Null for one that is not known here.
    static const char* textKey(int code);

    /// What the last code means, and the code, as the second half of a sentence: "there is not enough memory
    /// (Simple MAPI code 5)". None when no code has been logged.
    std::optional<std::string> reason() const;

private:
    std::optional<int> code;
};

} // namespace host
