// Turns a draft into the bytes of a mail message.
#pragma once

#include "draftmail/Draft.h"
#include "draftmail/Moment.h"

#include <functional>
#include <string>
#include <string_view>

namespace draftmail {

/// What tells one message from every other.
struct Stamp {
    Moment moment;
    std::string id; ///< letters and digits that occur nowhere else

    /// Throws MapiError.
    static Stamp make();
};

/// Takes the bytes of a message in order, in pieces of at most about 320 KB.
using Sink = std::function<void(std::string_view)>;

/// Writes the message (RFC 5322) with its attachments' bytes, whatever their size in little memory. It has
/// "X-Unsent: 1", by which mail programs know that it is to be edited and sent, and no sender, for which the mail
/// program puts in its user. Throws MapiError when an attachment cannot be read, and what the sink throws.
void writeDraft(const Draft& draft, const Stamp& stamp, const Sink& sink);

} // namespace draftmail
