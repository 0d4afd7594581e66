#include "tests/watch/SteppedThread.h"

#include <utility>

namespace orlimo {

namespace {

thread_local SteppedThread* current = nullptr;

} // namespace

SteppedThread::SteppedThread(std::function<void()> work)
    : thread([this, work = std::move(work)] { run(work); })
{}

SteppedThread::~SteppedThread()
{
    thread.join();
}

void SteppedThread::step()
{
    resumeSignal.release();
    pausedSignal.acquire();
}

void SteppedThread::pause()
{
    if (current != nullptr) {
        current->pausedSignal.release();
        current->resumeSignal.acquire();
    }
}

void SteppedThread::run(const std::function<void()>& work)
{
    current = this;
    resumeSignal.acquire();
    work();
    done = true;
    pausedSignal.release();
}

} // namespace orlimo
