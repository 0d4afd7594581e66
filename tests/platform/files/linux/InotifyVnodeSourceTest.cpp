#include "platform/files/UniqueFd.h"
#include "platform/files/VnodeSource.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/ThreadCreationBlocker.h"
#include "tests/support/ThreadSafeManualQueue.h"
#include "tests/support/process/ForkedRun.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <filesystem>
#include <fstream>
#include <memory>
#include <set>
#include <string>
#include <system_error>
#include <thread>
#include <vector>

#include <fcntl.h>
#include <sched.h>
#include <sys/resource.h>
#include <unistd.h>

namespace orlimo {
namespace {

using namespace std::chrono_literals;

/// The numbers of this process's threads ("task") or open descriptors ("fd").
std::set<int> numbersIn(const std::string& folder)
{
    std::set<int> numbers;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/" + folder)) {
        numbers.insert(std::stoi(entry.path().filename()));
    }
    return numbers;
}

/// The kernel's status of one thread under `name`, such as "SigBlk".
std::string statusOf(int thread, const std::string& name)
{
    std::ifstream status("/proc/self/task/" + std::to_string(thread) + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":")) {
            return line.substr(line.find_first_not_of(" \t", name.size() + 1));
        }
    }
    return "";
}

/// A source for one file, whose handlers run when the test says so.
class InotifyVnodeSourceTest : public testing::Test
{
protected:
    InotifyVnodeSourceTest()
    {
        writeFile(file, content);
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
        source->setCancelHandler([this] { ++cancellations; });
    }

    void watch(VnodeEvents mask = vnodeExtend)
    {
        make(mask);
        source->resume();
    }

    void append(std::string_view bytes = "more") const { appendToFile(file, bytes); }

    [[nodiscard]] bool awaitPost()
    {
        return await([this] { return queue.waiting() > 0; });
    }
    [[nodiscard]] bool awaitDelivery() { return awaitPost() && queue.run() > 0; }

    /// Whether the source posts an event although it should not.
    [[nodiscard]] bool postsSoon(std::chrono::milliseconds span = 100ms)
    {
        return await([this] { return queue.waiting() > 0; }, span);
    }

    /// The source's own thread.
    [[nodiscard]] int watcher() const
    {
        const auto threads = numbersIn("task");
        std::vector<int> added;
        std::set_difference(
            threads.begin(),
            threads.end(),
            threadsBefore.begin(),
            threadsBefore.end(),
            std::back_inserter(added));
        EXPECT_EQ(added.size(), 1U);
        return added.empty() ? 0 : added.front();
    }

    const std::string content = std::string(2000, 'x');
    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "plain";
    UniqueFd opened;
    std::set<int> threadsBefore;
    ThreadSafeManualQueue queue;
    int events = 0;
    VnodeEvents eventData = 0;
    int cancellations = 0;
    std::unique_ptr<VnodeSource> source;
};

TEST_F(InotifyVnodeSourceTest, GrowthRunsTheHandlerOnTheQueueOnce)
{
    append("before the watch");
    watch();
    source->resume();
    EXPECT_NE(watcher(), 0) << "a second resume starts no second thread";
    EXPECT_FALSE(postsSoon());
    for (int growth = 1; growth <= 2; ++growth) {
        append();
        ASSERT_TRUE(awaitPost());
        EXPECT_EQ(events, growth - 1);
        queue.run();
        EXPECT_EQ(events, growth);
        EXPECT_EQ(eventData, vnodeExtend);
        EXPECT_EQ(source->data(), 0U) << "outside the handler";
    }
    EXPECT_FALSE(postsSoon());
}

TEST_F(InotifyVnodeSourceTest, OtherChangesAreNotReported)
{
    watch();
    std::fstream stream(file, std::ios::binary | std::ios::in | std::ios::out);
    stream << "overwritten" << std::flush;
    ASSERT_TRUE(stream.good());
    (void)contentOf(file);
    std::filesystem::permissions(file, std::filesystem::perms::owner_read);
    std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now());
    EXPECT_FALSE(postsSoon());
    std::filesystem::resize_file(file, 0);
    EXPECT_FALSE(postsSoon());
    append();
    EXPECT_TRUE(awaitDelivery()) << "growth after truncation";
}

TEST_F(InotifyVnodeSourceTest, NothingIsReportedUnlessResumedAndAskedFor)
{
    make();
    append();
    EXPECT_FALSE(postsSoon());
    watch(~vnodeExtend);
    append();
    EXPECT_FALSE(postsSoon());
}

TEST_F(InotifyVnodeSourceTest, OpenFileIsWatchedWhateverItsName)
{
    const auto renamed = folder.path() / "renamed";
    std::filesystem::rename(file, renamed);
    writeFile(file, "another file of the same name");
    watch();
    append();
    EXPECT_FALSE(postsSoon());
    const UniqueFd writer(::open(renamed.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
    std::filesystem::remove(renamed);
    EXPECT_FALSE(postsSoon());
    ASSERT_EQ(::write(writer.get(), "more", 4), 4);
    EXPECT_TRUE(awaitDelivery());
    EXPECT_EQ(events, 1);
}

TEST_F(InotifyVnodeSourceTest, PendingEventsAreMerged)
{
    watch();
    append();
    ASSERT_TRUE(awaitPost());
    for (int growth = 0; growth < 10; ++growth) {
        append();
        EXPECT_FALSE(await([this] { return queue.waiting() > 1; }, 10ms));
    }
    EXPECT_EQ(queue.waiting(), 1U);
    queue.run();
    EXPECT_LE(events, 2) << "at most one more, for what was seen late";
}

TEST_F(InotifyVnodeSourceTest, GrowthDuringTheHandlerIsAnotherEvent)
{
    watch();
    source->setEventHandler([this] {
        if (++events == 1) {
            append();
            EXPECT_TRUE(awaitPost());
        }
    });
    append();
    ASSERT_TRUE(awaitDelivery());
    EXPECT_EQ(events, 2);
}

TEST_F(InotifyVnodeSourceTest, ThreadSleepsWhileNothingHappens)
{
    watch();
    append();
    ASSERT_TRUE(awaitDelivery());
    const int thread = watcher();
    ASSERT_TRUE(await([thread] { return statusOf(thread, "State").starts_with("S"); }));
    const auto wakeUps = [thread] {
        return std::stol(statusOf(thread, "voluntary_ctxt_switches")) +
               std::stol(statusOf(thread, "nonvoluntary_ctxt_switches"));
    };
    std::filesystem::remove(file);
    runEventLoop(50ms);
    const long before = wakeUps();
    runEventLoop(300ms);
    EXPECT_EQ(wakeUps(), before);
}

TEST_F(InotifyVnodeSourceTest, SignalsAreLeftToTheMainThread)
{
    watch();
    append();
    ASSERT_TRUE(awaitDelivery()) << "a thread blocks every signal until it has started";
    const auto blocked = std::stoull(statusOf(watcher(), "SigBlk"), nullptr, 16);
    for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGUSR1, SIGCHLD}) {
        EXPECT_TRUE((blocked >> static_cast<unsigned>(signal - 1) & 1U) != 0) << signal;
    }
    sigset_t own{};
    ASSERT_EQ(::pthread_sigmask(SIG_SETMASK, nullptr, &own), 0);
    EXPECT_EQ(::sigismember(&own, SIGTERM), 0) << "blocked in the main thread too";
}

TEST_F(InotifyVnodeSourceTest, LastGrowthOfManyWritersIsReported)
{
    watch();
    constexpr std::uintmax_t writers = 4;
    constexpr std::uintmax_t growthsOfEach = 500;
    std::uintmax_t seen = 0;
    source->setEventHandler([&] { seen = std::filesystem::file_size(file); });
    std::vector<std::jthread> threads;
    for (std::uintmax_t writer = 0; writer < writers; ++writer) {
        threads.emplace_back([this] {
            for (std::uintmax_t growth = 0; growth < growthsOfEach; ++growth) {
                append("x");
            }
        });
    }
    EXPECT_TRUE(await([&] {
        queue.run();
        return seen == content.size() + writers * growthsOfEach;
    })) << seen;
}

// Cancelling

TEST_F(InotifyVnodeSourceTest, CancelDropsPendingEventAndRunsItsHandlerOnceAndLater)
{
    for (const bool isResumed : {true, false}) {
        events = cancellations = 0;
        make();
        if (isResumed) {
            source->resume();
            append();
            ASSERT_TRUE(awaitPost());
        }
        source->cancel();
        append();
        EXPECT_FALSE(await([this] { return queue.waiting() > 2; }, 50ms));
        EXPECT_EQ(cancellations, 0);
        for (int time = 0; time < 2; ++time) {
            queue.run();
            EXPECT_EQ(cancellations, 1);
            EXPECT_EQ(events, 0);
            source->cancel();
        }
    }
}

TEST_F(InotifyVnodeSourceTest, HandlersAreKeptUntilCancelled)
{
    watch();
    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> kept = token;
    source->setEventHandler([token] {});
    source->setCancelHandler([token] {});
    token.reset();
    append();
    ASSERT_TRUE(awaitDelivery());
    source->cancel();
    EXPECT_FALSE(kept.expired());
    queue.run();
    EXPECT_TRUE(kept.expired());
}

TEST_F(InotifyVnodeSourceTest, HandlersMayCancelAndDestroyTheSource)
{
    watch();
    source->setEventHandler([this] {
        ++events;
        source->cancel();
    });
    source->setCancelHandler([this] {
        ++cancellations;
        source.reset();
    });
    append();
    ASSERT_TRUE(awaitDelivery());
    EXPECT_EQ(cancellations, 1);
    EXPECT_EQ(source, nullptr);

    watch();
    source->setEventHandler([this] {
        ++events;
        source.reset();
    });
    append();
    ASSERT_TRUE(awaitDelivery());
    append();
    EXPECT_FALSE(postsSoon());
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
            EXPECT_EQ(numbersIn("task"), threadsBefore);
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
            append("x");
        }
    });
    for (int time = 0; time < 50; ++time) {
        watch();
        ASSERT_TRUE(awaitDelivery());
        if (time % 2 == 0) {
            source->cancel();
        }
        source.reset();
        queue.run();
    }
}

// The system's limits, each reached in another process

/// The errno value with which a source for `descriptor` cannot be made, 0 when it can; 255 for a
/// failure that leaks a descriptor.
int errorOfWatching(int descriptor)
{
    ThreadSafeManualQueue queue;
    const int free = ::dup(0);
    ::close(free);
    try {
        (void)makeFileSystemObjectSource(descriptor, vnodeExtend, queue);
    } catch (const std::system_error& error) {
        const bool isReleased = free < 0 || ::dup(0) == free;
        const bool isErrno = error.code().category() == std::generic_category();
        return isErrno && isReleased ? error.code().value() : 255;
    }
    return 0;
}

TEST_F(InotifyVnodeSourceTest, ClosedFileThrowsTheSystemsError)
{
    const int error = errorOfWatching(-1);
    EXPECT_TRUE(error == ENOENT || error == EBADF) << error;
}

TEST_F(InotifyVnodeSourceTest, TooManyWatchesThrowTheSystemsError)
{
    constexpr int notPossibleHere = 77;
    const auto run = runForked([this] {
        const bool isPossible = ::unshare(CLONE_NEWUSER) == 0;
        std::ofstream limit("/proc/sys/user/max_inotify_watches");
        limit << 0 << std::flush;
        ::_exit(isPossible && limit ? errorOfWatching(opened.get()) : notPossibleHere);
    });
    if (run.status == notPossibleHere) {
        GTEST_SKIP() << "user namespaces are not allowed here";
    }
    EXPECT_EQ(run.status, ENOSPC);
}

TEST_F(InotifyVnodeSourceTest, TooFewDescriptorsThrowTheSystemsError)
{
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizers' own checks need descriptors";
#endif
    // Two are needed.
    for (const int left : {0, 1, 2}) {
        const auto run = runForked([this, left] {
            // Whatever the process has open already, which differs from test to test.
            const auto limit = static_cast<rlim_t>(*numbersIn("fd").rbegin() + 8);
            const rlimit few{limit, limit};
            (void)::setrlimit(RLIMIT_NOFILE, &few);
            int spare = 0;
            while (::dup(0) >= 0) {
                ++spare;
            }
            for (int closed = 1; closed <= left; ++closed) {
                ::close(static_cast<int>(limit) - closed);
            }
            ::_exit(spare < left ? 254 : errorOfWatching(opened.get()));
        });
        EXPECT_EQ(run.status, left < 2 ? EMFILE : 0) << left << " left\n" << run.errors;
    }
}

TEST_F(InotifyVnodeSourceTest, FailedThreadStartThrowsAndLeavesSignalsAsTheyWere)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only root can prevent the start of threads";
    }
    const auto run = runForked([this] {
        const ThreadCreationBlocker blocker;
        make();
        try {
            source->resume();
        } catch (const std::system_error& error) {
            sigset_t own{};
            (void)::pthread_sigmask(SIG_SETMASK, nullptr, &own);
            ::_exit(::sigismember(&own, SIGTERM) == 0 ? error.code().value() : 254);
        }
        ::_exit(blocker.isPossible() ? 253 : 255);
    });
    EXPECT_EQ(run.status, EAGAIN) << run.errors;
}

} // namespace
} // namespace orlimo
