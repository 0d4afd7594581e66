#include "platform/files/FileHandle.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(FileName, MayBeAnyBytes)
{
    const TemporaryFolder folder;
    const auto odd = folder.path() / "\xFF\xFE odd\nname";
    writeFile(odd, "eleven byte");
    EXPECT_EQ(FileHandle::openForReading(odd).seekToEndOfFile(), 11U);
}

} // namespace
} // namespace orlimo
