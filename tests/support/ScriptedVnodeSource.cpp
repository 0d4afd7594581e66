#include "tests/support/ScriptedVnodeSource.h"

#include <utility>

#include <unistd.h>

namespace orlimo {

void ScriptedVnodeSource::Script::note(const std::string& name)
{
    calls.push_back({name, static_cast<long>(::lseek(fileDescriptor, 0, SEEK_CUR))});
}

std::vector<std::string> ScriptedVnodeSource::Script::namesOfCalls() const
{
    std::vector<std::string> names;
    names.reserve(calls.size());
    for (const Call& call : calls) {
        names.push_back(call.name);
    }
    return names;
}

void ScriptedVnodeSource::Script::fire(VnodeEvents events)
{
    if (!running || !eventHandler) {
        return;
    }
    data = events;
    const Handler handler = eventHandler;
    handler();
    data = 0;
}

void ScriptedVnodeSource::Script::runCancelHandler()
{
    const Handler handler = cancelHandler;
    if (handler) {
        handler();
    }
    dropHandlers();
}

void ScriptedVnodeSource::Script::dropHandlers()
{
    // Taken out first: a handler may hold the last reference to whoever owns the source.
    const Handler event = std::exchange(eventHandler, {});
    const Handler cancel = std::exchange(cancelHandler, {});
}

ScriptedVnodeSource::ScriptedVnodeSource(std::shared_ptr<Script> sharedScript)
    : script(std::move(sharedScript))
{}

ScriptedVnodeSource::~ScriptedVnodeSource()
{
    script->note("destroy");
}

VnodeSourceFactory ScriptedVnodeSource::factory(const std::shared_ptr<Script>& script)
{
    return [script](int fileDescriptor, VnodeEvents mask, Queue& queue) {
        script->fileDescriptor = fileDescriptor;
        script->mask = mask;
        script->queue = &queue;
        script->note("make");
        return std::make_unique<ScriptedVnodeSource>(script);
    };
}

void ScriptedVnodeSource::setEventHandler(Handler handler)
{
    script->note("setEventHandler");
    script->eventHandler = std::move(handler);
}

void ScriptedVnodeSource::setCancelHandler(Handler handler)
{
    script->note("setCancelHandler");
    script->cancelHandler = std::move(handler);
}

void ScriptedVnodeSource::resume()
{
    script->note("resume");
    script->running = true;
}

void ScriptedVnodeSource::cancel()
{
    script->note("cancel");
    script->running = false;
}

VnodeEvents ScriptedVnodeSource::data() const
{
    return script->data;
}

} // namespace orlimo
