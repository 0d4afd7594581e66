#include "tests/platform/desktop/linux/DesktopProbeTest.h"

#include "tests/support/process/OutputCapture.h"
#include "tests/support/process/ParentDeathSignal.h"

#include <algorithm>
#include <utility>

namespace orlimo {

void DesktopProbeTest::startProgram(Environment variables)
{
    launchProgram(std::move(variables));
    ASSERT_TRUE(program->awaitLine("did finish launching")) << program->errors();
}

void DesktopProbeTest::launchProgram(Environment variables)
{
    variables.merge(desktop.environment());
    program.emplace(
        ORLIMO_DESKTOP_PROBE,
        ChildSettings{.environment = std::move(variables), .beforeStart = dieWithParent});
}

void DesktopProbeTest::sendCommand(const std::string& command)
{
    program->writeLine(command);
    ASSERT_TRUE(program->awaitLine("done")) << command << ": " << program->errors();
}

bool DesktopProbeTest::awaitIcon()
{
    return awaitWithPolling([this] {
        const auto found = desktop.windows().trayIconOf(processId());
        icon = found.value_or(QRect());
        return found.has_value();
    });
}

void DesktopProbeTest::openByClick()
{
    desktop.click(icon.center());
    ASSERT_TRUE(awaitActive("Content"));
}

void DesktopProbeTest::closeByClick()
{
    runEventLoop(focusSettleTime);
    desktop.click(icon.center());
    EXPECT_TRUE(awaitClosed());
    runEventLoop(focusSettleTime);
    EXPECT_FALSE(window("Content"));
}

bool DesktopProbeTest::awaitActive(const std::string& title)
{
    return awaitWithPolling([&] {
        const auto active = desktop.windows().activeWindow();
        return active && active->title == title;
    });
}

std::optional<QRect> DesktopProbeTest::window(const std::string& title) const
{
    const auto all = desktop.windows().windowsOf(processId());
    const auto found = std::ranges::find(all, title, &XWindow::title);
    return found == all.end() ? std::nullopt : std::optional(found->area);
}

bool DesktopProbeTest::awaitClosed() const
{
    return awaitWithPolling([this] { return !window("Content"); });
}

bool DesktopProbeTest::awaitMenu(bool isShown) const
{
    return awaitWithPolling(
        [&] { return desktop.windows().menuOf(processId()).has_value() == isShown; });
}

std::ptrdiff_t DesktopProbeTest::count(const std::string& line)
{
    return std::ranges::count(linesOf(program->output()), line);
}

std::uint32_t DesktopProbeTest::processId() const
{
    return static_cast<std::uint32_t>(program->processId());
}

} // namespace orlimo
