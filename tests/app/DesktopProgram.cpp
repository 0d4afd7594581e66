#include "tests/app/DesktopProgram.h"

#include "tests/support/OutputCapture.h"

#include <QSize>

#include <algorithm>
#include <sstream>
#include <utility>

namespace orlimo {

namespace {

/// What the program calls itself, also to assistive technology.
constexpr const char* applicationName = "Orlimo";

constexpr QSize windowSize(300, 540);

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

DesktopProgram::DesktopProgram(ProgramSession::Settings settings)
    : ownSession(onDesktop(ownDesktop, std::move(settings)))
{
    ownSession.startWriter();
}

void DesktopProgram::start()
{
    ownSession.startProgram();
    ASSERT_TRUE(process().awaitLine("file access allowed")) << process().errors();
    ASSERT_TRUE(await([this] { return ownDesktop.windows().trayIconOf(processId()).has_value(); }))
        << "no icon in the tray; " << describe();
}

void DesktopProgram::clickIcon(int button)
{
    const auto icon = ownDesktop.windows().trayIconOf(processId());
    ASSERT_TRUE(icon) << describe();
    ownDesktop.click(icon->center(), button);
}

void DesktopProgram::open()
{
    const long before = count(appearLine);
    clickIcon();
    ASSERT_TRUE(awaitOpen());
    ASSERT_TRUE(await([&] { return count(appearLine) > before; })) << describe();
}

void DesktopProgram::close()
{
    ownDesktop.press("Escape");
    ASSERT_TRUE(awaitClosed());
}

testing::AssertionResult DesktopProgram::awaitOpen()
{
    const auto hasFocus = [this] {
        const auto opened = window();
        const auto active = ownDesktop.windows().activeWindow();
        return opened && active && opened->id == active->id;
    };
    if (await(hasFocus)) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "the window is not open with the focus; " << describe();
}

testing::AssertionResult DesktopProgram::awaitClosed()
{
    if (await([this] { return !window(); })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure() << "the window is still open; " << describe();
}

std::optional<XWindow> DesktopProgram::window()
{
    const auto all = windows();
    const auto found = std::ranges::find_if(all, [](const XWindow& one) {
        return one.title == applicationName && one.area.size() == windowSize;
    });
    return found == all.end() ? std::nullopt : std::optional(*found);
}

std::vector<XWindow> DesktopProgram::windows()
{
    return ownDesktop.windows().windowsOf(processId());
}

Accessible DesktopProgram::element(const std::string& role, const std::string& name)
{
    std::optional<Accessible> found;
    const auto isThere = [&] {
        found = ownDesktop.accessibility().find(applicationName, role, name);
        return found.has_value();
    };
    if (await(isThere)) {
        return *found;
    }
    ADD_FAILURE() << "no " << role << " \"" << name << "\"; " << describe();
    return Accessible(QDBusConnection(QString()), QString(), QString());
}

bool DesktopProgram::shows(const std::string& role, const std::string& name) const
{
    return ownDesktop.accessibility().find(applicationName, role, name).has_value();
}

void DesktopProgram::click(const std::string& role, const std::string& name)
{
    ownDesktop.click(element(role, name).area().center());
}

testing::AssertionResult DesktopProgram::awaitPaste(const std::string& text) const
{
    const XServer& server = ownDesktop.server();
    if (await([&] { return server.paste("clipboard") == text; })) {
        return testing::AssertionSuccess();
    }
    return testing::AssertionFailure()
           << "the clipboard holds \"" << server.paste("clipboard") << '"';
}

testing::AssertionResult
DesktopProgram::awaitPreferences(const std::map<std::string, std::string>& expected) const
{
    const auto file = ownSession.preferences();
    if (await([&] { return preferencesIn(file) == expected; })) {
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

std::uint32_t DesktopProgram::processId()
{
    return static_cast<std::uint32_t>(process().processId());
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
         << ownDesktop.accessibility().describe(applicationName) << "it printed:\n"
         << process().output() << process().errors();
    return text.str();
}

} // namespace orlimo
