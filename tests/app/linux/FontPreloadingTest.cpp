#include "tests/program/ProgramSession.h"
#include "tests/support/Await.h"

#include <gtest/gtest.h>

namespace orlimo {
namespace {

TEST(FontPreloading, ListsFontsWithoutWindow)
{
    // Listing them makes fontconfig write its cache.
    const TemporaryFolder fontconfig;
    const auto cache = fontconfig.path() / "cache";
    const auto configuration = fontconfig.path() / "fonts.conf";
    std::filesystem::create_directory(fontconfig.path() / "fonts");
    writeFile(
        configuration,
        "<?xml version=\"1.0\"?><!DOCTYPE fontconfig SYSTEM \"fonts.dtd\"><fontconfig><dir>" +
            (fontconfig.path() / "fonts").string() + "</dir><cachedir>" + cache.string() +
            "</cachedir></fontconfig>");
    ProgramSession session(
        {.arguments = {"--launched-at-login"},
         .environment = {{"FONTCONFIG_FILE", configuration.string()}}});
    session.start();
    EXPECT_TRUE(await([&cache] { return std::filesystem::exists(cache); }));
}

} // namespace
} // namespace orlimo
