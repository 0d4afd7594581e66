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
    mayGoOn.release();
    hasStopped.acquire();
}

void SteppedThread::pause()
{
    if (current != nullptr) {
        current->hasStopped.release();
        current->mayGoOn.acquire();
    }
}

void SteppedThread::run(const std::function<void()>& work)
{
    current = this;
    mayGoOn.acquire();
    work();
    done = true;
    hasStopped.release();
}

} // namespace orlimo
