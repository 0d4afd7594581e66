#pragma once

#include "tests/desktop/sessions/DesktopSession.h"
#include "tests/support/Await.h"
#include "tests/support/process/ChildProcess.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <QRect>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
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

    void TearDown() override
    {
        if (program && program->isRunning()) {
            endProgram();
        }
    }

    /// Starts the program, with `variables` added to the desktop's, and waits until it runs.
    void startProgram(Environment variables = {})
    {
        launchProgram(std::move(variables));
        ASSERT_TRUE(program->awaitLine("did finish launching")) << program->errors();
    }

    void launchProgram(Environment variables = {})
    {
        variables.merge(desktop.environment());
        program.emplace(
            ORLIMO_DESKTOP_PROBE,
            ChildSettings{.environment = std::move(variables), .beforeStart = dieWithParent});
    }

    void endProgram()
    {
        program->closeInput();
        EXPECT_EQ(program->awaitEnd().status, 0) << program->errors();
        program.reset();
    }

    void sendCommand(const std::string& command)
    {
        program->writeLine(command);
        ASSERT_TRUE(program->awaitLine("done")) << command << ": " << program->errors();
    }

    /// Expects that the window opens by itself only once `removeTray` has been called.
    template <typename RemoveTray> void expectOpenOnlyWithoutTray(RemoveTray removeTray)
    {
        const auto before = count("opened");
        sendCommand("open if no tray");
        runEventLoop(std::chrono::milliseconds(1500)); // longer than the program waits for the bus
        EXPECT_EQ(count("opened"), before);
        removeTray();
        // The program may be notified of it later than the test.
        ASSERT_TRUE(awaitWithPolling([this] {
            sendCommand("open if no tray");
            return window("Content").has_value();
        }));
        EXPECT_TRUE(awaitActive("Content"));
    }

    /// Waits until the program's icon is in the tray, and stores its position.
    [[nodiscard]] bool awaitIcon()
    {
        return awaitWithPolling([this] {
            const auto found = desktop.windows().trayIconOf(processId());
            icon = found.value_or(QRect());
            return found.has_value();
        });
    }

    void openByClick()
    {
        desktop.click(icon.center());
        ASSERT_TRUE(awaitActive("Content"));
    }

    [[nodiscard]] bool awaitActive(const std::string& title)
    {
        return awaitWithPolling([&] {
            const auto active = desktop.windows().activeWindow();
            return active && active->title == title;
        });
    }

    /// The area of the program's window titled `title`; none if there is none.
    [[nodiscard]] std::optional<QRect> window(const std::string& title) const
    {
        const auto all = desktop.windows().windowsOf(processId());
        const auto found = std::ranges::find(all, title, &XWindow::title);
        return found == all.end() ? std::nullopt : std::optional(found->area);
    }

    [[nodiscard]] bool awaitClosed() const
    {
        return awaitWithPolling([this] { return !window("Content"); });
    }

    void expectClosed() const
    {
        EXPECT_TRUE(awaitClosed());
        runEventLoop(focusSettleTime);
        EXPECT_FALSE(window("Content"));
    }

    [[nodiscard]] std::ptrdiff_t count(const std::string& line)
    {
        return std::ranges::count(linesOf(program->output()), line);
    }

    [[nodiscard]] std::uint32_t processId() const
    {
        return static_cast<std::uint32_t>(program->processId());
    }

    /// Longer than the desktop takes to move the focus, and than a double click takes.
    static constexpr std::chrono::milliseconds focusSettleTime{600};

    DesktopSession desktop{DesktopSession::WithoutTray{}};
    std::optional<ChildProcess> program;
    QRect icon;
};

} // namespace orlimo
