// Tells of a crash of the program with a window.
#include "host/desktop/CrashWindow.h"

#include "host/desktop/Texts.h"

#include <windows.h>

#include <algorithm>
#include <iterator>
#include <string>

namespace host {
namespace {

// Allocated now, for a moment in which the heap may be broken.
wchar_t introduction[300] = L"The program has to close because of an error.";
wchar_t text[1000];

} // namespace

void prepareCrashWindow() {
    const std::wstring words = localText("ScanHost.Window", "Crashed");
    const std::size_t length = std::min(words.size(), std::size(introduction) - 1);
    std::copy_n(words.data(), length, introduction);
    introduction[length] = L'\0';
}

void showCrash(const char* sentence) {
    wchar_t wideSentence[500] = L"";
    MultiByteToWideChar(CP_UTF8, 0, sentence, -1, wideSentence, static_cast<int>(std::size(wideSentence)));
    wsprintfW(text, L"%s\n\n%s", introduction, wideSentence);
    MessageBoxW(nullptr, text, L"ScanHost", MB_OK | MB_ICONERROR | MB_TASKMODAL | MB_SETFOREGROUND);
}

} // namespace host
