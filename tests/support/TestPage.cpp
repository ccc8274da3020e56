// Pages and folders that a test owns.
#include "support/TestPage.h"

#include "SorvaneBase/SorvaneException.h"
#include "host/Text.h"

#include <gtest/gtest.h>

#include <windows.h>

#include <utility>

namespace test {

TestPage::TestPage(const std::wstring& path)
    : fileName(host::utf8(path.substr(path.find_last_of(L"\\/") + 1))), file(path) {}

TestPage::TestPage(std::string fileName, std::optional<std::string> data, std::wstring copyPath)
    : fileName(std::move(fileName)), data(std::move(data)), copyPath(std::move(copyPath)) {}

TestPage::~TestPage() {
    EXPECT_EQ(references, 0) << "somebody still holds the page " << fileName;
}

void TestPage::getFileName(Sorvane::u8string& name) {
    name = fileName;
}

bool TestPage::getFilePath(std::wstring& path) {
    if (!file)
        return false;
    path = *file;
    return true;
}

bool TestPage::createDataCopy(std::wstring& path, SorvaneException& error) {
    ++copies;
    HANDLE copy = INVALID_HANDLE_VALUE;
    DWORD written = 0;
    if (data)
        copy = CreateFileW(copyPath.c_str(), GENERIC_WRITE, 0, nullptr, CREATE_ALWAYS, 0, nullptr);
    if (copy == INVALID_HANDLE_VALUE) {
        error.reportError("tests/support/TestPage", 1, "no data");
        return false;
    }
    WriteFile(copy, data->data(), static_cast<DWORD>(data->size()), &written, nullptr);
    CloseHandle(copy);
    path = copyPath;
    return true;
}

} // namespace test
