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

/// A desktop, at first without a tray, and a small program that has a menu-bar extra, whose window
/// is titled "Content".
class DesktopProbeTest : public testing::Test
{
protected:
    using Environment = std::map<std::string, std::optional<std::string>>;

    explicit DesktopProbeTest(const std::string& screen = "1280x800x24")
        : desktop(DesktopSession::WithoutTray{}, screen)
    {}

    /// Starts the program, with `variables` added to the desktop's, and waits until it runs.
    void startProgram(Environment variables = {});

    /// Starts the program without waiting.
    void launchProgram(Environment variables = {});

    /// Has the program execute `command`.
    void sendCommand(const std::string& command);

    /// Waits until the program's icon is in the tray, and stores its position.
    [[nodiscard]] bool awaitIcon();

    /// Clicks the icon in the tray and waits until the window has the focus.
    void openByClick();

    /// Clicks the icon again and expects that the window closes and stays closed.
    void closeByClick();

    /// Waits until the window titled `title` has the focus.
    [[nodiscard]] bool awaitActive(const std::string& title);

    /// The area of the program's window titled `title`; none if there is none.
    [[nodiscard]] std::optional<QRect> window(const std::string& title) const;

    [[nodiscard]] bool awaitClosed() const;
    [[nodiscard]] bool awaitMenu(bool isShown) const;

    /// How often the program has printed `line` so far.
    [[nodiscard]] std::ptrdiff_t count(const std::string& line);

    [[nodiscard]] std::uint32_t processId() const;

    /// Longer than the desktop takes to move the focus, and than a double click takes.
    static constexpr std::chrono::milliseconds focusSettleTime{600};

    DesktopSession desktop;
    std::optional<ChildProcess> program;
    QRect icon;
};

} // namespace orlimo
