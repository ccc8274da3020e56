// The dialog of the settings.
#include "host/desktop/SettingsDialog.h"

#include "host/HostError.h"
#include "host/LanguageFile.h"
#include "host/Text.h"
#include "host/desktop/SettingsControls.h"
#include "host/desktop/Texts.h"

#include <algorithm>
#include <utility>

namespace host {
namespace {

constexpr char section[] = "ScanHost.Settings";

/// What is proposed to who wants to be asked; many servers take no more.
constexpr int usualLimit = 10 * 1024;

/// Fills a list box whose entries stand for keys.
class EntryList {
public:
    /// @param keys  gets the key of each entry, in the list's order
    EntryList(CWnd& list, std::vector<std::wstring>& keys) : list(list), keys(keys) {
        list.SendMessage(CB_RESETCONTENT);
        keys.clear();
    }

    void add(const std::wstring& key, const std::wstring& text) {
        list.SendMessage(CB_ADDSTRING, 0, reinterpret_cast<LPARAM>(text.c_str()));
        keys.push_back(key);
    }

    /// The first entry where there is none of that key.
    void select(const std::wstring& key) {
        const auto found = std::ranges::find(keys, key);
        const auto index = found == keys.end() ? 0 : found - keys.begin();
        list.SendMessage(CB_SETCURSEL, static_cast<WPARAM>(index));
    }

private:
    CWnd& list;
    std::vector<std::wstring>& keys;
};

std::size_t selectedEntry(const CWnd& list) {
    return static_cast<std::size_t>(list.SendMessage(CB_GETCURSEL));
}

} // namespace

SettingsDialog::SettingsDialog(CWnd* owner, SettingsTargets targets)
    : CDialog(IDD_SETTINGS, owner), targets(std::move(targets)) {}

BEGIN_MESSAGE_MAP(SettingsDialog, CDialog)
    ON_CONTROL(CBN_SELCHANGE, IDC_SETTINGS_LANGUAGE, &SettingsDialog::OnEntryChanged)
    ON_CONTROL(CBN_SELCHANGE, IDC_SETTINGS_CLIENT, &SettingsDialog::OnClientChanged)
    ON_BN_CLICKED(IDC_SETTINGS_ASK, &SettingsDialog::OnAskChanged)
    ON_CONTROL(EN_CHANGE, IDC_SETTINGS_LIMIT, &SettingsDialog::OnEntryChanged)
    ON_BN_CLICKED(IDC_SETTINGS_LOG_SHOW, &SettingsDialog::OnShowLog)
    ON_BN_CLICKED(IDC_SETTINGS_APPLY, &SettingsDialog::OnApply)
END_MESSAGE_MAP()

BOOL SettingsDialog::OnInitDialog() {
    if (!CDialog::OnInitDialog())
        return FALSE;
    language = targets.settings.language();
    if (!isLanguageOffered(targets.programFolder, language))
        language.clear();
    client = targets.mailClients.current();
    setTexts();
    fillLanguages();
    fillClients(client);

    const std::optional<int> limit = targets.settings.mailLimit();
    CheckDlgButton(m_hWnd, IDC_SETTINGS_ASK, limit ? BST_CHECKED : BST_UNCHECKED);
    SendDlgItemMessageW(m_hWnd, IDC_SETTINGS_LIMIT, EM_SETLIMITTEXT,
                        std::to_string(DesktopSettings::largestMailLimit).size(), 0);
    if (limit)
        SetDlgItemTextW(m_hWnd, IDC_SETTINGS_LIMIT, std::to_wstring(*limit).c_str());
    GetDlgItem(IDC_SETTINGS_LIMIT)->EnableWindow(limit.has_value());

    SetDlgItemTextW(m_hWnd, IDC_SETTINGS_LOG_FILE, targets.logFile.c_str());
    GetDlgItem(IDC_SETTINGS_LOG_SHOW)->EnableWindow(!targets.logFile.empty());
    OnEntryChanged();
    return TRUE;
}

void SettingsDialog::setTexts() {
    SetWindowText(localText(section, "Title").c_str());
    const auto set = [this](int control, const std::wstring& text) {
        SetDlgItemTextW(m_hWnd, control, text.c_str());
    };
    set(IDC_SETTINGS_LANGUAGE_LABEL, localText(section, "Language"));
    set(IDC_SETTINGS_MAIL, localText(section, "Mail"));
    set(IDC_SETTINGS_CLIENT_LABEL, localText(section, "Mail.Client"));
    set(IDC_SETTINGS_ASK, localText(section, "Mail.Ask"));
    set(IDC_SETTINGS_LIMIT_LABEL, localText(section, "Mail.Limit"));
    set(IDC_SETTINGS_LOG, localText(section, "Log"));
    set(IDC_SETTINGS_LOG_LABEL, localText(section, "Log.File"));
    set(IDC_SETTINGS_LOG_SHOW, localText(section, "Log.Show"));
    set(IDOK, localText("Common", "Button.OK"));
    set(IDCANCEL, localText("Common", "Button.Cancel"));
    set(IDC_SETTINGS_APPLY, localText(section, "Apply"));
}

void SettingsDialog::fillLanguages() {
    const std::vector<Language> offered = offeredLanguages(targets.programFolder);
    const std::wstring ofWindows = preferredLanguage(targets.programFolder, targets.uiLanguage);
    const auto named = std::ranges::find(offered, ofWindows, &Language::code);
    const std::wstring name = named == offered.end() ? ofWindows : named->name;
    EntryList list(*GetDlgItem(IDC_SETTINGS_LANGUAGE), languages);
    list.add(L"", localText(section, "Language.Windows", {{L"name", name}}));
    for (const Language& entry : offered)
        list.add(entry.code, entry.name);
    list.select(language);
}

void SettingsDialog::fillClients(const std::wstring& selected) {
    const std::vector<MailClients::Client> all = targets.mailClients.all();
    // Without another to choose, it is the only way back from DraftMail.
    const bool hasOther = std::ranges::any_of(
        all, [this](const auto& entry) { return !targets.mailClients.isDraftMail(entry.key); });
    EntryList list(*GetDlgItem(IDC_SETTINGS_CLIENT), clients);
    if (client.empty() || !hasOther)
        list.add(L"", localText(section, "Mail.None"));
    for (const MailClients::Client& entry : all)
        list.add(entry.key, entry.name);
    list.select(selected);
    showClientNote();
}

void SettingsDialog::showClientNote() {
    const char* key = targets.mailClients.isDraftMail(selectedClient()) ? "Mail.DraftMail" : "Mail.Scope";
    SetDlgItemTextW(m_hWnd, IDC_SETTINGS_CLIENT_NOTE, localText(section, key).c_str());
}

std::wstring SettingsDialog::selectedLanguage() const {
    return languages[selectedEntry(*GetDlgItem(IDC_SETTINGS_LANGUAGE))];
}

std::wstring SettingsDialog::selectedClient() const {
    return clients[selectedEntry(*GetDlgItem(IDC_SETTINGS_CLIENT))];
}

SettingsDialog::Limit SettingsDialog::enteredLimit() const {
    if (IsDlgButtonChecked(m_hWnd, IDC_SETTINGS_ASK) != BST_CHECKED)
        return {std::nullopt, true};
    CString text;
    GetDlgItem(IDC_SETTINGS_LIMIT)->GetWindowText(text);
    bool isNumber = false;
    const int kb = Sorvane::string2Int(utf8(text.GetString()), isNumber);
    return {kb, kb > 0 && kb <= DesktopSettings::largestMailLimit};
}

bool SettingsDialog::isChanged() const {
    return selectedLanguage() != language || selectedClient() != client ||
           enteredLimit().kb != targets.settings.mailLimit();
}

void SettingsDialog::OnEntryChanged() {
    GetDlgItem(IDC_SETTINGS_APPLY)->EnableWindow(isChanged());
}

void SettingsDialog::OnClientChanged() {
    showClientNote();
    OnEntryChanged();
}

void SettingsDialog::OnAskChanged() {
    CWnd* const edit = GetDlgItem(IDC_SETTINGS_LIMIT);
    const bool isAsked = IsDlgButtonChecked(m_hWnd, IDC_SETTINGS_ASK) == BST_CHECKED;
    edit->EnableWindow(isAsked);
    if (isAsked && !edit->GetWindowTextLength())
        edit->SetWindowText(std::to_wstring(usualLimit).c_str());
    OnEntryChanged();
}

void SettingsDialog::OnShowLog() {
    targets.showInFolder(targets.logFile);
}

void SettingsDialog::OnOK() {
    if (apply())
        CDialog::OnOK();
}

void SettingsDialog::OnApply() {
    apply();
    // The button that has the focus must not be disabled: no key would reach the dialog.
    if (!isChanged() && CWnd::GetFocus() == GetDlgItem(IDC_SETTINGS_APPLY))
        GetDlgItem(IDOK)->SetFocus();
    OnEntryChanged();
}

bool SettingsDialog::apply() {
    const Limit limit = enteredLimit();
    if (!limit.isValid) {
        tell(localText(section, "Error.Limit",
                       {{L"largest", std::to_wstring(DesktopSettings::largestMailLimit)}}));
        GetDlgItem(IDC_SETTINGS_LIMIT)->SetFocus();
        return false;
    }
    if (!targets.settings.setMailLimit(limit.kb)) {
        tell(localText(section, "Error.Store"));
        return false;
    }
    return applyClient() && applyLanguage();
}

bool SettingsDialog::applyClient() {
    if (selectedClient() == client)
        return true;
    const LSTATUS status = targets.mailClients.choose(selectedClient());
    client = targets.mailClients.current();
    if (status != ERROR_SUCCESS) {
        tell(status == ERROR_ACCESS_DENIED
                 ? localText(section, "Error.ClientDenied")
                 : localText(section, "Error.Client", {{L"code", std::to_wstring(status)}}));
        return false;
    }
    fillClients(client);
    // The system's mail library keeps the client that it was loaded with, and may stay loaded after an export.
    if (GetModuleHandleW(L"MAPI32.DLL"))
        tell(localText(section, "Mail.NextStart"), MB_ICONINFORMATION);
    return true;
}

bool SettingsDialog::applyLanguage() {
    const std::wstring selected = selectedLanguage();
    if (selected == language)
        return true;
    try {
        useLanguage(targets.programFolder, selected.empty()
                                               ? preferredLanguage(targets.programFolder, targets.uiLanguage)
                                               : selected);
    } catch (const HostError&) {
        tell(localText(section, "Error.Language"));
        return false;
    }
    language = selected;
    setTexts();
    fillLanguages();
    fillClients(selectedClient());
    targets.whenLanguageChanges();
    if (targets.settings.setLanguage(language))
        return true;
    tell(localText(section, "Error.Store"));
    return false;
}

void SettingsDialog::tell(const std::wstring& text, UINT icon) {
    MessageBox(text.c_str(), localText(section, "Title").c_str(), MB_OK | icon);
}

} // namespace host
