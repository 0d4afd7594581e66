#include "tests/platform/macos/PasteboardServer.h"

#include "tests/support/Await.h"
#include "tests/support/ParentBond.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdlib>

namespace orlimo {

namespace {

std::filesystem::path home()
{
    return std::getenv("HOME"); // NOLINT(concurrency-mt-unsafe): never set here
}

/// Where GNUstep's programs have their folders. The server asks the user database for its home, so
/// that each folder which it writes to is named in full.
std::filesystem::path configuration()
{
    auto file = home() / "GNUstep.conf";
    writeFile(
        file,
        "GNUSTEP_USER_CONFIG_FILE=" + (home() / ".GNUstep.conf").string() +
            "\nGNUSTEP_USER_DEFAULTS_DIR=" + (home() / "GNUstep/Defaults").string() + "\n");
    return file;
}

bool isNameRegistered()
{
    std::error_code missing;
    const std::filesystem::recursive_directory_iterator files(home(), missing);
    return !missing && std::any_of(begin(files), end(files), [](const auto& file) {
        return file.path().parent_path().filename() == "names" && file.is_regular_file() &&
               file.file_size() > 0; // filled a moment after it is made
    });
}

} // namespace

PasteboardServer::PasteboardServer()
    : server(
          "/usr/bin/gpbs",
          {
              .arguments = {"--no-fork"},
              .environment =
                  {{"DISPLAY", display.display()},
                   {"GNUSTEP_CONFIG_FILE", configuration()},
                   {"TEMP", home()}},
              .beforeStart = endWithParent,
          })
{
    EXPECT_TRUE(await(isNameRegistered)) << server.errors();
}

} // namespace orlimo
