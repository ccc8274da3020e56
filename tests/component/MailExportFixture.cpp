// A mail export under test: engine, pages, mail client, host.
#include "MailExportFixture.h"

#include "SorvaneBase/bxdisk/Disk.h"
#include "SorvaneBase/bxutils/ResourceManager.h"
#include "bxbase/ReferencedImpl.h"
#include "host/DialogPilot.h"
#include "support/DialogInspection.h"

#include <chrono>

MailExportFixture::MailExportFixture() : engine(new bxbase::ReferencedImpl<OpenMailEngine>) {
    const std::wstring texts =
        scratch.write(L"texts.ini", "[Scan]\nBasicExport.Page=Page\n"
                                    "[Common]\nExportToMail.FileSizeLimit=Opravdu 100 %s?\n"
                                    "ExportToMail.FileSizeLimitTitle=Velké přílohy\n");
    EXPECT_TRUE(bxutils::getResourceManager()->loadLanguageFile(texts));
    bxdisk::setTempRoot(tempRoot.path());
    host.settingsStore = &settings;
    owner.CreateEx(0, L"Static", L"owner", WS_OVERLAPPEDWINDOW | WS_VISIBLE, 0, 0, 100, 100, nullptr,
                   nullptr);
    engine->setParentWindow(&owner);
}

MailExportFixture::~MailExportFixture() {
    bxdisk::setTempRoot(L"");
    // The library goes with every export, whatever became of it.
    EXPECT_EQ(GetModuleHandleW(L"mapi32.dll"), nullptr);
}

test::TestPage& MailExportFixture::addPage(const std::wstring& name, const std::string& bytes) {
    test::TestPage& page = pages.emplace_back(pageFolder.write(name, bytes));
    engine->addData(&page);
    return page;
}

void MailExportFixture::addPages(int count) {
    for (int i = 1; i <= count; ++i)
        addPage(std::to_wstring(i) + L".tif", std::to_string(i));
}

test::TestPage& MailExportFixture::addPageWithoutFile(std::optional<std::string> bytes) {
    test::TestPage& page = pages.emplace_back("page.tif", std::move(bytes), temporaryCopy);
    engine->addData(&page);
    return page;
}

int MailExportFixture::run() {
    const test::NoMessageBoxes noBoxes;
    return engine->exportData(nullptr, errors);
}

int MailExportFixture::runAndPress(int button) {
    host::DialogPilot pilot(std::chrono::seconds(30));
    pilot.then("the box", host::anyMessageBox(), [this, button](HWND window) {
        box = {host::windowText(window),
               host::messageBoxText(window),
               GetWindow(window, GW_OWNER),
               host::messageBoxIcon(window),
               {}};
        for (int id : {IDOK, IDCANCEL, IDABORT, IDRETRY, IDIGNORE, IDYES, IDNO}) {
            const HWND control = GetDlgItem(window, id);
            if (!control)
                continue;
            box.buttons.push_back(id);
            if ((GetWindowLongPtrW(control, GWL_STYLE) & BS_TYPEMASK) == BS_DEFPUSHBUTTON)
                box.defaultButton = id;
        }
        return host::click(button)(window);
    });
    const int result = engine->exportData(nullptr, errors);
    EXPECT_TRUE(pilot.succeeded()) << pilot.failure();
    return result;
}

void MailExportFixture::expectReport(int line, const char* message) const {
    ASSERT_EQ(errors.getReports().size(), 1U);
    EXPECT_EQ(errors.getReports()[0].sourceFile, "Components/BasicExport/ExportToMail");
    EXPECT_EQ(errors.getReports()[0].line, line);
    EXPECT_EQ(errors.getReports()[0].message, message);
}

void MailExportFixture::expectWrittenAndRemoved(const test::TestPage& page) const {
    EXPECT_EQ(page.copies, 1);
    EXPECT_EQ(GetFileAttributesW(temporaryCopy.c_str()), INVALID_FILE_ATTRIBUTES);
}

std::wstring MailExportFixture::directory() const {
    const std::vector<std::wstring> made = tempRoot.list();
    EXPECT_EQ(made.size(), 1U);
    return made.empty() ? L"" : tempRoot / made.front();
}

std::vector<std::wstring> MailExportFixture::copies() const {
    return test::namesIn(directory());
}

std::vector<std::string> MailExportFixture::attachmentNames() const {
    EXPECT_EQ(client.calls.size(), 1U);
    std::vector<std::string> names;
    for (const test::MailCall& call : client.calls)
        for (const test::MailCall::File& file : call.files)
            names.push_back(file.name.value_or("null"));
    return names;
}
