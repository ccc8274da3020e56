// Holds the archives that a test leaves on the disk against the strict parser.
#pragma once

#include "host/Text.h"
#include "support/TempFolder.h"
#include "support/ZipParser.h"

#include <gtest/gtest.h>

namespace test {

/// Expects a sound archive of every file in a folder that the test did not write itself.
inline void expectSoundArchives(const TempFolder& folder) {
    for (const std::wstring& path : folder.filesOfOthers())
        EXPECT_EQ(parseZip(readFile(path)).error, "") << host::utf8(path);
}

} // namespace test
