#include "app/CommandLine.h"

#include "platform/ApplicationIdentity.h"
#include "platform/desktop/SystemArguments.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>
#include <vector>

namespace orlimo {
namespace {

using Request = CommandLine::Request;
using testing::EndsWith;
using testing::HasSubstr;
using testing::StartsWith;

CommandLine parse(std::vector<const char*> arguments)
{
    arguments.insert(arguments.begin(), "orlimo");
    const int count = static_cast<int>(arguments.size());
    arguments.push_back(nullptr);
    return CommandLine::parse(count, arguments.data(), systemArgumentCount);
}

/// The text with which the arguments are refused; a test failure when they are not.
std::string refusalOf(const std::vector<const char*>& arguments)
{
    const CommandLine commandLine = parse(arguments);
    EXPECT_EQ(commandLine.request, Request::refuse) << testing::PrintToString(arguments);
    return commandLine.text;
}

TEST(CommandLine, SelectsHowToRun)
{
    struct Case
    {
        std::vector<const char*> arguments;
        Request request = Request::run;
        bool sideBySide = false;
    };
    for (const Case& expected : std::vector<Case>{
             {{}},
             {{"--launched-at-login"}, Request::runLaunchedAtLogin},
             {{"--launched-at-login", "--launched-at-login"}, Request::runLaunchedAtLogin},
             {{"--side-by-side"}, Request::run, true},
             {{"--side-by-side", "--side-by-side"}, Request::run, true},
             {{"-platform", "offscreen", "--side-by-side"}, Request::run, true},
             {{"--side-by-side", "-platform", "offscreen"}, Request::run, true},
             {{"--side-by-side", "--launched-at-login"}, Request::runLaunchedAtLogin, true},
             // The value of an option of Qt's is nothing else.
             {{"-qwindowtitle", "--side-by-side"}},
             {{"-qwindowtitle", "--help"}},
             {{"-qwindowtitle", "--launched-at-login"}}})
    {
        const CommandLine commandLine = parse(expected.arguments);
        SCOPED_TRACE(testing::PrintToString(expected.arguments));
        EXPECT_EQ(commandLine.request, expected.request);
        EXPECT_EQ(commandLine.sideBySide, expected.sideBySide);
        EXPECT_EQ(commandLine.text, "");
    }
    const char* const nothing = nullptr;
    EXPECT_EQ(CommandLine::parse(0, &nothing, systemArgumentCount).request, Request::run)
        << "without even a name";
}

TEST(CommandLine, PrintsHelpAndVersion)
{
    for (const char* option : {"--help", "-h"}) {
        const CommandLine commandLine = parse({option});
        EXPECT_EQ(commandLine.request, Request::print);
        EXPECT_THAT(commandLine.text, StartsWith("Usage: orlimo "));
        for (const char* listed :
             {"-h, --help ", "-v, --version ", "--launched-at-login ", "--side-by-side "})
        {
            EXPECT_THAT(commandLine.text, HasSubstr(listed));
        }
        EXPECT_THAT(commandLine.text, EndsWith("\n"));
    }
    for (const char* option : {"--version", "-v"}) {
        const CommandLine commandLine = parse({option});
        EXPECT_EQ(commandLine.request, Request::print);
        EXPECT_EQ(commandLine.text, "Orlimo " + std::string(identity::version) + "\n");
    }
}

TEST(CommandLine, RefusesWhatItDoesNotKnow)
{
    EXPECT_EQ(refusalOf({"--bogus"}), "orlimo: unknown option \"--bogus\"; see orlimo --help\n");
    EXPECT_EQ(refusalOf({"code"}), "orlimo: unexpected argument \"code\"; see orlimo --help\n");
    EXPECT_EQ(refusalOf({""}), "orlimo: unexpected argument \"\"; see orlimo --help\n");
    for (const char* argument :
         {"-",
          "--",
          "---help",
          "-help",
          "-V",
          "-hv",
          "--hel",
          "--help=all",
          "--Help",
          "help",
          "-side-by-side",
          "--launched-at-login=yes",
          "-style-",
          "---style=x",
          "style=fusion",
          "-platform=offscreen",
          "platform",
          "-dialogs=none",
          "-reverse=yes",
          "-qmljsdebugger",
          "caf\xC3\xA9",
          "\xFF",
          "-fontengine=x",
          "-launched-at-login"})
    {
        const std::string text = refusalOf({argument});
        EXPECT_THAT(text, HasSubstr('"' + std::string(argument) + '"'));
        EXPECT_THAT(text, EndsWith("see orlimo --help\n"));
    }
    for (const auto& arguments : std::vector<std::vector<const char*>>{
             {"--launched-at-login", "x"},
             {"-platform", "offscreen", "x"},
             {"-reverse", "x"},
             {"-style=fusion", "x"},
             {"x", "second"}})
    {
        EXPECT_THAT(refusalOf(arguments), HasSubstr("\"x\""));
    }
}

TEST(CommandLine, FollowsFirstArgumentThatEndsIt)
{
    EXPECT_EQ(parse({"--help", "--bogus"}).text, parse({"--help"}).text);
    EXPECT_EQ(parse({"--version", "--help"}).text, parse({"--version"}).text);
    EXPECT_EQ(parse({"--launched-at-login", "-v"}).text, parse({"--version"}).text);
    EXPECT_EQ(parse({"-qwindowtitle", "-platform", "-h"}).request, Request::print);
    EXPECT_EQ(parse({"--bogus", "--help"}).request, Request::refuse);
}

TEST(CommandLine, PassesOverQtOptionsWithOneDashOrTwo)
{
    for (const std::string option :
         {"-display",
          "-geometry",
          "-platform",
          "-platformpluginpath",
          "-platformtheme",
          "-plugin",
          "-qwindowgeometry",
          "-qwindowicon",
          "-qwindowtitle",
          "-session",
          "-style",
          "-stylesheet"})
    {
        for (const std::string& name : {option, "-" + option}) {
            EXPECT_EQ(
                refusalOf({name.c_str()}),
                "orlimo: a value is missing after \"" + name + "\"; see orlimo --help\n");
            EXPECT_EQ(
                parse({name.c_str(), "value", "--launched-at-login"}).request,
                Request::runLaunchedAtLogin)
                << name;
        }
    }
    for (const std::string option :
         {"-reverse",
          "-widgetcount",
          "-style=fusion",
          "-stylesheet=look.qss",
          "-qmljsdebugger=port:1234"})
    {
        for (const std::string& name : {option, "-" + option}) {
            EXPECT_EQ(
                parse({name.c_str(), "--launched-at-login"}).request, Request::runLaunchedAtLogin)
                << name;
        }
    }
}

} // namespace
} // namespace orlimo
