#include "platform/files/UniqueFd.h"
#include "platform/files/VnodeSource.h"
#include "tests/support/Await.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <cerrno>
#include <chrono>
#include <csignal>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <system_error>
#include <thread>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

/// How long an event is awaited that must not come.
constexpr auto soon = 100ms;

/// The numbers of this process's threads ("task") or open descriptors ("fd").
std::set<int> numbersIn(const std::string& folder)
{
    std::set<int> numbers;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/" + folder)) {
        numbers.insert(std::stoi(entry.path().filename()));
    }
    return numbers;
}

/// A source for one file, whose handlers run when the test says so.
class InotifyVnodeSourceTest : public testing::Test
{
protected:
    InotifyVnodeSourceTest()
    {
        writeFile(file, "content");
        opened = UniqueFd(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
        // A sanitizer starts a thread of its own with the first one.
        std::thread([] {}).join();
        threadsBefore = numbersIn("task");
    }

    void make(VnodeEvents mask = vnodeExtend)
    {
        source = makeFileSystemObjectSource(opened.get(), mask, queue);
        source->setEventHandler([this] {
            ++events;
            eventData = source->data();
        });
    }

    void watch(VnodeEvents mask = vnodeExtend)
    {
        make(mask);
        source->resume();
    }

    void append() const { appendToFile(file, "more"); }

    [[nodiscard]] bool awaitPost(std::chrono::milliseconds limit = defaultTimeout)
    {
        return await([this] { return queue.waiting() > 0; }, limit);
    }
    [[nodiscard]] bool awaitDelivery() { return awaitPost() && queue.run() > 0; }

    /// The source's own thread.
    [[nodiscard]] int watcher() const
    {
        auto added = numbersIn("task");
        std::erase_if(added, [this](int thread) { return threadsBefore.contains(thread); });
        EXPECT_EQ(added.size(), 1U);
        return added.empty() ? 0 : *added.begin();
    }

    /// The kernel's status of that thread under `name`, such as "SigBlk".
    [[nodiscard]] std::string watcherStatus(const std::string& name) const
    {
        std::ifstream status("/proc/self/task/" + std::to_string(watcher()) + "/status");
        for (std::string line; std::getline(status, line);) {
            if (line.starts_with(name + ":")) {
                return line.substr(line.find_first_not_of(" \t", name.size() + 1));
            }
        }
        return "";
    }

    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "plain";
    UniqueFd opened;
    std::set<int> threadsBefore;
    ManualQueue queue;
    int events = 0;
    VnodeEvents eventData = 0;
    std::unique_ptr<VnodeSource> source;
};

TEST_F(InotifyVnodeSourceTest, GrowthRunsTheHandlerOnTheQueueOnce)
{
    make();
    append();
    EXPECT_FALSE(awaitPost(soon)) << "before it is resumed";
    watch();
    source->resume();
    EXPECT_NE(watcher(), 0) << "a second resume starts no second thread";
    EXPECT_FALSE(awaitPost(soon)) << "of before it was made";
    for (int growth = 1; growth <= 2; ++growth) {
        append();
        ASSERT_TRUE(awaitPost());
        EXPECT_EQ(events, growth - 1);
        queue.run();
        EXPECT_EQ(events, growth);
        EXPECT_EQ(eventData, vnodeExtend);
        EXPECT_EQ(source->data(), 0U) << "outside the handler";
    }
    EXPECT_FALSE(awaitPost(soon));
    watch(~vnodeExtend);
    append();
    EXPECT_FALSE(awaitPost(soon)) << "not requested";
}

TEST_F(InotifyVnodeSourceTest, OpenFileIsWatchedAlsoWhenItWasRemoved)
{
    const UniqueFd writer(::open(file.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
    std::filesystem::remove(file);
    writeFile(file, "another file of the same name");
    watch();
    append();
    EXPECT_FALSE(awaitPost(soon));
    ASSERT_EQ(::write(writer.get(), "more", 4), 4);
    EXPECT_TRUE(awaitDelivery());
    EXPECT_EQ(events, 1);
}

TEST_F(InotifyVnodeSourceTest, PendingEventsAreMergedUntilTheHandlerRuns)
{
    watch();
    source->setEventHandler([this] {
        if (++events == 1) {
            append();
            EXPECT_TRUE(awaitPost());
        }
    });
    append();
    ASSERT_TRUE(awaitPost());
    for (int growth = 0; growth < 5; ++growth) {
        append();
        EXPECT_FALSE(await([this] { return queue.waiting() > 1; }, 10ms));
    }
    queue.run();
    EXPECT_GE(events, 2);
    EXPECT_LE(events, 3) << "at most one more, for what was seen late";
}

TEST_F(InotifyVnodeSourceTest, ThreadSleepsWhileNothingHappensAndBlocksSignals)
{
    watch();
    append();
    ASSERT_TRUE(awaitDelivery()) << "a thread blocks every signal until it has started";
    const auto blocked = std::stoull(watcherStatus("SigBlk"), nullptr, 16);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGUSR1, SIGCHLD}) {
        EXPECT_TRUE((blocked >> static_cast<unsigned>(signal - 1) & 1U) != 0) << signal;
    }
    sigset_t own{};
    ASSERT_EQ(::pthread_sigmask(SIG_SETMASK, nullptr, &own), 0);
    EXPECT_EQ(::sigismember(&own, SIGTERM), 0) << "blocked in the main thread too";

    ASSERT_TRUE(await([this] { return watcherStatus("State").starts_with("S"); }));
    const auto wakeUps = [this] {
        return watcherStatus("voluntary_ctxt_switches") + " " +
               watcherStatus("nonvoluntary_ctxt_switches");
    };
    std::filesystem::remove(file);
    runEventLoop(50ms);
    const auto before = wakeUps();
    runEventLoop(300ms);
    EXPECT_EQ(wakeUps(), before);
}

TEST_F(InotifyVnodeSourceTest, CancelDropsPendingEventAndThenBothHandlers)
{
    for (const bool isResumed : {true, false}) {
        int cancellations = 0;
        make();
        const auto token = std::make_shared<int>(0);
        source->setEventHandler([this, token] { ++events; });
        source->setCancelHandler([&cancellations, token] { ++cancellations; });
        if (isResumed) {
            source->resume();
            append();
            ASSERT_TRUE(awaitPost());
        }
        source->cancel();
        EXPECT_EQ(cancellations, 0);
        EXPECT_EQ(token.use_count(), 3);
        for (int time = 0; time < 2; ++time) {
            queue.run();
            EXPECT_EQ(cancellations, 1);
            EXPECT_EQ(events, 0);
            EXPECT_EQ(token.use_count(), 1);
            source->cancel();
        }
    }
}

TEST_F(InotifyVnodeSourceTest, HandlersMayCancelAndDestroyTheSource)
{
    for (const bool isCancelled : {true, false}) {
        watch();
        source->setEventHandler([this, isCancelled] {
            ++events;
            isCancelled ? source->cancel() : source.reset();
        });
        source->setCancelHandler([this] { source.reset(); });
        append();
        ASSERT_TRUE(awaitDelivery());
        EXPECT_EQ(source, nullptr);
    }
    append();
    EXPECT_FALSE(awaitPost(soon));
    EXPECT_EQ(events, 2);
}

TEST_F(InotifyVnodeSourceTest, DestructionDropsPendingEventAndReleasesThreadAndDescriptors)
{
    const auto descriptorsBefore = numbersIn("fd");
    for (const bool isCancelled : {true, false}) {
        watch();
        append();
        ASSERT_TRUE(awaitPost());
        EXPECT_GT(numbersIn("fd").size(), descriptorsBefore.size());
        if (isCancelled) {
            source->cancel();
        }
        source.reset();
        queue.run();
        EXPECT_EQ(events, 0);
        EXPECT_EQ(numbersIn("task"), threadsBefore);
        EXPECT_EQ(numbersIn("fd"), descriptorsBefore) << "the file is its owner's";
    }
}

TEST_F(InotifyVnodeSourceTest, MayBeDestroyedWhileTheFileGrows)
{
    const std::jthread writer([this](const std::stop_token& enough) {
        while (!enough.stop_requested()) {
            append();
        }
    });
    for (int time = 0; time < 50; ++time) {
        watch();
        ASSERT_TRUE(awaitDelivery());
        source.reset();
        queue.run();
    }
}

TEST_F(InotifyVnodeSourceTest, ClosedFileThrowsTheSystemsErrorAndLeaksNothing)
{
    const auto descriptorsBefore = numbersIn("fd");
    try {
        (void)makeFileSystemObjectSource(-1, vnodeExtend, queue);
        FAIL() << "there is no such descriptor";
    } catch (const std::system_error& error) {
        EXPECT_EQ(error.code().category(), std::generic_category());
        EXPECT_TRUE(error.code().value() == ENOENT || error.code().value() == EBADF)
            << error.what();
    }
    EXPECT_EQ(numbersIn("fd"), descriptorsBefore);
}

} // namespace
} // namespace orlimo
