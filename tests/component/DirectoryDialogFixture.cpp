// A directory dialog on the screen, operated as a user would.
#include "DirectoryDialogFixture.h"

#include "resource.h"
#include "support/HostTexts.h"

using host::click;
using host::dialogWith;

void DirectoryDialogFixture::SetUp() {
    key = L"SOFTWARE\\BasicExportTests\\" + std::to_wstring(GetCurrentProcessId()) +
          L"\\2.0\\Components\\BasicExport";
    test::loadLanguage(L"en.ini");
    addPage();
}

void DirectoryDialogFixture::addPage(std::optional<std::wstring> folderName) {
    test::TestPage& page = pageObjects.emplace_back(folder / L"page.tif");
    if (folderName)
        page.folder = &folders.emplace_back(std::move(folderName));
    pages.emplace_back(&page);
}

INT_PTR DirectoryDialogFixture::show(std::vector<Action> actions) {
    host::DialogPilot pilot(patience);
    int number = 0;
    for (Action& action : actions)
        pilot.then("action " + std::to_string(number++), dialogWith(IDC_EXPORT_DIRECTORY_PATH),
                   std::move(action));
    dialog = std::make_unique<ExportDirectoryDialog>(nullptr, &pages);
    const INT_PTR result = dialog->DoModal();
    EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
    return result;
}

void DirectoryDialogFixture::inspect(std::vector<Action> actions) {
    actions.push_back(click(IDCANCEL));
    EXPECT_EQ(show(std::move(actions)), IDCANCEL);
}

void DirectoryDialogFixture::confirm(std::vector<Action> actions) {
    actions.push_back(click(IDOK));
    EXPECT_EQ(show(std::move(actions)), IDOK);
}

void DirectoryDialogFixture::store(const wchar_t* name, DWORD type, const std::string& bytes) {
    test::writeValue(key, name, {type, bytes});
}

std::optional<test::RawValue> DirectoryDialogFixture::stored(const wchar_t* name) {
    return test::readValue(key, name);
}

std::wstring DirectoryDialogFixture::storedHistory() {
    const test::RawValue value = stored(L"ExportPath").value_or(test::RawValue());
    std::wstring text(value.bytes.size() / sizeof(wchar_t), L'\0');
    value.bytes.copy(reinterpret_cast<char*>(text.data()), text.size() * sizeof(wchar_t));
    EXPECT_TRUE(value.type == REG_SZ && !text.empty() && text.back() == L'\0');
    return text.substr(0, text.find(L'\0'));
}
