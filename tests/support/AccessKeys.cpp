// Looks for controls and commands that cannot be reached with Alt and a letter.
#include "support/AccessKeys.h"

#include "host/DialogPilot.h"
#include "host/Text.h"

#include <map>

namespace test {
namespace {

/// The letter in its capital form, or 0.
wchar_t accessKeyOf(const std::wstring& text) {
    for (std::size_t i = 0; i + 1 < text.size(); ++i) {
        if (text[i] != L'&')
            continue;
        if (text[i + 1] != L'&')
            return static_cast<wchar_t>(reinterpret_cast<UINT_PTR>(
                CharUpperW(reinterpret_cast<wchar_t*>(static_cast<UINT_PTR>(text[i + 1])))));
        ++i;
    }
    return 0;
}

/// Notes texts one after the other and what is wrong with them.
class Notes {
public:
    void add(const std::wstring& text, bool needsKey) {
        const wchar_t key = accessKeyOf(text);
        if (!key && needsKey)
            wrong.push_back('"' + host::utf8(text) + "\" has no access key");
        else if (const auto [other, isNew] = texts.try_emplace(key, text); key && !isNew)
            wrong.push_back('"' + host::utf8(text) + "\" has the access key of \"" +
                            host::utf8(other->second) + '"');
    }

    std::vector<std::string> wrong;

private:
    std::map<wchar_t, std::wstring> texts;
};

bool isButton(HWND control) {
    return host::windowClass(control) == L"Button";
}

bool needsKey(HWND button) {
    const LONG_PTR style = GetWindowLongPtrW(button, GWL_STYLE);
    const int id = GetDlgCtrlID(button);
    return (style & WS_TABSTOP) && id != IDOK && id != IDCANCEL;
}

bool hasPrefix(HWND label) {
    return host::windowClass(label) == L"Static" && !(GetWindowLongPtrW(label, GWL_STYLE) & SS_NOPREFIX);
}

} // namespace

std::vector<std::string> wrongAccessKeys(HWND window) {
    Notes notes;
    std::wstring label;
    for (HWND control = GetWindow(window, GW_CHILD); control; control = GetWindow(control, GW_HWNDNEXT)) {
        const LONG_PTR style = GetWindowLongPtrW(control, GWL_STYLE);
        if (!(style & WS_VISIBLE))
            continue;
        if (isButton(control)) {
            notes.add(host::windowText(control), needsKey(control));
        } else if (hasPrefix(control)) {
            label = host::windowText(control);
            notes.add(label, false);
            continue;
        } else if ((style & WS_TABSTOP) && !accessKeyOf(label)) {
            notes.wrong.push_back(std::to_string(GetDlgCtrlID(control)) + " after \"" + host::utf8(label) +
                                  "\" has no access key");
        }
        label.clear();
    }
    return notes.wrong;
}

std::vector<std::string> wrongAccessKeys(HMENU menu) {
    Notes notes;
    std::vector<std::string> below;
    for (int i = 0; i < GetMenuItemCount(menu); ++i) {
        wchar_t text[256] = {};
        GetMenuStringW(menu, static_cast<UINT>(i), text, 256, MF_BYPOSITION);
        if (const std::wstring item = text; !item.empty())
            notes.add(item.substr(0, item.find(L'\t')), true);
        if (HMENU inner = GetSubMenu(menu, i))
            for (std::string& wrong : wrongAccessKeys(inner))
                below.push_back(std::move(wrong));
    }
    notes.wrong.insert(notes.wrong.end(), below.begin(), below.end());
    return notes.wrong;
}

} // namespace test
