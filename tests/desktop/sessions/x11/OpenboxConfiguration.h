#pragma once

#include "tests/support/TemporaryFolder.h"

#include <QString>

#include <filesystem>
#include <string>
#include <system_error>

namespace orlimo {

/// A configuration of the window manager for each desktop that starts from now on, as long as it
/// lives.
class OpenboxConfiguration
{
public:
    /// `focus` is the content of the configuration's element of that name.
    explicit OpenboxConfiguration(const std::string& focus)
        : file(qEnvironmentVariable("XDG_CONFIG_HOME").toStdString() + "/openbox/rc.xml")
    {
        writeFile(
            file,
            "<?xml version=\"1.0\"?>\n"
            "<openbox_config xmlns=\"http://openbox.org/3.4/rc\">\n"
            "<focus>" +
                focus + "</focus>\n</openbox_config>\n");
    }
    OpenboxConfiguration(const OpenboxConfiguration&) = delete;
    OpenboxConfiguration& operator=(const OpenboxConfiguration&) = delete;
    ~OpenboxConfiguration()
    {
        std::error_code ignored;
        std::filesystem::remove(file, ignored);
    }

private:
    std::filesystem::path file;
};

/// Has window managers that start from now on give the keyboard to no new window by themselves.
struct NonFocusingWindowManager : private OpenboxConfiguration
{
    NonFocusingWindowManager()
        : OpenboxConfiguration("<focusNew>no</focusNew>")
    {}
};

/// Has window managers that start from now on give the focus to the window under the pointer.
struct SloppyFocusWindowManager : private OpenboxConfiguration
{
    SloppyFocusWindowManager()
        : OpenboxConfiguration("<followMouse>yes</followMouse>")
    {}
};

} // namespace orlimo
