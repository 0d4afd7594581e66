#include "tests/desktop/sessions/x11/OpenboxConfiguration.h"

#include "tests/support/TemporaryFolder.h"

#include <QString>

#include <system_error>

namespace orlimo {

OpenboxConfiguration::OpenboxConfiguration(const std::string& focus)
    : file(qEnvironmentVariable("XDG_CONFIG_HOME").toStdString() + "/openbox/rc.xml")
{
    writeFile(
        file,
        "<?xml version=\"1.0\"?>\n"
        "<openbox_config xmlns=\"http://openbox.org/3.4/rc\">\n"
        "<focus>" +
            focus +
            "</focus>\n"
            "</openbox_config>\n");
}

OpenboxConfiguration::~OpenboxConfiguration()
{
    std::error_code ignored;
    std::filesystem::remove(file, ignored);
}

} // namespace orlimo
