#include "platform/files/UniqueFd.h"
#include "platform/files/VnodeSource.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/ThreadCreationBlocker.h"
#include "tests/support/ThreadSafeManualQueue.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/UniqueUser.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <chrono>
#include <csignal>
#include <cstdint>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <functional>
#include <iterator>
#include <memory>
#include <optional>
#include <set>
#include <string>
#include <system_error>
#include <thread>
#include <utility>
#include <vector>

#include <fcntl.h>
#include <sched.h>
#include <sys/inotify.h>
#include <sys/resource.h>
#include <unistd.h>

namespace orlimo {
namespace {

using namespace std::chrono_literals;
using std::chrono::steady_clock;

/// What a child answers when the host does not let it do what the test needs.
constexpr int notPossibleHere = 77;

/// The threads of this process, by their id.
std::set<std::string> threads()
{
    std::set<std::string> ids;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/task")) {
        ids.insert(entry.path().filename());
    }
    return ids;
}

/// What the host says about one thread under `name`, such as "SigBlk".
std::string statusOf(const std::string& thread, const std::string& name)
{
    std::ifstream status("/proc/self/task/" + thread + "/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with(name + ":")) {
            return line.substr(line.find_first_not_of(" \t", name.size() + 1));
        }
    }
    return "";
}

std::ptrdiff_t openDescriptors()
{
    return std::distance(std::filesystem::directory_iterator("/proc/self/fd"), {});
}

/// A source for one file, whose handlers run when the test says so.
class InotifyVnodeSourceTest : public testing::Test
{
protected:
    InotifyVnodeSourceTest()
    {
        writeFile(file, content);
        opened = UniqueFd(::open(file.c_str(), O_RDONLY | O_CLOEXEC));
        // A sanitizer starts a thread of its own with the first one; tests that count threads
        // begin after that.
        std::thread([] {}).join();
    }

    /// Makes the source, counts its events and resumes it.
    void watch(VnodeEvents mask = vnodeExtend)
    {
        source = makeFileSystemObjectSource(opened.get(), mask, queue);
        source->setEventHandler([this] { ++events; });
        source->setCancelHandler([this] { ++cancellations; });
        source->resume();
    }

    void append(std::string_view bytes = "more") const { appendToFile(file, bytes); }

    /// Waits until the source has something to deliver and delivers it.
    [[nodiscard]] bool awaitDelivery()
    {
        return await([this] { return queue.waiting() > 0; }) && queue.run() > 0;
    }

    /// Whether the source has something to deliver although it should not.
    [[nodiscard]] bool deliversSoon(std::chrono::milliseconds span = 100ms)
    {
        return await([this] { return queue.waiting() > 0; }, span);
    }

    const std::string content = std::string(2000, 'x');
    TemporaryFolder folder;
    std::filesystem::path file = folder.path() / "plain";
    UniqueFd opened;
    ThreadSafeManualQueue queue;
    int events = 0;
    int cancellations = 0;
    std::unique_ptr<VnodeSource> source;
};

TEST_F(InotifyVnodeSourceTest, ReportsGrowth)
{
    watch();
    append();
    ASSERT_TRUE(awaitDelivery());
    EXPECT_EQ(events, 1);
    append();
    ASSERT_TRUE(awaitDelivery());
    EXPECT_EQ(events, 2);
    EXPECT_FALSE(deliversSoon());
}

TEST_F(InotifyVnodeSourceTest, SaysInsideTheHandlerWhatTheCallStandsFor)
{
    watch();
    std::vector<VnodeEvents> seen;
    source->setEventHandler([&] { seen.push_back(source->data()); });
    EXPECT_EQ(source->data(), 0U);
    append();
    ASSERT_TRUE(awaitDelivery());
    EXPECT_EQ(seen, std::vector{vnodeExtend});
    EXPECT_EQ(source->data(), 0U);
}

TEST_F(InotifyVnodeSourceTest, RunsHandlersOnTheQueueAlone)
{
    watch();
    append();
    ASSERT_TRUE(await([this] { return queue.waiting() == 1; }));
    EXPECT_EQ(events, 0);
    queue.run();
    EXPECT_EQ(events, 1);
}

TEST_F(InotifyVnodeSourceTest, ReportsTheGrowthOfAPlainFileAtOnce)
{
    watch();
    // The best of several, so that a busy machine does not count against it.
    auto best = steady_clock::duration::max();
    for (int growth = 0; growth < 20; ++growth) {
        const auto start = steady_clock::now();
        append();
        ASSERT_TRUE(awaitDelivery());
        best = std::min(best, steady_clock::now() - start);
    }
    EXPECT_LT(best, 100ms);
}

TEST_F(InotifyVnodeSourceTest, MergesWhatPilesUpBeforeTheHandlerRuns)
{
    watch();
    append();
    ASSERT_TRUE(await([this] { return queue.waiting() > 0; }));
    for (int growth = 0; growth < 10; ++growth) {
        append();
        EXPECT_FALSE(await([this] { return queue.waiting() > 1; }, 10ms));
    }
    EXPECT_EQ(queue.waiting(), 1U);
    queue.run();
    EXPECT_LE(events, 2) << "one more, at the most, for what was seen late";
}

TEST_F(InotifyVnodeSourceTest, ReportsWhatGrowsWhileTheHandlerRuns)
{
    watch();
    bool offered = false;
    source->setEventHandler([&] {
        if (++events == 1) {
            append();
            offered = await([this] { return queue.waiting() > 0; });
        }
    });
    append();
    ASSERT_TRUE(awaitDelivery());
    EXPECT_TRUE(offered);
    EXPECT_EQ(events, 2);
}

TEST_F(InotifyVnodeSourceTest, OverwritingIsNotGrowth)
{
    watch();
    std::fstream stream(file, std::ios::binary | std::ios::in | std::ios::out);
    for (int number = 0; number < 10; ++number) {
        stream.seekp(0);
        stream << "overwritten" << std::flush;
    }
    ASSERT_TRUE(stream.good());
    EXPECT_FALSE(deliversSoon());
}

TEST_F(InotifyVnodeSourceTest, TruncatingIsNotGrowth)
{
    watch();
    std::filesystem::resize_file(file, 1000);
    EXPECT_FALSE(deliversSoon());
    std::filesystem::resize_file(file, 0);
    EXPECT_FALSE(deliversSoon());
}

TEST_F(InotifyVnodeSourceTest, ReadingAndChangingAttributesAreNotGrowth)
{
    watch();
    EXPECT_EQ(contentOf(file), content);
    std::filesystem::permissions(file, std::filesystem::perms::owner_read);
    std::filesystem::permissions(file, std::filesystem::perms(0644));
    std::filesystem::last_write_time(file, std::filesystem::file_time_type::clock::now());
    EXPECT_FALSE(deliversSoon());
}

TEST_F(InotifyVnodeSourceTest, GrowthAfterAShrinkCounts)
{
    watch();
    std::filesystem::resize_file(file, 0);
    // Byte by byte, and never up to the size that the file had.
    for (std::size_t size = 1; size < content.size() && queue.waiting() == 0; ++size) {
        append("x");
        (void)deliversSoon(2ms);
    }
    EXPECT_LT(std::filesystem::file_size(file), content.size());
    queue.run();
    EXPECT_GE(events, 1);
}

TEST_F(InotifyVnodeSourceTest, AHoleAtTheEndIsGrowth)
{
    watch();
    std::filesystem::resize_file(file, 0x1'0000'0000);
    ASSERT_TRUE(awaitDelivery());
    EXPECT_EQ(events, 1);
}

TEST_F(InotifyVnodeSourceTest, DoesNotReportWhatTheFileHeldBefore)
{
    append();
    watch();
    EXPECT_FALSE(deliversSoon());
}

TEST_F(InotifyVnodeSourceTest, ReportsNothingBeforeItIsResumed)
{
    source = makeFileSystemObjectSource(opened.get(), vnodeExtend, queue);
    source->setEventHandler([this] { ++events; });
    append();
    EXPECT_FALSE(deliversSoon());
}

TEST_F(InotifyVnodeSourceTest, IsResumedOnce)
{
    const auto before = threads();
    watch();
    source->resume();
    EXPECT_EQ(threads().size(), before.size() + 1);
    append();
    ASSERT_TRUE(awaitDelivery());
    EXPECT_EQ(events, 1);
    EXPECT_FALSE(deliversSoon());
}

TEST_F(InotifyVnodeSourceTest, ReportsNothingWhenGrowthIsNotAskedFor)
{
    watch(~vnodeExtend);
    append();
    EXPECT_FALSE(deliversSoon());
}

TEST_F(InotifyVnodeSourceTest, FollowsARenamedFile)
{
    watch();
    const auto renamed = folder.path() / "renamed";
    std::filesystem::rename(file, renamed);
    writeFile(file, content + content);
    EXPECT_FALSE(deliversSoon());
    appendToFile(renamed, "more");
    ASSERT_TRUE(awaitDelivery());
    EXPECT_EQ(events, 1);
}

TEST_F(InotifyVnodeSourceTest, WatchesTheOpenFileAlsoWhenItsNameLedElsewhereBefore)
{
    std::filesystem::remove(file);
    writeFile(file, "another file of the same name");
    watch();
    append();
    EXPECT_FALSE(deliversSoon());
}

TEST_F(InotifyVnodeSourceTest, ReportsTheGrowthOfADeletedFileThatSomebodyStillWrites)
{
    // The open file lives on without its name, and whoever has it open may still lengthen it.
    const UniqueFd writer(::open(file.c_str(), O_WRONLY | O_APPEND | O_CLOEXEC));
    watch();
    std::filesystem::remove(file);
    EXPECT_FALSE(deliversSoon());
    ASSERT_EQ(::write(writer.get(), "more", 4), 4);
    ASSERT_TRUE(awaitDelivery());
    EXPECT_EQ(events, 1);
}

TEST_F(InotifyVnodeSourceTest, SleepsWhileNothingHappens)
{
    const auto before = threads();
    watch();
    const auto after = threads();
    std::vector<std::string> own;
    std::set_difference(
        after.begin(), after.end(), before.begin(), before.end(), std::back_inserter(own));
    ASSERT_EQ(own.size(), 1U);

    const auto wakeUps = [&own] {
        return std::stol(statusOf(own.front(), "voluntary_ctxt_switches")) +
               std::stol(statusOf(own.front(), "nonvoluntary_ctxt_switches"));
    };
    append();
    ASSERT_TRUE(awaitDelivery());
    ASSERT_TRUE(await([&own] { return statusOf(own.front(), "State").starts_with("S"); }));
    std::filesystem::remove(file);
    runEventLoop(50ms);
    const long wakeUpsBefore = wakeUps();
    runEventLoop(300ms);
    EXPECT_EQ(wakeUps(), wakeUpsBefore);
}

TEST_F(InotifyVnodeSourceTest, LeavesSignalsToTheMainThread)
{
    const auto before = threads();
    watch();
    append();
    ASSERT_TRUE(awaitDelivery()) << "a thread that has not begun yet blocks every signal";
    for (const std::string& thread : threads()) {
        if (!before.contains(thread)) {
            const auto blocked = std::stoull(statusOf(thread, "SigBlk"), nullptr, 16);
            for (const int signal : {SIGTERM, SIGINT, SIGHUP, SIGUSR1, SIGCHLD}) {
                EXPECT_TRUE((blocked >> static_cast<unsigned>(signal - 1) & 1U) != 0) << signal;
            }
        }
    }
    sigset_t own{};
    ASSERT_EQ(::pthread_sigmask(SIG_SETMASK, nullptr, &own), 0);
    EXPECT_EQ(::sigismember(&own, SIGTERM), 0) << "the main thread takes them as before";
}

TEST_F(InotifyVnodeSourceTest, ManyGrowthsOfManyWritersAreAllSeen)
{
    watch();
    constexpr std::uintmax_t writers = 4;
    constexpr std::uintmax_t growthsOfEach = 500;
    std::uintmax_t seen = 0;
    source->setEventHandler([&] { seen = std::filesystem::file_size(file); });
    std::vector<std::jthread> threadsThatWrite;
    threadsThatWrite.reserve(writers);
    for (std::uintmax_t writer = 0; writer < writers; ++writer) {
        threadsThatWrite.emplace_back([this] {
            for (std::uintmax_t growth = 0; growth < growthsOfEach; ++growth) {
                append("x");
            }
        });
    }
    EXPECT_TRUE(await([&] {
        queue.run();
        return seen == content.size() + writers * growthsOfEach;
    }));
}

// Cancelling

TEST_F(InotifyVnodeSourceTest, RunsTheCancelHandlerOnceAndLater)
{
    watch();
    source->cancel();
    EXPECT_EQ(cancellations, 0);
    queue.run();
    EXPECT_EQ(cancellations, 1);
    source->cancel();
    queue.run();
    EXPECT_EQ(cancellations, 1);
}

TEST_F(InotifyVnodeSourceTest, ReportsNothingAfterCancel)
{
    watch();
    source->cancel();
    append();
    runEventLoop(100ms);
    queue.run();
    EXPECT_EQ(events, 0);
}

TEST_F(InotifyVnodeSourceTest, DropsTheEventThatWaitsWhenItIsCancelled)
{
    watch();
    append();
    ASSERT_TRUE(await([this] { return queue.waiting() == 1; }));
    source->cancel();
    queue.run();
    EXPECT_EQ(events, 0);
    EXPECT_EQ(cancellations, 1);
}

TEST_F(InotifyVnodeSourceTest, CanBeCancelledInItsOwnEventHandler)
{
    watch();
    source->setEventHandler([this] {
        ++events;
        source->cancel();
    });
    append();
    ASSERT_TRUE(awaitDelivery());
    append();
    runEventLoop(50ms);
    queue.run();
    EXPECT_EQ(events, 1);
    EXPECT_EQ(cancellations, 1);
}

TEST_F(InotifyVnodeSourceTest, KeepsItsHandlersUntilItIsCancelledAndDropsThemThen)
{
    watch();
    auto token = std::make_shared<int>(0);
    const std::weak_ptr<int> kept = token;
    source->setEventHandler([token] {});
    source->setCancelHandler([token] {});
    token.reset();
    append();
    ASSERT_TRUE(awaitDelivery());
    EXPECT_FALSE(kept.expired());
    source->cancel();
    EXPECT_FALSE(kept.expired());
    queue.run();
    EXPECT_TRUE(kept.expired());
}

TEST_F(InotifyVnodeSourceTest, MayBeDestroyedByItsCancelHandler)
{
    watch();
    source->setCancelHandler([this] {
        ++cancellations;
        source.reset();
    });
    source->cancel();
    queue.run();
    EXPECT_EQ(cancellations, 1);
    EXPECT_EQ(source, nullptr);
}

TEST_F(InotifyVnodeSourceTest, MayBeDestroyedInItsOwnEventHandler)
{
    watch();
    source->setEventHandler([this] {
        ++events;
        source.reset();
    });
    append();
    ASSERT_TRUE(awaitDelivery());
    EXPECT_EQ(events, 1);
    append();
    EXPECT_FALSE(deliversSoon());
}

TEST_F(InotifyVnodeSourceTest, CanBeCancelledBeforeItIsResumed)
{
    source = makeFileSystemObjectSource(opened.get(), vnodeExtend, queue);
    source->setCancelHandler([this] { ++cancellations; });
    source->cancel();
    queue.run();
    EXPECT_EQ(cancellations, 1);
}

TEST_F(InotifyVnodeSourceTest, AnEventThatWaitsWhenTheSourceIsDestroyedIsDropped)
{
    watch();
    append();
    ASSERT_TRUE(await([this] { return queue.waiting() == 1; }));
    source.reset();
    queue.run();
    EXPECT_EQ(events, 0);
}

TEST_F(InotifyVnodeSourceTest, LeavesNoThreadAndNoDescriptorBehind)
{
    const auto threadsBefore = threads();
    const auto descriptorsBefore = openDescriptors();
    for (int time = 0; time < 3; ++time) {
        watch();
        append();
        EXPECT_GT(openDescriptors(), descriptorsBefore);
        source.reset();
    }
    watch();
    source->cancel();
    queue.run();
    EXPECT_EQ(threads(), threadsBefore) << "a cancelled source watches no more";
    source.reset();
    EXPECT_EQ(openDescriptors(), descriptorsBefore);
    EXPECT_TRUE(::fcntl(opened.get(), F_GETFD) >= 0) << "the file is its owner's";
}

TEST_F(InotifyVnodeSourceTest, IsDestroyedWhileTheFileGrows)
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

// Limits of the host. Each is reached in a process of its own, where it disturbs nobody.

/// The error with which a source for `descriptor` cannot be made, as an exit status.
int errorOfWatching(int descriptor)
{
    ThreadSafeManualQueue queue;
    const auto before = openDescriptors();
    try {
        (void)makeFileSystemObjectSource(descriptor, vnodeExtend, queue);
    } catch (const std::system_error& error) {
        const bool asPromised = error.code().category() == std::generic_category();
        const bool nothingLeft = openDescriptors() == before;
        return asPromised && nothingLeft ? error.code().value() : 255;
    }
    return 0;
}

/// Gives this process limits of its own, in a user namespace of its own. False where the host does
/// not let it.
bool haveOwnLimit(const std::string& name, int limit)
{
    if (::unshare(CLONE_NEWUSER) != 0) {
        return false;
    }
    std::ofstream file("/proc/sys/user/" + name);
    file << limit << std::flush;
    return file.good();
}

void expectErrorWithOwnLimit(const std::string& name, int descriptor, int error)
{
    const auto run = runForked(
        [&] { ::_exit(haveOwnLimit(name, 0) ? errorOfWatching(descriptor) : notPossibleHere); });
    if (run.status == notPossibleHere) {
        GTEST_SKIP() << "user namespaces are not allowed here";
    }
    EXPECT_EQ(run.status, error);
}

TEST_F(InotifyVnodeSourceTest, FailsWithTheHostsErrorWhenThereAreTooManyWatchers)
{
    expectErrorWithOwnLimit("max_inotify_instances", opened.get(), EMFILE);
}

TEST_F(InotifyVnodeSourceTest, FailsWithTheHostsErrorWhenThereAreTooManyWatches)
{
    expectErrorWithOwnLimit("max_inotify_watches", opened.get(), ENOSPC);
}

TEST_F(InotifyVnodeSourceTest, FailsWithTheHostsErrorWhenTheUsersWatchersAreUsedUp)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the superuser can become a user who disturbs nobody";
    }
    const auto run = runForked([this] {
        rlimit many{};
        if (::getrlimit(RLIMIT_NOFILE, &many) != 0 || ::setuid(uniqueUser()) != 0) {
            ::_exit(255);
        }
        many.rlim_cur = many.rlim_max;
        (void)::setrlimit(RLIMIT_NOFILE, &many);
        while (::inotify_init1(IN_CLOEXEC) >= 0) {
        }
        // Descriptors there still are: what is used up are this user's watchers.
        const int spare = ::open("/dev/null", O_RDONLY | O_CLOEXEC);
        ::_exit(spare < 0 ? notPossibleHere : errorOfWatching(opened.get()));
    });
    if (run.status == notPossibleHere) {
        GTEST_SKIP() << "descriptors are used up first here";
    }
    EXPECT_EQ(run.status, EMFILE);
}

TEST_F(InotifyVnodeSourceTest, LeavesSignalsAsTheyWereWhenNoThreadCanBeStarted)
{
    if (::geteuid() != 0) {
        GTEST_SKIP() << "only the superuser can become a user who disturbs nobody";
    }
    const auto run = runForked([this] {
        const ThreadCreationBlocker limit;
        if (!limit.isPossible()) {
            ::_exit(255);
        }
        const auto watch = makeFileSystemObjectSource(opened.get(), vnodeExtend, queue);
        try {
            watch->resume();
        } catch (const std::system_error& error) {
            sigset_t own{};
            (void)::pthread_sigmask(SIG_SETMASK, nullptr, &own);
            ::_exit(::sigismember(&own, SIGTERM) == 0 ? error.code().value() : 254);
        }
        ::_exit(253);
    });
    EXPECT_EQ(run.status, EAGAIN) << run.errors;
}

TEST_F(InotifyVnodeSourceTest, FailsWithTheHostsErrorWhenDescriptorsAreUsedUp)
{
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the sanitizers' own checks need descriptors";
#endif
    // Two are needed.
    for (const int left : {0, 1, 2}) {
        const auto run = runForked([this, left] {
            std::vector<int> spare;
            int last = -1;
            rlimit few{64, 64};
            (void)::setrlimit(RLIMIT_NOFILE, &few);
            while ((last = ::open("/dev/null", O_RDONLY | O_CLOEXEC)) >= 0) {
                spare.push_back(last);
            }
            for (int closed = 0; closed < left; ++closed) {
                ::close(spare.back());
                spare.pop_back();
            }
            try {
                (void)makeFileSystemObjectSource(opened.get(), vnodeExtend, queue);
            } catch (const std::system_error& error) {
                // What was opened before the failure is closed again.
                for (int opening = 0; opening < left; ++opening) {
                    if (::open("/dev/null", O_RDONLY | O_CLOEXEC) < 0) {
                        ::_exit(254);
                    }
                }
                ::_exit(error.code().value());
            }
            ::_exit(0);
        });
        EXPECT_EQ(run.status, left < 2 ? EMFILE : 0) << left << " left\n" << run.errors;
    }
}

TEST_F(InotifyVnodeSourceTest, FailsWithTheHostsErrorForWhatIsNotOpen)
{
    ThreadSafeManualQueue hands;
    try {
        (void)makeFileSystemObjectSource(-1, vnodeExtend, hands);
        FAIL() << "there is no such descriptor";
    } catch (const std::system_error& error) {
        EXPECT_TRUE(error.code().value() == ENOENT || error.code().value() == EBADF)
            << error.what();
    }
}

} // namespace
} // namespace orlimo
