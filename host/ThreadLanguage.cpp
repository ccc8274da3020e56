// The language of what is not in the language files.
#include "host/ThreadLanguage.h"

namespace host {

void setThreadLanguage(const std::wstring& code) {
    const LCID locale = LocaleNameToLCID(code.c_str(), 0);
    if (!locale)
        return;
    const LANGID language = LANGIDFROMLCID(locale);
    SetThreadUILanguage(language);
    // Wine goes by the locale. On Windows that would change the code page in which a mail client may read the paths
    // of attachments.
    if (GetThreadUILanguage() != language)
        SetThreadLocale(locale);
}

ThreadLanguageKeeper::~ThreadLanguageKeeper() {
    SetThreadUILanguage(language);
    SetThreadLocale(locale);
}

} // namespace host
