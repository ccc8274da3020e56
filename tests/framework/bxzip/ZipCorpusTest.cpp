// Replays the inputs that fuzzing found worth keeping.
#include "fuzz/ZipOperations.h"
#include "support/TempFolder.h"

#include <gtest/gtest.h>

#include <filesystem>

namespace {

TEST(ZipCorpusTest, EveryInputGivesARightArchive) {
    int inputs = 0;
    for (const auto& file : std::filesystem::directory_iterator(CORPUS_FOLDER)) {
        const std::string bytes =
            test::readFile(std::filesystem::path(file.path()).make_preferred().wstring());
        EXPECT_EQ(test::runZipOperations(reinterpret_cast<const std::uint8_t*>(bytes.data()), bytes.size()),
                  "")
            << file.path().filename();
        ++inputs;
    }
    EXPECT_GT(inputs, 0);
}

} // namespace
