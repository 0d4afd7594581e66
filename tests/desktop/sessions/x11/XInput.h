#pragma once

#include "tests/support/process/ChildProcess.h"

#include <QPoint>
#include <gtest/gtest.h>

#include <string>
#include <utility>
#include <vector>

namespace orlimo {

/// The pointer and the keyboard of an X server, used as a person uses them. What cannot be done is
/// a test failure.
class XInput
{
public:
    /// For the server `display`.
    explicit XInput(std::string display)
        : name(std::move(display))
    {}

    void movePointer(const QPoint& point) const { controlAt(point, {}); }

    /// Moves the pointer to `point` of the screen and presses `button`: 1 left, 2 middle, 3 right.
    void click(const QPoint& point, int button = 1) const
    {
        controlAt(point, {"click", std::to_string(button)});
    }
    void doubleClick(const QPoint& point) const
    {
        controlAt(point, {"click", "--repeat", "2", "--delay", "100", "1"});
    }

    /// Presses and releases keys, named as X names them: "Escape", "alt+F4".
    void press(const std::string& keys) const { control({"key", keys}); }

private:
    void controlAt(const QPoint& point, const std::vector<std::string>& action) const
    {
        std::vector<std::string> arguments{
            "mousemove", std::to_string(point.x()), std::to_string(point.y())};
        arguments.insert(arguments.end(), action.begin(), action.end());
        control(std::move(arguments));
    }

    void control(std::vector<std::string> arguments) const
    {
        const auto tool = runTool(
            "/usr/bin/xdotool",
            {.arguments = std::move(arguments), .environment = {{"DISPLAY", name}}});
        EXPECT_EQ(tool.status, 0) << tool.errors;
    }

    std::string name;
};

} // namespace orlimo
