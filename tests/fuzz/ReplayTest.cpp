#include "tests/fuzz/FuzzTarget.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <filesystem>
#include <vector>

namespace orlimo {

namespace {

/// The inputs that are kept for this program's target, in alphabetical order.
std::vector<std::filesystem::path> corpusInputs()
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(ORLIMO_FUZZ_CORPUS)) {
        files.push_back(entry.path());
    }
    std::sort(files.begin(), files.end());
    return files;
}

TEST(Replay, KeptInputsHaveNoFindingInEitherOrder)
{
    auto files = corpusInputs();
    EXPECT_FALSE(files.empty());
    for (int order = 0; order < 2; ++order) {
        for (const auto& file : files) {
            const Finding finding = checkInput(contentOf(file));
            EXPECT_FALSE(finding) << file << ": " << finding.value_or("");
        }
        // No call may affect the finding of another.
        std::reverse(files.begin(), files.end());
    }
}

} // namespace

} // namespace orlimo
