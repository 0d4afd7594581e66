#include "tests/desktop/sessions/x11/XInput.h"

#include "tests/support/process/ChildProcess.h"

#include <gtest/gtest.h>

#include <utility>

namespace orlimo {

void XInput::movePointer(const QPoint& point) const
{
    control({"mousemove", std::to_string(point.x()), std::to_string(point.y())});
}

void XInput::click(const QPoint& point, int button) const
{
    control(
        {"mousemove",
         std::to_string(point.x()),
         std::to_string(point.y()),
         "click",
         std::to_string(button)});
}

void XInput::doubleClick(const QPoint& point) const
{
    control(
        {"mousemove",
         std::to_string(point.x()),
         std::to_string(point.y()),
         "click",
         "--repeat",
         "2",
         "--delay",
         "100",
         "1"});
}

void XInput::press(const std::string& keys) const
{
    control({"key", keys});
}

void XInput::control(std::vector<std::string> arguments) const
{
    const auto tool = runTool(
        "/usr/bin/xdotool",
        {.arguments = std::move(arguments), .environment = {{"DISPLAY", name}}});
    EXPECT_EQ(tool.status, 0) << tool.errors;
}

} // namespace orlimo
