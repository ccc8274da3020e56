// The language of what is not in the language files.
#pragma once

#include <windows.h>

#include <string>

namespace host {

/// Makes the system choose this language, given its ISO 639-1 code, in the resources that the thread asks for, as the
/// toolkit's prompts and the messages of DraftMail are. One that the system does not know changes nothing.
void setThreadLanguage(const std::wstring& code);

/// Gives the thread, at its end, the language back that it had before.
class ThreadLanguageKeeper {
public:
    ThreadLanguageKeeper() = default;
    ~ThreadLanguageKeeper();
    ThreadLanguageKeeper(const ThreadLanguageKeeper&) = delete;
    ThreadLanguageKeeper& operator=(const ThreadLanguageKeeper&) = delete;

private:
    LANGID language = GetThreadUILanguage();
    LCID locale = GetThreadLocale();
};

} // namespace host
