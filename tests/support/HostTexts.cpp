// The host's texts in its languages.
#include "support/HostTexts.h"

#include "SorvaneBase/bxutils/ResourceManager.h"
#include "host/Text.h"

#include <gmock/gmock.h>

#include <windows.h>

namespace test {

std::vector<std::wstring> languageFiles() {
    std::vector<std::wstring> files;
    WIN32_FIND_DATAW found;
    HANDLE search = FindFirstFileW(LANGUAGE_FOLDER L"\\*.ini", &found);
    if (search == INVALID_HANDLE_VALUE)
        return files;
    do
        files.emplace_back(found.cFileName);
    while (FindNextFileW(search, &found));
    FindClose(search);
    return files;
}

void loadLanguage(const std::wstring& fileName) {
    ASSERT_TRUE(bxutils::getResourceManager()->loadLanguageFile(LANGUAGE_FOLDER L"\\" + fileName));
}

std::wstring hostText(const char* section, const char* key) {
    return host::wide(bxutils::getResourceManager()->getText(section, key));
}

} // namespace test
