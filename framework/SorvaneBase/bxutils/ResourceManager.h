// Localised texts by section and key.
#pragma once

#include "SorvaneBase/Api.h"
#include "SorvaneBase/StringTypes.h"

#include <map>
#include <utility>

namespace bxutils {

/// The texts of one language, read from a language file.
///
/// A language file is UTF-8 text, with or without a byte order mark: sections in brackets, one `key=text` per
/// line, lines that begin with ";" are comments. Blanks around sections, keys and texts do not count. In a
/// text, "\n" and "\\" stand for a line break and a backslash; before any other character a backslash is
/// itself. Of two texts with the same key the last counts; lines of other forms are passed over.
///
/// Thread: the host's user-interface thread.
class SORVANEBASE_API ResourceManager {
public:
    /// Replaces all texts by those of the file. False when it cannot be read; the texts then stay as they
    /// were.
    bool loadLanguageFile(const Sorvane::pstring& path);

    /// The text, or the key itself when the language file has none, so that a gap shows and nothing breaks.
    Sorvane::u8string getText(const Sorvane::u8string& section, const Sorvane::u8string& key) const;

    /// All texts by (section, key), for checks over a whole language file.
    const std::map<std::pair<Sorvane::u8string, Sorvane::u8string>, Sorvane::u8string>&
    getTexts() const noexcept {
        return texts;
    }

private:
    std::map<std::pair<Sorvane::u8string, Sorvane::u8string>, Sorvane::u8string> texts;
};

/// The process's one resource manager; never null, empty until the host loads a language file. The caller
/// does not own it.
SORVANEBASE_API ResourceManager* getResourceManager();

} // namespace bxutils
