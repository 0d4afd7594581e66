#include "tests/support/SharedHandQueue.h"

#include <utility>

namespace orlimo {

void SharedHandQueue::async(Work work)
{
    const std::lock_guard guard(mutex);
    list.push_back(std::move(work));
}

std::size_t SharedHandQueue::run()
{
    std::size_t number = 0;
    while (const Work work = takeFirst()) {
        work();
        ++number;
    }
    return number;
}

std::size_t SharedHandQueue::waiting() const
{
    const std::lock_guard guard(mutex);
    return list.size();
}

Queue::Work SharedHandQueue::takeFirst()
{
    const std::lock_guard guard(mutex);
    if (list.empty()) {
        return {};
    }
    Work first = std::move(list.front());
    list.pop_front();
    return first;
}

} // namespace orlimo
