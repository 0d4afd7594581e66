#include "app/CommandLine.h"

#include "platform/ApplicationIdentity.h"
#include "platform/loginitem/LaunchEvent.h"

#include <algorithm>
#include <array>

namespace orlimo {

namespace {

using namespace std::string_view_literals;

// Qt's options, by what follows their names: the next argument, nothing, or a value after
// an equals sign.
constexpr std::array optionsWithNextArgument{
    "-display"sv,
    "-geometry"sv,
    "-platform"sv,
    "-platformpluginpath"sv,
    "-platformtheme"sv,
    "-plugin"sv,
    "-qwindowgeometry"sv,
    "-qwindowicon"sv,
    "-qwindowtitle"sv,
    "-session"sv,
    "-style"sv,
    "-stylesheet"sv,
};
constexpr std::array optionsWithoutValue{"-reverse"sv, "-widgetcount"sv};
constexpr std::array optionsWithEqualsSign{"-qmljsdebugger="sv, "-style="sv, "-stylesheet="sv};

constexpr std::string_view help =
    R"(Usage: orlimo [OPTION]...

Puts the verification code of an incoming message on the clipboard, from the menu bar.

  -h, --help           show this text and end
  -v, --version        show the version and end
  --launched-at-login  say that the start belongs to a login; the login item does so
  --side-by-side       run even where Orlimo already runs in this session

The options of every Qt program work as well: -platform NAME, -display DISPLAY, -style STYLE ...
)";

/// Qt takes its options with one dash or two.
std::string_view withOneDash(std::string_view argument)
{
    return argument.starts_with("--") ? argument.substr(1) : argument;
}

bool isOneOf(std::string_view argument, const auto& options)
{
    return std::ranges::find(options, argument) != options.end();
}

bool isCompleteQtOption(std::string_view option)
{
    return isOneOf(option, optionsWithoutValue) ||
           std::ranges::any_of(
               optionsWithEqualsSign, [option](auto name) { return option.starts_with(name); });
}

std::string versionText()
{
    std::string text(identity::applicationName);
    return text.append(" ").append(identity::version).append("\n");
}

CommandLine refusal(std::string_view problem, std::string_view argument)
{
    std::string text("orlimo: ");
    text.append(problem).append(" \"").append(argument).append("\"; see orlimo --help\n");
    return {.request = CommandLine::Request::refuse, .text = text};
}

CommandLine unknownArgument(std::string_view argument)
{
    const bool isOption = argument.size() > 1 && argument.starts_with('-');
    return refusal(isOption ? "unknown option" : "unexpected argument", argument);
}

} // namespace

CommandLine CommandLine::parse(
    int argc,
    const char* const* argv,
    const std::function<std::size_t(std::span<const char* const>)>& systemArgumentCount)
{
    CommandLine result;
    for (int index = 1; index < argc; ++index) {
        const std::span remaining(argv + index, static_cast<std::size_t>(argc - index));
        if (const std::size_t count = systemArgumentCount(remaining); count > 0) {
            index += static_cast<int>(count) - 1;
            continue;
        }
        const std::string_view argument = argv[index];
        const std::string_view qtOption = withOneDash(argument);
        if (argument == "--help" || argument == "-h") {
            return {.request = Request::print, .text = std::string(help)};
        }
        if (argument == "--version" || argument == "-v") {
            return {.request = Request::print, .text = versionText()};
        }
        if (argument == launchedAtLoginArgument) {
            result.request = Request::runLaunchedAtLogin;
        } else if (argument == "--side-by-side") {
            result.sideBySide = true;
        } else if (isOneOf(qtOption, optionsWithNextArgument)) {
            if (++index == argc) {
                return refusal("a value is missing after", argument);
            }
        } else if (!isCompleteQtOption(qtOption)) {
            return unknownArgument(argument);
        }
    }
    return result;
}

} // namespace orlimo
