#include "app/CommandLine.h"

#include "platform/ApplicationIdentity.h"
#include "platform/desktop/SystemArguments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <iterator>
#include <sstream>
#include <string>
#include <utility>
#include <vector>

namespace orlimo {
namespace {

using Request = CommandLine::Request;

std::vector<std::string> wordsOf(const std::string& text)
{
    std::istringstream words(text);
    return {std::istream_iterator<std::string>(words), {}};
}

CommandLine parseArguments(const std::vector<std::string>& arguments)
{
    std::vector<const char*> argv{"orlimo"};
    for (const std::string& argument : arguments) {
        argv.push_back(argument.c_str());
    }
    argv.push_back(nullptr);
    return CommandLine::parse(static_cast<int>(argv.size()) - 1, argv.data(), systemArgumentCount);
}

/// Parses the arguments as they are typed, separated by blanks.
CommandLine parse(const std::string& typed)
{
    return parseArguments(wordsOf(typed));
}

void expectRefused(const CommandLine& commandLine, const std::string& problem)
{
    EXPECT_EQ(commandLine.request, Request::refuse);
    EXPECT_EQ(commandLine.text, "orlimo: " + problem + "; see orlimo --help\n");
}

TEST(CommandLine, SelectsHowToRun)
{
    struct Case
    {
        const char* arguments;
        Request request = Request::run;
        bool sideBySide = false;
    };
    for (const Case& expected :
         {Case{""},
          Case{"--launched-at-login", Request::runLaunchedAtLogin},
          Case{"--launched-at-login --launched-at-login", Request::runLaunchedAtLogin},
          Case{"--side-by-side", Request::run, true},
          Case{"--side-by-side --side-by-side", Request::run, true},
          Case{"-platform offscreen --side-by-side", Request::run, true},
          Case{"--side-by-side -platform offscreen", Request::run, true},
          Case{"--side-by-side --launched-at-login", Request::runLaunchedAtLogin, true},
          // The value of an option of Qt's is nothing else.
          Case{"-qwindowtitle --side-by-side"},
          Case{"-qwindowtitle --help"},
          Case{"-qwindowtitle --launched-at-login"}})
    {
        const CommandLine commandLine = parse(expected.arguments);
        SCOPED_TRACE(expected.arguments);
        EXPECT_EQ(commandLine.request, expected.request);
        EXPECT_EQ(commandLine.sideBySide, expected.sideBySide);
        EXPECT_EQ(commandLine.text, "");
    }
    const char* const nothing = nullptr;
    EXPECT_EQ(CommandLine::parse(0, &nothing, systemArgumentCount).request, Request::run)
        << "without even a name";
}

TEST(CommandLine, PrintsHelpOrVersionWhicheverComesFirst)
{
    const std::string help = parse("--help").text;
    EXPECT_THAT(help, testing::StartsWith("Usage: orlimo "));
    for (const char* listed :
         {"-h, --help ", "-v, --version ", "--launched-at-login ", "--side-by-side "})
    {
        EXPECT_THAT(help, testing::HasSubstr(listed));
    }
    EXPECT_THAT(help, testing::EndsWith("\n"));
    const std::string version = "Orlimo " + std::string(identity::version) + "\n";
    for (const auto& [arguments, text] :
         {std::pair("--help", help),
          std::pair("-h", help),
          std::pair("--version", version),
          std::pair("-v", version),
          std::pair("--help --bogus", help),
          std::pair("--version --help", version),
          std::pair("--launched-at-login -v", version),
          std::pair("-qwindowtitle -platform -h", help)})
    {
        EXPECT_EQ(parse(arguments).request, Request::print) << arguments;
        EXPECT_EQ(parse(arguments).text, text) << arguments;
    }
}

TEST(CommandLine, RefusesWhatItDoesNotKnow)
{
    const std::string options =
        "--bogus -- ---help -help -V -hv --hel --help=all --Help -side-by-side -launched-at-login "
        "--launched-at-login=yes -style- ---style=x -platform=offscreen -dialogs=none -reverse=yes "
        "-qmljsdebugger -fontengine=x";
    for (const std::string& option : wordsOf(options)) {
        expectRefused(parse(option), "unknown option \"" + option + '"');
    }
    for (const std::string argument :
         {"", "code", "-", "help", "style=fusion", "platform", "caf\xC3\xA9", "\xFF"})
    {
        expectRefused(parseArguments({argument}), "unexpected argument \"" + argument + '"');
    }
    for (const char* arguments :
         {"--launched-at-login x", "-platform offscreen x", "-reverse x", "-style=fusion x", "x y"})
    {
        expectRefused(parse(arguments), "unexpected argument \"x\"");
    }
    expectRefused(parse("--bogus --help"), "unknown option \"--bogus\"");
}

TEST(CommandLine, PassesOverQtOptionsWithOneDashOrTwo)
{
    const std::string withValue =
        "-display -geometry -platform -platformpluginpath -platformtheme -plugin -qwindowgeometry "
        "-qwindowicon -qwindowtitle -session -style -stylesheet";
    const std::string complete =
        "-reverse -widgetcount -style=fusion -stylesheet=look.qss -qmljsdebugger=port:1234";
    for (const std::string dash : {"", "-"}) {
        for (const std::string& option : wordsOf(withValue)) {
            const std::string name = dash + option;
            expectRefused(parse(name), "a value is missing after \"" + name + '"');
            EXPECT_EQ(
                parse(name + " value --launched-at-login").request, Request::runLaunchedAtLogin)
                << name;
        }
        for (const std::string& option : wordsOf(complete)) {
            EXPECT_EQ(
                parse(dash + option + " --launched-at-login").request, Request::runLaunchedAtLogin)
                << option;
        }
    }
}

} // namespace
} // namespace orlimo
