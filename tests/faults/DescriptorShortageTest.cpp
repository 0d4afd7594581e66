#include "tests/program/ProgramSession.h"
#include "tests/support/Await.h"
#include "tests/support/StoreIntegrity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <chrono>
#include <csignal>
#include <filesystem>
#include <map>
#include <string>

#include <sys/resource.h>

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using testing::AnyOf;
using testing::EndsWith;

constexpr const char* usersSettings =
    "[General]\ncapturingEnabled=true\nfourDigitInclude=false\nnote=not ours\n";
constexpr const char* completedSettings =
    "[General]\ncapturingEnabled=true\nfourDigitInclude=false\nloginItemEnabled=true\nnote=not "
    "ours\n";

ProgramSession::Settings withDescriptors(unsigned limit)
{
    return {// No window opens by itself then, for want of a tray.
            .arguments = {"--launched-at-login"},
            .beforeStart = [limit] {
                const rlimit few{limit, limit};
                (void)::setrlimit(RLIMIT_NOFILE, &few);
            }};
}

/// Whether the program has ended, or has started as far as it comes.
bool hasStarted(ChildProcess& program)
{
    const std::string& output = program.output();
    return !program.isRunning() || output.find("file access allowed\n") != std::string::npos ||
           output.find("file access not allowed\n") != std::string::npos;
}

void checkOutcome(ProgramSession& session)
{
    if (session.program().isRunning()) {
        session.program().terminate();
    } else {
        const auto end = session.program().awaitEnd();
        EXPECT_NE(session.program().errors(), "") << "ends without a word";
        // Qt and GLib end the process with one of the two.
        EXPECT_TRUE(end.status || end.signal == SIGABRT || end.signal == SIGTRAP)
            << end.signal.value_or(0);
    }
    EXPECT_THAT(contentOf(session.preferences()), AnyOf(usersSettings, completedSettings));
    if (std::filesystem::exists(session.autostartEntry())) {
        EXPECT_THAT(contentOf(session.autostartEntry()), EndsWith("Terminal=false\n"));
    }
    EXPECT_EQ(integrityOf(session.store()), "ok");
}

/// Tries every `step`th limit.
void tryLimits(unsigned step)
{
    std::map<unsigned, ProgramSession> sessions;
    for (unsigned limit = 4; limit <= 24; limit += step) {
        ProgramSession& session = sessions.try_emplace(limit, withDescriptors(limit)).first->second;
        writeFile(session.preferences(), usersSettings);
        session.startWriter();
        session.startProgram();
    }
    for (auto& [limit, session] : sessions) {
        EXPECT_TRUE(await([&program = session.program()] { return hasStarted(program); })) << limit;
    }
    // What the start stores comes after what it prints.
    runEventLoop(300ms);
    for (auto& [limit, session] : sessions) {
        const testing::ScopedTrace trace(__FILE__, __LINE__, limit);
        checkOutcome(session);
    }
}

TEST(DescriptorShortage, EndsWithALineOrLosesNothing)
{
    tryLimits(10);
}

TEST(DescriptorShortage, SlowAtEveryLimitEndsWithALineOrLosesNothing)
{
    tryLimits(2);
}

} // namespace
} // namespace orlimo
