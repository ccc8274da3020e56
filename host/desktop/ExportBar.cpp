// The toolbar with the export targets.
#include "host/desktop/ExportBar.h"

#include "host/Text.h"
#include "host/desktop/Commands.h"
#include "host/desktop/FactoryIcon.h"

#include <algorithm>
#include <climits>
#include <utility>

namespace host {
namespace {

constexpr int iconSize = 32;
constexpr int spaceAroundButtons = 4;

} // namespace

BEGIN_MESSAGE_MAP(ExportBar, CWnd)
    ON_MESSAGE(WM_KEYDOWN, &ExportBar::OnKeyDown)
    ON_MESSAGE(WM_SETFOCUS, &ExportBar::OnSetFocus)
    ON_MESSAGE(WM_KILLFOCUS, &ExportBar::OnKillFocus)
END_MESSAGE_MAP()

BOOL ExportBar::create(CWnd& parent, UINT id) {
    constexpr DWORD style = WS_CHILD | WS_VISIBLE | WS_TABSTOP | WS_CLIPSIBLINGS | TBSTYLE_FLAT |
                            TBSTYLE_LIST | TBSTYLE_TOOLTIPS | TBSTYLE_WRAPABLE | CCS_NOPARENTALIGN |
                            CCS_NORESIZE;
    if (!Create(TOOLBARCLASSNAMEW, nullptr, style, CRect(), &parent, id))
        return FALSE;
    SendMessage(TB_BUTTONSTRUCTSIZE, sizeof(TBBUTTON));
    SendMessage(TB_SETEXTENDEDSTYLE, 0, TBSTYLE_EX_DOUBLEBUFFER);
    // Or a tip with a line break would be one line.
    ::SendMessageW(reinterpret_cast<HWND>(SendMessage(TB_GETTOOLTIPS)), TTM_SETMAXTIPWIDTH, 0, SHRT_MAX);
    return TRUE;
}

void ExportBar::setFactories(const EnginesManager::Factories& factories) {
    while (count())
        SendMessage(TB_DELETEBUTTON);
    const int size = MulDiv(iconSize, static_cast<int>(GetDpiForWindow(m_hWnd)), USER_DEFAULT_SCREEN_DPI);
    Images replaced(
        std::exchange(images, Images(ImageList_Create(size, size, ILC_COLOR32 | ILC_MASK, 0, 4))));
    SendMessage(TB_SETIMAGELIST, 0, reinterpret_cast<LPARAM>(images.get()));
    for (std::size_t i = 0; i < std::min<std::size_t>(factories.size(), mostExports); ++i) {
        TBBUTTON button{};
        button.iBitmap = I_IMAGENONE;
        if (const HICON icon = factoryIcon(*factories[i], size)) {
            button.iBitmap = ImageList_ReplaceIcon(images.get(), -1, icon);
            DestroyIcon(icon);
        }
        const std::wstring name = wide(factories[i]->getName());
        button.idCommand = static_cast<int>(commandExport + i);
        button.fsState = TBSTATE_ENABLED;
        button.fsStyle = BTNS_AUTOSIZE | BTNS_NOPREFIX;
        button.iString = reinterpret_cast<INT_PTR>(name.c_str());
        SendMessage(TB_ADDBUTTONS, 1, reinterpret_cast<LPARAM>(&button));
    }
}

void ExportBar::enable(std::size_t index, bool isEnabled) {
    SendMessage(TB_ENABLEBUTTON, commandExport + index, MAKELPARAM(isEnabled, 0));
}

int ExportBar::fitHeight(int width) {
    // Buttons go to another line where there is no room.
    SetWindowPos(nullptr, 0, 0, width, 0, SWP_NOZORDER | SWP_NOACTIVATE);
    SendMessage(TB_AUTOSIZE);
    CRect last;
    if (count())
        SendMessage(TB_GETITEMRECT, static_cast<WPARAM>(count() - 1), reinterpret_cast<LPARAM>(&last));
    const int height = last.bottom + spaceAroundButtons;
    SetWindowPos(nullptr, 0, 0, width, height, SWP_NOZORDER | SWP_NOACTIVATE);
    return height;
}

// The control itself goes from button to button only on some systems.
LRESULT ExportBar::OnKeyDown(WPARAM wParam, LPARAM) {
    const int hot = static_cast<int>(SendMessage(TB_GETHOTITEM));
    switch (wParam) {
    case VK_RIGHT:
    case VK_DOWN:
        goTo(hot + 1, 1);
        return 0;
    case VK_LEFT:
    case VK_UP:
        goTo(hot - 1, -1);
        return 0;
    case VK_HOME:
        goTo(0, 1);
        return 0;
    case VK_END:
        goTo(count() - 1, -1);
        return 0;
    case VK_RETURN:
    case VK_SPACE:
        press(hot);
        return 0;
    default:
        return Default();
    }
}

LRESULT ExportBar::OnSetFocus(WPARAM, LPARAM) {
    const LRESULT result = Default();
    goTo(0, 1);
    return result;
}

LRESULT ExportBar::OnKillFocus(WPARAM, LPARAM) {
    SendMessage(TB_SETHOTITEM, static_cast<WPARAM>(-1));
    return Default();
}

void ExportBar::goTo(int index, int direction) {
    for (; index >= 0 && index < count(); index += direction) {
        if (SendMessage(TB_ISBUTTONENABLED, commandExport + static_cast<WPARAM>(index))) {
            SendMessage(TB_SETHOTITEM, static_cast<WPARAM>(index));
            return;
        }
    }
}

void ExportBar::press(int index) {
    if (index >= 0)
        GetParent()->PostMessage(WM_COMMAND, MAKEWPARAM(commandExport + static_cast<UINT>(index), BN_CLICKED),
                                 reinterpret_cast<LPARAM>(m_hWnd));
}

} // namespace host
