#pragma once

#include "platform/threads/Queue.h"

#include <cstddef>
#include <deque>
#include <mutex>
#include <utility>

namespace orlimo {

/// A queue whose work runs when the test says so, on the test's thread. Takes work from any thread.
class ManualQueue final : public Queue
{
public:
    void async(Work work) override
    {
        const std::lock_guard guard(mutex);
        list.push_back(std::move(work));
    }

    /// Runs what waits, what that adds included, and returns how much it was.
    std::size_t run()
    {
        std::size_t number = 0;
        while (const Work work = takeFirst()) {
            work();
            ++number;
        }
        return number;
    }

    [[nodiscard]] std::size_t waiting() const
    {
        const std::lock_guard guard(mutex);
        return list.size();
    }

private:
    [[nodiscard]] Work takeFirst()
    {
        const std::lock_guard guard(mutex);
        if (list.empty()) {
            return {};
        }
        Work first = std::move(list.front());
        list.pop_front();
        return first;
    }

    mutable std::mutex mutex;
    std::deque<Work> list;
};

} // namespace orlimo
