#pragma once

#include <QPoint>

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

    void movePointer(const QPoint& point) const;

    /// Moves the pointer to `point` of the screen and presses `button`: 1 left, 2 middle, 3 right.
    void click(const QPoint& point, int button = 1) const;
    void doubleClick(const QPoint& point) const;

    /// Presses and releases keys, named as X names them: "Escape", "alt+F4".
    void press(const std::string& keys) const;

private:
    void control(std::vector<std::string> arguments) const;

    std::string name;
};

} // namespace orlimo
