#include "tests/support/ManualQueue.h"

#include <utility>

namespace orlimo {

void ManualQueue::async(Work work)
{
    list.push_back(std::move(work));
}

std::size_t ManualQueue::run()
{
    std::size_t number = 0;
    for (; !list.empty(); ++number) {
        const Work work = std::move(list.front());
        list.pop_front();
        work();
    }
    return number;
}

} // namespace orlimo
