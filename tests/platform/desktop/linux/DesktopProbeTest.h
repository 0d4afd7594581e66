#pragma once

#include "tests/desktop/sessions/DesktopSession.h"
#include "tests/support/Await.h"
#include "tests/support/process/ChildProcess.h"

#include <QRect>
#include <gtest/gtest.h>

#include <chrono>
#include <cstddef>
#include <cstdint>
#include <map>
#include <optional>
#include <string>

namespace orlimo {

/// A desktop, and on it a small program that makes a menu-bar extra whose window is called
/// "Content".
class DesktopProbeTest : public testing::Test
{
protected:
    using Environment = std::map<std::string, std::optional<std::string>>;

    template <typename Kind>
    explicit DesktopProbeTest(const Kind& kind, const std::string& screen = "1280x800x24")
        : desktop(kind, screen)
    {}

    /// Starts the program, with `variables` beside the desktop's, and waits until it runs.
    void startProgram(Environment variables = {});

    /// Starts the program and does not wait.
    void launchProgram(Environment variables = {});

    /// Has the program carry `command` out.
    void sendCommand(const std::string& command);

    /// Asks the program whether its window is open. False, too, when it gives no answer.
    [[nodiscard]] bool isWindowReported(bool open);

    /// Waits until the program's icon is in the tray, and keeps its place.
    [[nodiscard]] bool awaitIcon();

    /// Clicks the icon in the tray and waits until the window has the focus.
    void openByClick();

    /// Waits until the window called `title` has the focus.
    [[nodiscard]] bool awaitActive(const std::string& title);

    /// Where the program's window called `title` is; none when there is none.
    [[nodiscard]] std::optional<QRect> window(const std::string& title) const;

    [[nodiscard]] bool awaitClosed() const;
    [[nodiscard]] bool awaitMenu(bool isShown) const;

    /// How often the program has said `line` so far.
    [[nodiscard]] std::ptrdiff_t count(const std::string& line);

    [[nodiscard]] std::uint32_t processId() const;

    /// Longer than the host takes to hand the focus on, and than two clicks of a double click lie
    /// apart.
    static constexpr std::chrono::milliseconds focusSettleTime{600};

    DesktopSession desktop;
    std::optional<ChildProcess> program;
    QRect icon;
};

} // namespace orlimo
