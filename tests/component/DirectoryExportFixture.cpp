// A directory export under test: engine, pages, target, host.
#include "DirectoryExportFixture.h"

#include "SorvaneBase/bxutils/ResourceManager.h"
#include "bxbase/ReferencedImpl.h"
#include "host/DialogPilot.h"
#include "support/DialogInspection.h"

DirectoryExportFixture::DirectoryExportFixture() : engine(new bxbase::ReferencedImpl<OpenEngine>) {
    const std::wstring texts =
        scratch.write(L"texts.ini", "[Scan]\nScanExport.Error.CannotCopy=Nelze zkopírovat soubor:\n"
                                    "[Common]\nError=Chyba\nQuestion.OverwriteFile=Přepsat „%ls“?\n");
    EXPECT_TRUE(bxutils::getResourceManager()->loadLanguageFile(texts));
    owner.CreateEx(0, L"Static", L"owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 100, 100, nullptr,
                   nullptr);
    engine->setParentWindow(&owner);
    engine->targetPath = target.utf8();
    engine->prefix = "Scan";
}

DirectoryExportFixture::~DirectoryExportFixture() {
    if (locked != INVALID_HANDLE_VALUE)
        CloseHandle(locked);
}

test::TestPage& DirectoryExportFixture::addPage(const std::wstring& name, const std::string& bytes) {
    test::TestPage& page = pages.emplace_back(pageFolder.write(name, bytes));
    engine->addData(&page);
    return page;
}

void DirectoryExportFixture::addPages(int count) {
    for (int i = 1; i <= count; ++i)
        addPage(std::to_wstring(i) + L".tif", std::to_string(i));
}

test::TestPage& DirectoryExportFixture::addPageWithoutFile(std::optional<std::string> bytes) {
    test::TestPage& page = pages.emplace_back("page.tif", std::move(bytes), temporaryCopy);
    engine->addData(&page);
    return page;
}

int DirectoryExportFixture::run() {
    const test::NoMessageBoxes expected;
    return engine->exportData(nullptr, errors);
}

int DirectoryExportFixture::runWithErrorBox() {
    host::DialogPilot pilot(std::chrono::seconds(10));
    pilot.then("error box", host::anyMessageBox(), [this](HWND window) {
        box.caption = host::windowText(window);
        box.text = host::messageBoxText(window);
        box.owner = GetWindow(window, GW_OWNER);
        box.icon = host::messageBoxIcon(window);
        for (int id : {IDOK, IDCANCEL, IDABORT, IDRETRY, IDIGNORE, IDYES, IDNO}) {
            if (GetDlgItem(window, id))
                box.buttons.push_back(id);
        }
        return host::click(IDOK)(window);
    });
    const int result = engine->exportData(nullptr, errors);
    EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
    return result;
}

void DirectoryExportFixture::expectReport(int line, const char* message) const {
    ASSERT_EQ(errors.getReports().size(), 1U);
    EXPECT_EQ(errors.getReports()[0].sourceFile, "Components/BasicExport/ExportToDirectory");
    EXPECT_EQ(errors.getReports()[0].line, line);
    EXPECT_EQ(errors.getReports()[0].message, message);
}

void DirectoryExportFixture::lock(const std::wstring& path) {
    locked = CreateFileW(path.c_str(), GENERIC_READ | GENERIC_WRITE, 0, nullptr, OPEN_ALWAYS, 0, nullptr);
    ASSERT_NE(locked, INVALID_HANDLE_VALUE);
}
