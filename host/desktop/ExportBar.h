// The toolbar with the export targets.
#pragma once

#include "host/EnginesManager.h"

#include <afxwin.h>

#include <commctrl.h>

#include <cstddef>
#include <memory>

namespace host {

/// A toolbar with a button for each factory, in their order, with icon and name. A button sends the main window the
/// command commandExport and its number. The arrow keys go from button to button; Enter and Space press one.
class ExportBar : public CWnd {
public:
    BOOL create(CWnd& parent, UINT id);

    /// Replaces the buttons, also after a change of the resolution.
    void setFactories(const EnginesManager::Factories& factories);
    void enable(std::size_t index, bool isEnabled);

    /// Moves to the top of the parent, as wide as that, and gives the height.
    int fitHeight(int width);

private:
    struct ImagesRelease {
        void operator()(HIMAGELIST images) const { ImageList_Destroy(images); }
    };
    using Images = std::unique_ptr<_IMAGELIST, ImagesRelease>;

    LRESULT OnKeyDown(WPARAM wParam, LPARAM lParam);
    LRESULT OnSetFocus(WPARAM wParam, LPARAM lParam);
    LRESULT OnKillFocus(WPARAM wParam, LPARAM lParam);
    DECLARE_MESSAGE_MAP()

    int count() const { return static_cast<int>(SendMessage(TB_BUTTONCOUNT)); }
    /// Makes the nearest enabled button in the direction, which is 1 or -1, the hot one.
    void goTo(int index, int direction);
    void press(int index);

    Images images;
};

} // namespace host
