#pragma once

#include "platform/files/UniqueFd.h"
#include "platform/files/VnodeSource.h"
#include "tests/platform/files/WriterProcess.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include <fcntl.h>

namespace orlimo {

/// Runs work at once on the thread that posts it, so that a test sees the store as it is at the
/// moment of the delivery.
class ImmediateQueue final : public Queue
{
public:
    void async(Work work) override { work(); }
};

/// A vnode source on the log of a store that another process writes.
class CommitDetection : public testing::TestWithParam<std::string>
{
protected:
    /// `environment` is added to the writer's.
    explicit CommitDetection(
        const std::map<std::string, std::optional<std::string>>& environment = {})
        : writer(store, GetParam(), environment)
    {}

    void TearDown() override
    {
        if (source) {
            source->cancel();
        }
    }

    /// Counts events and notes how many messages a reader sees at each.
    void watch()
    {
        source = makeFileSystemObjectSource(opened.get(), vnodeExtend, immediately);
        source->setEventHandler([this] {
            messagesSeen = visibleMessages(store);
            ++events;
        });
        source->resume();
    }

    [[nodiscard]] bool awaitEvents(int number)
    {
        return await([this, number] { return events >= number; });
    }

    /// Whether more than `number` events come soon.
    [[nodiscard]] bool
    receivesMoreThan(int number, std::chrono::milliseconds span = std::chrono::milliseconds(150))
    {
        return await([this, number] { return events > number; }, span);
    }

    TemporaryFolder folder;
    std::filesystem::path store = folder.path() / "chat.db";
    std::filesystem::path log = folder.path() / "chat.db-wal";
    WriterProcess writer;
    UniqueFd opened{::open(log.c_str(), O_RDONLY | O_CLOEXEC)};
    ImmediateQueue immediately;
    std::atomic<int> events = 0;
    std::atomic<int> messagesSeen = 0;
    std::unique_ptr<VnodeSource> source;
};

} // namespace orlimo
