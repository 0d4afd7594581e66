#include "tests/app/ShyWindowManager.h"

#include "tests/support/TemporaryFolder.h"

#include <QString>

#include <system_error>

namespace orlimo {

ShyWindowManager::ShyWindowManager()
    : configuration(qEnvironmentVariable("XDG_CONFIG_HOME").toStdString() + "/openbox/rc.xml")
{
    writeFile(
        configuration,
        "<?xml version=\"1.0\"?>\n"
        "<openbox_config xmlns=\"http://openbox.org/3.4/rc\">\n"
        "<focus><focusNew>no</focusNew></focus>\n"
        "</openbox_config>\n");
}

ShyWindowManager::~ShyWindowManager()
{
    std::error_code ignored;
    std::filesystem::remove(configuration, ignored);
}

} // namespace orlimo
