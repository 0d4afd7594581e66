#include "tests/desktop/sessions/DesktopProgram.h"

#include "tests/support/process/OutputCapture.h"

#include <QSize>

#include <algorithm>
#include <sstream>
#include <stdexcept>
#include <thread>
#include <utility>

namespace orlimo {

namespace {

/// On a screen that is high enough.
constexpr QSize windowSize(300, 540);

/// Longer than the time in which two clicks are a double click, and than that in which a click may
/// be the one that took the focus away from the window.
constexpr std::chrono::milliseconds betweenClicks(700);

ProgramSession::Settings onDesktop(const DesktopSession& desktop, ProgramSession::Settings settings)
{
    settings.environment.merge(desktop.environment());
    return settings;
}

std::map<std::string, std::string> preferencesIn(const std::filesystem::path& file)
{
    std::map<std::string, std::string> preferences;
    if (!std::filesystem::exists(file)) {
        return preferences;
    }
    for (const std::string& line : linesOf(contentOf(file))) {
        const std::size_t sign = line.find('=');
        if (sign != std::string::npos) {
            preferences[line.substr(0, sign)] = line.substr(sign + 1);
        }
    }
    return preferences;
}

} // namespace

DesktopProgram::DesktopProgram(ProgramSession::Settings settings, const std::string& screen)
    : ownDesktop(screen)
    , ownSession(onDesktop(ownDesktop, std::move(settings)))
{
    ownSession.startWriter();
}

void DesktopProgram::start()
{
    ownSession.startProgram();
    require(process().awaitLine("file access allowed"), "the store is not watched");
    (void)awaitIcon();
}

void DesktopProgram::clickIcon()
{
    ownDesktop.click(awaitIcon());
    lastClick = std::chrono::steady_clock::now();
}

void DesktopProgram::doubleClickIcon()
{
    ownDesktop.server().doubleClick(awaitIcon());
    lastClick = std::chrono::steady_clock::now();
}

QPoint DesktopProgram::awaitIcon()
{
    std::this_thread::sleep_until(lastClick + betweenClicks);
    std::optional<QRect> icon;
    const auto isDocked = [&] {
        icon = ownDesktop.windows().trayIconOf(processId());
        return icon.has_value();
    };
    require(awaitWithPolling(isDocked), "no icon in the tray");
    return icon->center();
}

void DesktopProgram::open()
{
    const long before = count(appearLine);
    clickIcon();
    require(
        awaitOpen() && awaitWithPolling([&] { return count(appearLine) > before; }),
        "the window does not open");
}

void DesktopProgram::close()
{
    ownDesktop.press("Escape");
    require(awaitClosed(), "the window does not close");
}

testing::AssertionResult DesktopProgram::awaitCondition(const std::function<bool()>& condition)
{
    return awaitWithPolling(condition) ? testing::AssertionSuccess()
                                       : testing::AssertionFailure() << describe();
}

testing::AssertionResult DesktopProgram::awaitOpen()
{
    auto opened = awaitCondition([this] {
        const auto found = window();
        return found && hasFocus(*found);
    });
    // A slow program counts a double click from when it has opened its window.
    lastClick = std::chrono::steady_clock::now();
    return opened;
}

testing::AssertionResult DesktopProgram::awaitClosed()
{
    auto closed = awaitCondition([this] { return !window(); });
    lastClick = std::chrono::steady_clock::now();
    return closed;
}

bool DesktopProgram::isCovered(const XWindow& window) const
{
    const auto all = ownDesktop.windows().windowsOf(0);
    const auto above = std::ranges::find(all, window.id, &XWindow::id);
    return above == all.end() ||
           std::ranges::count(above, all.end(), "xmessage", &XWindow::title) > 0;
}

bool DesktopProgram::hasFocus(const XWindow& window) const
{
    const auto active = ownDesktop.windows().activeWindow();
    return active && active->id == window.id;
}

std::optional<XWindow> DesktopProgram::window()
{
    const auto all = windows();
    const auto found = std::ranges::find_if(all, [](const XWindow& one) {
        return one.title == "Orlimo" && one.area.width() == windowSize.width() &&
               one.area.height() <= windowSize.height();
    });
    return found == all.end() ? std::nullopt : std::optional(*found);
}

Accessible DesktopProgram::element(const std::string& role, const std::string& name)
{
    std::optional<Accessible> found;
    const auto isThere = [&] {
        found = ownDesktop.accessibility().find(role, name);
        return found.has_value();
    };
    require(awaitWithPolling(isThere), "no " + role + " \"" + name + '"');
    return *found;
}

testing::AssertionResult DesktopProgram::awaitPaste(const std::string& text)
{
    testing::AssertionResult result = ownDesktop.server().awaitPaste(text);
    return result ? result : result << '\n' << describe();
}

testing::AssertionResult
DesktopProgram::awaitPreferences(const std::map<std::string, std::string>& expected) const
{
    const auto file = ownSession.preferences();
    if (awaitWithPolling([&] { return preferencesIn(file) == expected; })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << testing::PrintToString(preferencesIn(file)) << " are the stored preferences";
}

long DesktopProgram::count(const std::string& line)
{
    const auto lines = linesOf(process().output());
    return static_cast<long>(std::ranges::count(lines, line));
}

void DesktopProgram::require(bool condition, const std::string& failure)
{
    if (!condition) {
        throw std::runtime_error(failure + "; " + describe());
    }
}

std::string DesktopProgram::describe()
{
    std::ostringstream text;
    text << "the windows from the lowest:\n";
    for (const XWindow& one : ownDesktop.windows().windowsOf(0)) {
        text << "  \"" << one.title << "\" of process " << one.process << ", " << one.area.width()
             << 'x' << one.area.height() << " at " << one.area.x() << ',' << one.area.y() << '\n';
    }
    const auto active = ownDesktop.windows().activeWindow();
    text << "the focus is on: " << (active ? active->title : "nothing") << '\n'
         << "the program (process " << processId() << ") shows:\n"
         << ownDesktop.accessibility().describe() << "it printed:\n"
         << process().output() << process().errors();
    return text.str();
}

} // namespace orlimo
