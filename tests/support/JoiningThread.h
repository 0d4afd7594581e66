#pragma once

#include <functional>
#include <thread>
#include <utility>

namespace orlimo {

/// A thread whose end is awaited when the object goes. Not every standard library has one of its
/// own.
class JoiningThread
{
public:
    /// Starts `work` on a thread of its own.
    explicit JoiningThread(std::function<void()> work)
        : thread(std::move(work))
    {}
    JoiningThread(JoiningThread&&) = default;
    JoiningThread& operator=(JoiningThread&&) = delete;
    ~JoiningThread() { join(); }

    /// Awaits its end before the object goes.
    void join()
    {
        if (thread.joinable()) {
            thread.join();
        }
    }

private:
    std::thread thread;
};

} // namespace orlimo
