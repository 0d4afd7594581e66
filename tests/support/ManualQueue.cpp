#include "tests/support/ManualQueue.h"

#include <utility>

namespace orlimo {

void ManualQueue::async(Work work)
{
    const std::lock_guard guard(mutex);
    list.push_back(std::move(work));
}

std::size_t ManualQueue::run()
{
    std::size_t number = 0;
    while (const Work work = takeFirst()) {
        work();
        ++number;
    }
    return number;
}

std::size_t ManualQueue::waiting() const
{
    const std::lock_guard guard(mutex);
    return list.size();
}

Queue::Work ManualQueue::takeFirst()
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
