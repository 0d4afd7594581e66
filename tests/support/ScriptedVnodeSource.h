#pragma once

#include "platform/files/VnodeSource.h"

#include <memory>
#include <string>
#include <vector>

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

        void note(const std::string& name);
        [[nodiscard]] std::vector<std::string> namesOfCalls() const;

        /// Delivers `events`, unless the source is not resumed or cancelled.
        void fire(VnodeEvents events);

        /// Runs the cancel handler and drops both, as a source does after `cancel`.
        void runCancelHandler();

        /// Drops both handlers, and with them whoever they keep alive.
        void dropHandlers();
    };

    explicit ScriptedVnodeSource(std::shared_ptr<Script> sharedScript);
    ScriptedVnodeSource(const ScriptedVnodeSource&) = delete;
    ScriptedVnodeSource& operator=(const ScriptedVnodeSource&) = delete;
    ~ScriptedVnodeSource() override;

    /// Makes sources that follow `script`.
    [[nodiscard]] static VnodeSourceFactory factory(const std::shared_ptr<Script>& script);

    void setEventHandler(Handler handler) override;
    void setCancelHandler(Handler handler) override;
    void resume() override;
    void cancel() override;
    [[nodiscard]] VnodeEvents data() const override;

private:
    std::shared_ptr<Script> script;
};

} // namespace orlimo
