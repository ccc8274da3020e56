// Texts as parts of file names.
#include "draftmail/FileNameText.h"

#include "SorvaneBase/bxdisk/ForbiddenCharacters.h"

#include <windows.h>

namespace draftmail {

std::wstring fileNameText(std::wstring_view text) {
    std::wstring name(text);
    for (std::size_t at = 0; at < name.size(); ++at) {
        if (at + 1 < name.size() && IS_SURROGATE_PAIR(name[at], name[at + 1]))
            ++at;
        else if (bxdisk::isForbidden(name[at]) || IS_HIGH_SURROGATE(name[at]) || IS_LOW_SURROGATE(name[at]))
            name[at] = L'_';
    }
    return name;
}

} // namespace draftmail
