#include "platform/files/DirectoryListing.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>

#include <dirent.h>
#include <dlfcn.h>

namespace {

/// How many more entries the system returns before reading a folder fails; negative when it never
/// does.
int entriesUntilFailure = -1;

} // namespace

/// Overrides the C library's in this whole program.
// NOLINTNEXTLINE(readability-identifier-naming)
extern "C" dirent* readdir(DIR* folder)
{
    if (entriesUntilFailure == 0) {
        errno = EIO;
        return nullptr;
    }
    entriesUntilFailure -= entriesUntilFailure > 0 ? 1 : 0;
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
        EXPECT_FALSE(canListDirectory(folder.path())) << entries;
    }
    entriesUntilFailure = -1;
    EXPECT_TRUE(canListDirectory(folder.path()));
}

} // namespace
} // namespace orlimo
