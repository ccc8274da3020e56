// What a draft is made of.
#pragma once

#include "draftmail/MimeText.h"

#include <string>
#include <vector>

namespace draftmail {

struct Attachment {
    std::wstring path;
    std::wstring name; ///< the one it has in the message: a file name without a folder
};

struct Draft {
    std::wstring subject; ///< may be empty
    std::wstring note;    ///< the text; its lines end in any way
    std::vector<Mailbox> to;
    std::vector<Mailbox> cc;
    std::vector<Mailbox> bcc;
    std::vector<Attachment> attachments;
};

} // namespace draftmail
