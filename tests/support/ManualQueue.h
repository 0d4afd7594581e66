#pragma once

#include "platform/threads/Queue.h"

#include <cstddef>
#include <deque>
#include <mutex>

namespace orlimo {

/// A queue whose work runs when the test says so, on the test's thread. Takes work from any thread.
class ManualQueue final : public Queue
{
public:
    void async(Work work) override;

    /// Runs what waits, what that adds included, and returns how much it was.
    std::size_t run();

    [[nodiscard]] std::size_t waiting() const;

private:
    [[nodiscard]] Work takeFirst();

    mutable std::mutex mutex;
    std::deque<Work> list;
};

} // namespace orlimo
