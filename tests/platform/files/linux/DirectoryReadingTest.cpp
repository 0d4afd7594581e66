#include "platform/files/DirectoryListing.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <limits>
#include <utility>

#include <dirent.h>
#include <dlfcn.h>

namespace {

/// How many more entries the system returns before reading a folder fails.
int entriesUntilFailure = std::numeric_limits<int>::max();

} // namespace

/// Overrides the C library's in this whole program.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" dirent* readdir(DIR* folder)
{
    if (entriesUntilFailure == 0) {
        errno = EIO;
        return nullptr;
    }
    --entriesUntilFailure;
    using Function = dirent* (*)(DIR*);
    static const auto next = reinterpret_cast<Function>(::dlsym(RTLD_NEXT, "readdir"));
    return next(folder);
}

namespace orlimo {
namespace {

TEST(DirectoryReading, FailureAtAnyEntryMeansThatTheFolderCannotBeListed)
{
    const TemporaryFolder folder;
    writeFile(folder.path() / "a", "");
    writeFile(folder.path() / "b", "");
    // Every folder has two entries of its own.
    for (const int entries : {0, 1, 4}) {
        entriesUntilFailure = entries;
        const bool isListed = canListDirectory(folder.path());
        EXPECT_EQ(std::exchange(entriesUntilFailure, std::numeric_limits<int>::max()), 0);
        EXPECT_FALSE(isListed) << entries;
    }
    EXPECT_TRUE(canListDirectory(folder.path()));
}

} // namespace
} // namespace orlimo
