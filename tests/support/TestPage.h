// Pages and folders that a test owns.
#pragma once

#include "SorvaneCommon/ExportDataItem.h"
#include "SorvaneCommon/ExportFolder.h"

#include <optional>
#include <string>
#include <vector>

namespace test {

/// A folder with a name, or with none.
class TestFolder : public ExportFolder {
public:
    explicit TestFolder(std::optional<std::wstring> name) : name(std::move(name)) {}

    const wchar_t* getFolderName() const override { return name ? name->c_str() : nullptr; }
    using ExportFolder::getFolderName;

private:
    std::optional<std::wstring> name;
};

/// A page on the test's stack. It counts its references instead of living by them, so that a test can compare
/// the count at any time.
class TestPage : public ExportDataItem {
public:
    /// A page whose data already lies in a file.
    explicit TestPage(const std::wstring& path);
    /// A page that has to write a copy for whoever wants its data.
    TestPage(std::string fileName, std::optional<std::string> data, std::wstring copyPath);

    ~TestPage() override;

    void addRef() override { ++references; }
    void release() override { --references; }

    ExportFolder* getParentFolder() override { return folder; }
    void getFileName(Sorvane::u8string& name) override;
    bool getFilePath(std::wstring& path) override;
    bool createDataCopy(std::wstring& path, SorvaneException& error) override;

    ExportFolder* folder = nullptr;
    std::string fileName;             ///< what getFileName gives
    std::optional<std::wstring> file; ///< what getFilePath gives
    std::optional<std::string> data;  ///< what a copy will hold; none makes createDataCopy fail
    std::wstring copyPath;            ///< where the copy goes
    int references = 0;
    int copies = 0; ///< how often createDataCopy was called
};

} // namespace test
