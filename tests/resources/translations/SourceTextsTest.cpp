#include "tests/resources/translations/CatalogueFile.h"
#include "tests/resources/translations/TextSlot.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/ChildProcess.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(SourceTexts, AreThoseOfTheCatalogues)
{
    const TemporaryFolder folder;
    const auto extracted = folder.path() / "extracted.ts";
    ChildProcess lupdate(
        ORLIMO_LUPDATE,
        {.arguments = {
             "-silent",
             "-I",
             ORLIMO_SOURCES,
             ORLIMO_SOURCES "/app",
             ORLIMO_SOURCES "/controls",
             ORLIMO_SOURCES "/login",
             ORLIMO_SOURCES "/platform",
             "-ts",
             extracted.string()}});
    ASSERT_EQ(lupdate.awaitEnd().status, 0) << lupdate.errors();
    EXPECT_EQ(CatalogueFile::read(extracted).texts(), programTexts());
}

} // namespace
} // namespace orlimo
