#pragma once

#include <functional>
#include <semaphore>
#include <thread>

namespace orlimo {

/// A piece of work on a thread of its own that goes on only when it is told, and then as far as the
/// next place where it pauses. It must be done before the object goes.
class SteppedThread
{
public:
    /// Does not begin yet.
    explicit SteppedThread(std::function<void()> work);
    SteppedThread(const SteppedThread&) = delete;
    SteppedThread& operator=(const SteppedThread&) = delete;
    ~SteppedThread();

    /// Lets the work go on to its next pause or its end, and waits for that.
    void step();

    [[nodiscard]] bool isDone() const { return done; }

    /// A place to pause, for work on such a thread. Does nothing on any other.
    static void pause();

private:
    void run(const std::function<void()>& work);

    std::binary_semaphore resumeSignal{0};
    std::binary_semaphore pausedSignal{0};
    bool done = false;
    std::thread thread;
};

} // namespace orlimo
