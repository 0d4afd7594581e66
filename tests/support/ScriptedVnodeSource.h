#pragma once

#include "platform/files/VnodeSource.h"

#include <memory>
#include <string>
#include <utility>
#include <vector>

#include <unistd.h>

namespace orlimo {

/// A vnode source that watches nothing: it notes what its owner does to it, and fires when the test
/// says so. Main thread.
class ScriptedVnodeSource : public VnodeSource
{
public:
    /// What is known of the one source that was made, and the means to drive it. Outlives the
    /// source.
    struct Script
    {
        /// One call that the owner made, and where the file's read position was at that moment.
        struct Call
        {
            std::string name;
            long position;
        };

        std::vector<Call> calls;
        int fileDescriptor = -1;
        VnodeEvents mask = 0;
        Queue* queue = nullptr;
        VnodeEvents data = 0;
        bool running = false;
        Handler eventHandler;
        Handler cancelHandler;

        void note(const std::string& name)
        {
            calls.push_back({name, static_cast<long>(::lseek(fileDescriptor, 0, SEEK_CUR))});
        }

        [[nodiscard]] std::vector<std::string> namesOfCalls() const
        {
            std::vector<std::string> names;
            for (const Call& call : calls) {
                names.push_back(call.name);
            }
            return names;
        }

        /// Delivers `events`, unless the source is not resumed or cancelled.
        void fire(VnodeEvents events)
        {
            if (running && eventHandler) {
                data = events;
                const Handler handler = eventHandler;
                handler();
                data = 0;
            }
        }

        /// Runs the cancel handler and drops both, as a source does after `cancel`.
        void runCancelHandler()
        {
            if (const Handler handler = cancelHandler) {
                handler();
            }
            dropHandlers();
        }

        /// Drops both handlers, and with them whoever they keep alive.
        void dropHandlers()
        {
            // Taken out first: a handler may hold the last reference to whoever owns the source.
            const Handler event = std::exchange(eventHandler, {});
            const Handler cancel = std::exchange(cancelHandler, {});
        }
    };

    explicit ScriptedVnodeSource(std::shared_ptr<Script> sharedScript)
        : script(std::move(sharedScript))
    {}
    ScriptedVnodeSource(const ScriptedVnodeSource&) = delete;
    ScriptedVnodeSource& operator=(const ScriptedVnodeSource&) = delete;
    ~ScriptedVnodeSource() override { script->note("destroy"); }

    /// Makes sources that follow `script`.
    [[nodiscard]] static VnodeSourceFactory factory(const std::shared_ptr<Script>& script)
    {
        return [script](int fileDescriptor, VnodeEvents mask, Queue& queue) {
            script->fileDescriptor = fileDescriptor;
            script->mask = mask;
            script->queue = &queue;
            script->note("make");
            return std::make_unique<ScriptedVnodeSource>(script);
        };
    }

    void setEventHandler(Handler handler) override
    {
        script->note("setEventHandler");
        script->eventHandler = std::move(handler);
    }

    void setCancelHandler(Handler handler) override
    {
        script->note("setCancelHandler");
        script->cancelHandler = std::move(handler);
    }

    void resume() override
    {
        script->note("resume");
        script->running = true;
    }

    void cancel() override
    {
        script->note("cancel");
        script->running = false;
    }

    [[nodiscard]] VnodeEvents data() const override { return script->data; }

private:
    std::shared_ptr<Script> script;
};

} // namespace orlimo
