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

/// The text of the refusal with which the arguments are met; a test failure when they are not.
std::string refusalOf(const std::vector<const char*>& arguments)
{
    const CommandLine commandLine = parse(arguments);
    EXPECT_EQ(commandLine.request, Request::refuse) << testing::PrintToString(arguments);
    return commandLine.text;
}

TEST(CommandLine, RunsWithoutArguments)
{
    const CommandLine commandLine = parse({});
    EXPECT_EQ(commandLine.request, Request::run);
    EXPECT_EQ(commandLine.text, "");
}

TEST(CommandLine, RunsWithoutEvenAName)
{
    const char* const nothing = nullptr;
    EXPECT_EQ(CommandLine::parse(0, &nothing, systemArgumentCount).request, Request::run);
}

TEST(CommandLine, KnowsAStartAtLogin)
{
    const CommandLine commandLine = parse({"--launched-at-login"});
    EXPECT_EQ(commandLine.request, Request::runLaunchedAtLogin);
    EXPECT_EQ(commandLine.text, "");
    EXPECT_EQ(
        parse({"--launched-at-login", "--launched-at-login"}).request, Request::runLaunchedAtLogin);
}

TEST(CommandLine, RunsSideBySideOnlyWhenAskedTo)
{
    EXPECT_FALSE(parse({}).sideBySide);
    EXPECT_FALSE(parse({"--launched-at-login"}).sideBySide);
    EXPECT_FALSE(parse({"-qwindowtitle", "--side-by-side"}).sideBySide);
    for (const auto& arguments : std::vector<std::vector<const char*>>{
             {"--side-by-side"},
             {"--side-by-side", "--side-by-side"},
             {"-platform", "offscreen", "--side-by-side"},
             {"--side-by-side", "-platform", "offscreen"}})
    {
        const CommandLine commandLine = parse(arguments);
        EXPECT_TRUE(commandLine.sideBySide);
        EXPECT_EQ(commandLine.request, Request::run);
        EXPECT_EQ(commandLine.text, "");
    }
    const CommandLine atLogin = parse({"--side-by-side", "--launched-at-login"});
    EXPECT_TRUE(atLogin.sideBySide);
    EXPECT_EQ(atLogin.request, Request::runLaunchedAtLogin);
}

TEST(CommandLine, PrintsHelp)
{
    for (const char* option : {"--help", "-h"}) {
        const CommandLine commandLine = parse({option});
        EXPECT_EQ(commandLine.request, Request::print);
        EXPECT_THAT(commandLine.text, StartsWith("Usage: orlimo "));
        EXPECT_THAT(commandLine.text, HasSubstr("-h, --help "));
        EXPECT_THAT(commandLine.text, HasSubstr("-v, --version "));
        EXPECT_THAT(commandLine.text, HasSubstr("--launched-at-login "));
        EXPECT_THAT(commandLine.text, HasSubstr("--side-by-side "));
        EXPECT_THAT(commandLine.text, EndsWith("\n"));
    }
}

TEST(CommandLine, PrintsItsVersion)
{
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
          "-version",
          "-V",
          "-hv",
          "--hel",
          "--help=all",
          "--Help",
          "help",
          "-launched-at-login",
          "--launched-at-login=yes",
          "-side-by-side",
          "--side-by-side=yes",
          "-dialogs=none",
          "-fontengine=freetype",
          "-style-",
          "---style=fusion",
          "style=fusion",
          "platform",
          "-platform=offscreen",
          "-display=:0",
          "-reverse=yes",
          "-qmljsdebugger",
          "caf\xC3\xA9",
          "\xFF"})
    {
        const std::string text = refusalOf({argument});
        EXPECT_THAT(text, HasSubstr('"' + std::string(argument) + '"'));
        EXPECT_THAT(text, EndsWith("see orlimo --help\n"));
    }
}

TEST(CommandLine, RefusesTheUnknownWhereverItStands)
{
    EXPECT_THAT(refusalOf({"--launched-at-login", "x"}), HasSubstr("\"x\""));
    EXPECT_THAT(refusalOf({"x", "--launched-at-login"}), HasSubstr("\"x\""));
    EXPECT_THAT(refusalOf({"-platform", "offscreen", "x"}), HasSubstr("\"x\""));
    EXPECT_THAT(refusalOf({"-reverse", "x"}), HasSubstr("\"x\""));
    EXPECT_THAT(refusalOf({"-style=fusion", "x"}), HasSubstr("\"x\""));
    EXPECT_THAT(refusalOf({"first", "second"}), HasSubstr("\"first\""));
}

TEST(CommandLine, TheFirstArgumentThatSettlesTheMatterWins)
{
    EXPECT_EQ(parse({"--help", "--bogus"}).text, parse({"--help"}).text);
    EXPECT_EQ(parse({"--version", "--help"}).text, parse({"--version"}).text);
    EXPECT_EQ(parse({"--launched-at-login", "-v"}).text, parse({"--version"}).text);
    EXPECT_EQ(parse({"--bogus", "--help"}).request, Request::refuse);
}

TEST(CommandLine, PassesOverTheOptionsOfTheToolkit)
{
    for (const char* option :
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
        const std::string withTwoDashes = "-" + std::string(option);
        for (const char* name : {option, withTwoDashes.c_str()}) {
            EXPECT_EQ(parse({name, "value"}).request, Request::run) << name;
            EXPECT_EQ(
                parse({name, "value", "--launched-at-login"}).request, Request::runLaunchedAtLogin)
                << name;
            EXPECT_EQ(
                refusalOf({name}),
                "orlimo: a value is missing after \"" + std::string(name) +
                    "\"; see orlimo --help\n");
        }
    }
    for (const char* option :
         {"-reverse",
          "--reverse",
          "-widgetcount",
          "--widgetcount",
          "-style=fusion",
          "--style=fusion",
          "-stylesheet=look.qss",
          "--stylesheet=look.qss",
          "-qmljsdebugger=port:1234",
          "--qmljsdebugger=port:1234"})
    {
        EXPECT_EQ(parse({option}).request, Request::run) << option;
        EXPECT_EQ(parse({option, "--launched-at-login"}).request, Request::runLaunchedAtLogin)
            << option;
    }
}

TEST(CommandLine, TakesTheValueOfAToolkitOptionForNothingElse)
{
    EXPECT_EQ(parse({"-qwindowtitle", "--help"}).request, Request::run);
    EXPECT_EQ(parse({"-qwindowtitle", "--launched-at-login"}).request, Request::run);
    EXPECT_EQ(parse({"-qwindowtitle", "-platform", "-h"}).request, Request::print);
}

} // namespace
} // namespace orlimo
