#include "platform/files/DirectoryListing.h"
#include "tests/support/TemporaryFolder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cerrno>
#include <limits>
#include <string>

#include <dirent.h>
#include <dlfcn.h>

namespace {

/// How many more entries the host hands out before reading a folder fails.
int entriesUntilFailure = std::numeric_limits<int>::max();

} // namespace

/// Stands before the C library's own, in this whole program.
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

using testing::ElementsAre;
using testing::Optional;

/// How a folder is read where its entries are any bytes and come one by one.
class DirectoryReading : public testing::Test
{
protected:
    void TearDown() override { entriesUntilFailure = std::numeric_limits<int>::max(); }

    TemporaryFolder folder;
};

TEST_F(DirectoryReading, GivesANameThatIsNotTextAsItIs)
{
    writeFile(folder.path() / "not\xFFtext", "");
    EXPECT_THAT(contentsOfDirectory(folder.path()), Optional(ElementsAre("not\xFFtext")));
}

TEST_F(DirectoryReading, ThatFailsAtTheBeginningGivesNothing)
{
    entriesUntilFailure = 0;
    EXPECT_EQ(contentsOfDirectory(folder.path()), std::nullopt);
}

TEST_F(DirectoryReading, ThatFailsInTheMiddleGivesNothing)
{
    for (const char* name : {"a", "b", "c", "d"}) {
        writeFile(folder.path() / name, "");
    }
    // The two names of every folder are among those handed out.
    entriesUntilFailure = 4;
    EXPECT_EQ(contentsOfDirectory(folder.path()), std::nullopt);
    EXPECT_EQ(entriesUntilFailure, 0);
}

} // namespace
} // namespace orlimo
