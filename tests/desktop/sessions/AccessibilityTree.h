#pragma once

#include "tests/app/Accessible.h"
#include "tests/desktop/sessions/BusConnection.h"

#include <optional>
#include <sstream>
#include <string>
#include <vector>

namespace orlimo {

/// What Orlimo tells assistive technology on one accessibility bus.
class AccessibilityTree
{
public:
    explicit AccessibilityTree(const std::string& busAddress)
        : bus(busAddress)
    {}

    /// Everything that it shows at the moment, from the outside in and from the first to the last.
    [[nodiscard]] std::vector<Accessible> showing() const
    {
        const Accessible root(
            bus.connection(),
            QStringLiteral("org.a11y.atspi.Registry"),
            QStringLiteral("/org/a11y/atspi/accessible/root"));
        std::vector<Accessible> found;
        for (const Accessible& program : root.children()) {
            if (program.name() == "Orlimo") {
                for (const Accessible& window : program.children()) {
                    collectShowing(window, found);
                }
                break;
            }
        }
        return found;
    }

    /// The first of these with the role and the name.
    [[nodiscard]] std::optional<Accessible>
    find(const std::string& role, const std::string& name) const
    {
        for (const Accessible& element : showing()) {
            if (element.name() == name && element.role() == role) {
                return element;
            }
        }
        return std::nullopt;
    }

    /// These as lines of text, for people.
    [[nodiscard]] std::string describe() const
    {
        std::ostringstream text;
        for (const Accessible& element : showing()) {
            const QRect area = element.area();
            text << element.role() << " \"" << element.name() << "\" " << area.x() << ','
                 << area.y() << ' ' << area.width() << 'x' << area.height() << '\n';
        }
        return text.str();
    }

private:
    static void collectShowing(const Accessible& element, std::vector<Accessible>& found)
    {
        if (!element.is(Accessible::State::showing)) {
            return;
        }
        found.push_back(element);
        for (const Accessible& child : element.children()) {
            collectShowing(child, found);
        }
    }

    BusConnection bus;
};

} // namespace orlimo
