// A ZIP export under test: engine, pages, target.
#pragma once

#include "ExportToZip.h"
#include "SorvaneBase/SorvaneException.h"
#include "bxbase/Reference.h"
#include "support/SoundArchives.h"
#include "support/TempFolder.h"
#include "support/TestPage.h"
#include "support/ZipParser.h"

#include <gmock/gmock.h>

#include <list>
#include <optional>
#include <string>
#include <vector>

/// The engine with its settings open, as a confirmed dialog would fill them.
class OpenZipEngine : public ExportToZip {
public:
    using ExportToZip::prefix;
    using ExportToZip::targetPath;
};

/// An engine with the prefix "Scan_" that writes the archive "scans.zip" in an empty folder.
class ZipExportFixture : public testing::Test {
protected:
    ZipExportFixture();

    void TearDown() override { test::expectSoundArchives(target); }

    /// A page whose data lies in a file of its own.
    test::TestPage& addPage(const std::wstring& name, const std::string& bytes);
    /// Pages "1.tif" to "COUNT.tif", each of which holds its own number.
    void addPages(int count);
    /// A page without a file, which writes a copy of these bytes on demand or fails to.
    test::TestPage& addPageWithoutFile(std::optional<std::string> bytes);

    /// Runs the export, which must not show a box.
    int run();

    /// What the archive holds.
    test::ZipEntries entries() const { return test::zipEntries(test::readFile(target / L"scans.zip")); }
    std::vector<std::string> entryNames() const;

    /// Expects exactly this report.
    void expectReport(int line, const char* message) const;

    test::TempFolder target;
    test::TempFolder pageFolder;
    test::TempFolder scratch;
    const std::wstring temporaryCopy = scratch / L"copy.tmp";
    std::list<test::TestPage> pages;
    SorvaneException errors;
    bxbase::Reference<OpenZipEngine> engine;
};
