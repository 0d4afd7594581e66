#include "tests/program/ProgramSession.h"
#include "tests/support/Await.h"
#include "tests/support/StoreIntegrity.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <csignal>
#include <memory>
#include <string>
#include <vector>

#include <sys/resource.h>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

constexpr const char* usersSettings =
    "[General]\ncapturingEnabled=true\nfourDigitInclude=false\nnote=not ours\n";
constexpr const char* completedSettings =
    "[General]\ncapturingEnabled=true\nfourDigitInclude=false\nloginItemEnabled=true\nnote=not "
    "ours\n";

/// The program that may open no more than `limit` descriptors.
class DescriptorLimitedProgram
{
public:
    explicit DescriptorLimitedProgram(unsigned descriptors)
        : limit(descriptors)
        , session({// No window opens by itself then, for want of a tray.
                   .arguments = {"--launched-at-login"},
                   .beforeStart = [descriptors] {
                       const rlimit few{descriptors, descriptors};
                       (void)::setrlimit(RLIMIT_NOFILE, &few);
                   }})
    {
        writeFile(session.preferences(), usersSettings);
        session.startWriter();
        session.startProgram();
    }

    /// Waits until the program has ended, or has started as far as it comes.
    void awaitStart()
    {
        EXPECT_TRUE(await([this] {
            return !session.program().isRunning() || says("file access allowed\n") ||
                   says("file access not allowed\n");
        }));
    }

    void checkOutcome()
    {
        const testing::ScopedTrace trace(__FILE__, __LINE__, limit);
        if (session.program().isRunning()) {
            session.program().terminate();
        } else {
            const auto end = session.program().awaitEnd();
            EXPECT_NE(session.program().errors(), "") << "ends without a word";
            // Qt and GLib end the process with one of the two.
            EXPECT_TRUE(end.status || end.signal == SIGABRT || end.signal == SIGTRAP)
                << end.signal.value_or(0);
        }
        EXPECT_THAT(
            contentOf(session.preferences()), testing::AnyOf(usersSettings, completedSettings));
        if (std::filesystem::exists(session.autostartEntry())) {
            EXPECT_THAT(contentOf(session.autostartEntry()), testing::EndsWith("Terminal=false\n"));
        }
        EXPECT_EQ(integrityOf(session.store()), "ok");
    }

private:
    [[nodiscard]] bool says(const std::string& line)
    {
        return session.program().output().find(line) != std::string::npos;
    }

    unsigned limit;
    ProgramSession session;
};

/// Tries every `step`th limit.
void tryLimits(unsigned step)
{
    std::vector<std::unique_ptr<DescriptorLimitedProgram>> programs;
    for (unsigned limit = 4; limit <= 24; limit += step) {
        programs.push_back(std::make_unique<DescriptorLimitedProgram>(limit));
    }
    for (const auto& program : programs) {
        program->awaitStart();
    }
    // What the start stores comes after what it prints.
    runEventLoop(300ms);
    for (const auto& program : programs) {
        program->checkOutcome();
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
