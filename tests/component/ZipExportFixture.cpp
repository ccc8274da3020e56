// A ZIP export under test: engine, pages, target.
#include "ZipExportFixture.h"

#include "bxbase/ReferencedImpl.h"
#include "support/DialogInspection.h"

ZipExportFixture::ZipExportFixture() : engine(new bxbase::ReferencedImpl<OpenZipEngine>) {
    engine->targetPath = target.utf8() + "\\scans.zip";
    engine->prefix = "Scan_";
}

test::TestPage& ZipExportFixture::addPage(const std::wstring& name, const std::string& bytes) {
    test::TestPage& page = pages.emplace_back(pageFolder.write(name, bytes));
    engine->addData(&page);
    return page;
}

void ZipExportFixture::addPages(int count) {
    for (int i = 1; i <= count; ++i)
        addPage(std::to_wstring(i) + L".tif", std::to_string(i));
}

test::TestPage& ZipExportFixture::addPageWithoutFile(std::optional<std::string> bytes) {
    test::TestPage& page = pages.emplace_back("page.tif", std::move(bytes), temporaryCopy);
    engine->addData(&page);
    return page;
}

int ZipExportFixture::run() {
    const test::NoMessageBoxes expected;
    return engine->exportData(nullptr, errors);
}

std::vector<std::string> ZipExportFixture::entryNames() const {
    std::vector<std::string> names;
    for (const auto& entry : entries())
        names.push_back(entry.first);
    return names;
}

void ZipExportFixture::expectReport(int line, const char* message) const {
    ASSERT_EQ(errors.getReports().size(), 1U);
    EXPECT_EQ(errors.getReports()[0].sourceFile, "Components/BasicExport/ExportToZip");
    EXPECT_EQ(errors.getReports()[0].line, line);
    EXPECT_EQ(errors.getReports()[0].message, message);
}
