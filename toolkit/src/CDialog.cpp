// Modal dialogs.
#include "Owner.h"
#include "SystemCall.h"
#include "afxwin.h"

#include <cstring>
#include <optional>
#include <vector>

namespace {

// The head of an extended template, which the system's headers do not declare.
#pragma pack(push, 2)
struct ExtendedTemplateHead {
    WORD version;
    WORD signature;
    DWORD helpId;
    DWORD extendedStyle;
    DWORD style;
    WORD itemCount;
    short x;
    short y;
};
#pragma pack(pop)

// A copy of a dialog template that can be changed.
class DialogTemplate {
public:
    static std::optional<DialogTemplate> load(HINSTANCE module, LPCTSTR name) {
        const HRSRC resource = FindResource(module, name, RT_DIALOG);
        const void* bytes = resource ? LockResource(LoadResource(module, resource)) : nullptr;
        if (!bytes)
            return std::nullopt;
        return DialogTemplate(bytes, SizeofResource(module, resource));
    }

    const DLGTEMPLATE* get() const { return reinterpret_cast<const DLGTEMPLATE*>(storage.data()); }

    bool hasPosition() const {
        const auto head = read<ExtendedTemplateHead>();
        if (isExtended())
            return head.x || head.y || (head.style & positionStyles);
        const auto plain = read<DLGTEMPLATE>();
        return plain.x || plain.y || (plain.style & positionStyles);
    }

    template <class Change> void changeStyles(Change change) {
        if (isExtended()) {
            auto head = read<ExtendedTemplateHead>();
            DWORD style = head.style;
            DWORD extendedStyle = head.extendedStyle;
            change(style, extendedStyle);
            head.style = style;
            head.extendedStyle = extendedStyle;
            std::memcpy(storage.data(), &head, sizeof(head));
        } else {
            auto head = read<DLGTEMPLATE>();
            DWORD style = head.style;
            DWORD extendedStyle = head.dwExtendedStyle;
            change(style, extendedStyle);
            head.style = style;
            head.dwExtendedStyle = extendedStyle;
            std::memcpy(storage.data(), &head, sizeof(head));
        }
    }

private:
    static constexpr DWORD positionStyles = DS_CENTER | DS_CENTERMOUSE | DS_ABSALIGN;

    DialogTemplate(const void* bytes, DWORD size) : storage(size / sizeof(DWORD) + 1) {
        std::memcpy(storage.data(), bytes, size);
    }

    template <class Head> Head read() const {
        Head head;
        std::memcpy(&head, storage.data(), sizeof(head));
        return head;
    }

    bool isExtended() const {
        const auto head = read<ExtendedTemplateHead>();
        return head.version == 1 && head.signature == 0xFFFF;
    }

    // The system wants a template to lie on a four-byte boundary.
    std::vector<DWORD> storage;
};

} // namespace

IMPLEMENT_DYNAMIC(CDialog, CWnd)

BEGIN_MESSAGE_MAP(CDialog, CWnd)
    ON_COMMAND(IDOK, &CDialog::OnOK)
    ON_COMMAND(IDCANCEL, &CDialog::OnCancel)
END_MESSAGE_MAP()

CDialog::CDialog(LPCTSTR lpszTemplateName, CWnd* pParentWnd)
    : m_pParentWnd(pParentWnd), templateName(lpszTemplateName) {}

INT_PTR CDialog::DoModal() {
    const HINSTANCE module = AfxGetResourceHandle();
    auto dialogTemplate = DialogTemplate::load(module, templateName);
    if (!dialogTemplate)
        return -1;
    centre = !dialogTemplate->hasPosition();
    dialogTemplate->changeStyles(
        [this](DWORD& style, DWORD& extendedStyle) { AdjustTemplateStyle(style, extendedStyle); });
    return callSystem([&] {
        return DialogBoxIndirectParam(module, dialogTemplate->get(), ownerOf(m_pParentWnd),
                                      &CDialog::dialogProcedure, reinterpret_cast<LPARAM>(this));
    });
}

// Takes the window over as soon as the system tells which object it belongs to; from then on the system comes here
// only for messages that no map handles.
INT_PTR CALLBACK CDialog::dialogProcedure(HWND window, UINT message, WPARAM /*wParam*/, LPARAM lParam) {
    if (message != WM_INITDIALOG)
        return FALSE;
    auto* dialog = reinterpret_cast<CDialog*>(lParam);
    threadState().innermostCall->dialog = window;
    return runCallback([&] {
        AFX_MANAGE_STATE(dialog->m_pModuleState)
        dialog->SubclassWindow(window);
        CRect before;
        dialog->GetWindowRect(before);
        const BOOL focusFirst = dialog->OnInitDialog();
        CRect after;
        dialog->GetWindowRect(after);
        if (dialog->centre && before == after && !dialog->IsWindowVisible())
            dialog->CenterWindow();
        return focusFirst;
    });
}

BOOL CDialog::OnInitDialog() {
    return UpdateData(FALSE);
}

void CDialog::OnOK() {
    if (UpdateData(TRUE))
        EndDialog(IDOK);
}

void CDialog::OnCancel() {
    EndDialog(IDCANCEL);
}
