// A person at the keyboard, for a test that runs outside of Wine or in another process than the program it tests.
//
// key_presser reads orders from its standard input, one a line, and answers each with a line:
//   press KEY...  presses keys together, like "press CTRL SHIFT O"
//   type TEXT     presses the keys of a text, one after the other
//   look          tells of the window that gets what is pressed: title, class of the control with the focus, its text,
//                 and the texts of the window's other controls
// The parts of an answer end with the character U+001F; line breaks in a text become U+001E.
#include "host/DialogPilot.h"
#include "host/Text.h"

#include <windows.h>

#include <algorithm>
#include <cstdio>
#include <iostream>
#include <map>
#include <sstream>
#include <stdexcept>
#include <string>
#include <vector>

namespace {

const std::map<std::string, WORD> keyNames = {
    {"ALT", VK_MENU},  {"CTRL", VK_CONTROL}, {"SHIFT", VK_SHIFT}, {"ENTER", VK_RETURN}, {"ESC", VK_ESCAPE},
    {"TAB", VK_TAB},   {"SPACE", VK_SPACE},  {"DEL", VK_DELETE},  {"HOME", VK_HOME},    {"END", VK_END},
    {"LEFT", VK_LEFT}, {"RIGHT", VK_RIGHT},  {"UP", VK_UP},       {"DOWN", VK_DOWN},    {"MENU", VK_APPS},
    {"F4", VK_F4},     {"F6", VK_F6},        {"F10", VK_F10},
};

WORD keyNamed(const std::string& name) {
    if (name.size() == 1)
        return static_cast<WORD>(name[0]);
    const auto found = keyNames.find(name);
    if (found == keyNames.end())
        throw std::invalid_argument("no such key: " + name);
    return found->second;
}

bool isExtended(WORD key) {
    return (key >= VK_PRIOR && key <= VK_DOWN) || key == VK_DELETE || key == VK_APPS;
}

void send(WORD key, DWORD flags) {
    INPUT input{};
    input.type = INPUT_KEYBOARD;
    input.ki.wVk = key;
    input.ki.wScan = static_cast<WORD>(MapVirtualKeyW(key, MAPVK_VK_TO_VSC));
    input.ki.dwFlags = flags | (isExtended(key) ? KEYEVENTF_EXTENDEDKEY : 0);
    SendInput(1, &input, sizeof input);
}

void press(const std::vector<WORD>& keys) {
    for (const WORD key : keys)
        send(key, 0);
    std::for_each(keys.rbegin(), keys.rend(), [](WORD key) { send(key, KEYEVENTF_KEYUP); });
}

void type(const std::wstring& text) {
    for (const wchar_t character : text) {
        const SHORT key = VkKeyScanW(character);
        if (key == -1)
            throw std::invalid_argument("not on the keyboard: " + host::utf8(std::wstring(1, character)));
        std::vector<WORD> keys;
        for (const auto& [bit, modifier] : {std::pair(1, VK_SHIFT), {2, VK_CONTROL}, {4, VK_MENU}})
            if (HIBYTE(key) & bit)
                keys.push_back(static_cast<WORD>(modifier));
        keys.push_back(LOBYTE(key));
        press(keys);
    }
}

/// Nothing from a window that does not answer.
std::wstring textOf(HWND window) {
    constexpr UINT patience = 500;
    std::wstring text(4096, L'\0');
    DWORD_PTR length = 0;
    SendMessageTimeoutW(window, WM_GETTEXT, text.size(), reinterpret_cast<LPARAM>(text.data()),
                        SMTO_ABORTIFHUNG, patience, &length);
    text.resize(std::min<std::size_t>(length, text.size()));
    return text;
}

std::string field(const std::wstring& text) {
    std::string result = host::utf8(text);
    std::erase(result, '\r');
    std::ranges::replace(result, '\n', '\x1e');
    return result;
}

std::string look() {
    const HWND window = GetForegroundWindow();
    GUITHREADINFO thread{};
    thread.cbSize = sizeof thread;
    GetGUIThreadInfo(GetWindowThreadProcessId(window, nullptr), &thread);
    std::vector<std::wstring> texts = {host::windowText(window), host::windowClass(thread.hwndFocus),
                                       textOf(thread.hwndFocus)};
    EnumChildWindows(
        window,
        [](HWND control, LPARAM list) -> BOOL {
            if (IsWindowVisible(control))
                reinterpret_cast<std::vector<std::wstring>*>(list)->push_back(textOf(control));
            return TRUE;
        },
        reinterpret_cast<LPARAM>(&texts));
    std::string answer;
    for (const std::wstring& text : texts) {
        answer += field(text);
        answer += '\x1f';
    }
    return answer;
}

std::string obey(const std::string& line) {
    const auto space = std::min(line.find(' '), line.size());
    const std::string order = line.substr(0, space);
    const std::string rest = line.substr(std::min(space + 1, line.size()));
    if (order == "look")
        return look();
    if (order == "type") {
        type(host::wide(rest));
    } else if (order == "press") {
        std::istringstream names(rest);
        std::vector<WORD> keys;
        for (std::string name; names >> name;)
            keys.push_back(keyNamed(name));
        press(keys);
    } else {
        throw std::invalid_argument("no such order: " + order);
    }
    return "done";
}

} // namespace

int main() {
    try {
        for (std::string line; std::getline(std::cin, line);)
            std::cout << obey(line) << std::endl;
    } catch (const std::invalid_argument& error) {
        std::cerr << "key_presser: " << error.what() << '\n';
        return 1;
    }
}
