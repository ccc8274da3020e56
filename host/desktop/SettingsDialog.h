// The dialog of the settings.
#pragma once

#include "host/desktop/DesktopSettings.h"
#include "host/desktop/MailClients.h"

#include <afxwin.h>

#include <functional>
#include <optional>
#include <string>

namespace host {

/// What the person sets, and what the dialog does beside that.
struct SettingsTargets {
    DesktopSettings settings;
    MailClients mailClients;
    std::wstring programFolder;
    /// What Windows speaks with the user.
    LANGID uiLanguage;
    /// Empty when there is no log.
    std::wstring logFile;
    /// Called when all texts are in another language from now on.
    std::function<void()> whenLanguageChanges;
    /// Shows a file in its folder.
    std::function<void(const std::wstring& path)> showInFolder;
};

/// Changes the settings with OK or Apply, each only if the person has changed it. What cannot be changed is told, and
/// the dialog stays open then.
class SettingsDialog : public CDialog {
public:
    SettingsDialog(CWnd* owner, SettingsTargets targets);

protected:
    BOOL OnInitDialog() override;
    void OnOK() override;
    afx_msg void OnEntryChanged();
    afx_msg void OnClientChanged();
    afx_msg void OnAskChanged();
    afx_msg void OnShowLog();
    afx_msg void OnApply();

    DECLARE_MESSAGE_MAP()

private:
    struct Limit {
        std::optional<int> kb;
        bool isValid;
    };

    void setTexts();
    void fillLanguages();
    void fillClients(const std::wstring& selected);
    void showClientNote();
    std::wstring selectedLanguage() const;
    std::wstring selectedClient() const;
    Limit enteredLimit() const;
    bool isChanged() const;
    bool apply();
    bool applyClient();
    bool applyLanguage();
    void tell(const std::wstring& text, UINT icon = MB_ICONWARNING);

    SettingsTargets targets;
    std::vector<std::wstring> languages; ///< the codes in the list's order
    std::vector<std::wstring> clients;   ///< the keys in the list's order
    std::wstring language;               ///< as it is set
    std::wstring client;                 ///< as it is set
};

} // namespace host
