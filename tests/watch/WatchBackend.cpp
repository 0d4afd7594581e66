#include "tests/watch/WatchBackend.h"

#include "tests/support/Await.h"
#include "tests/support/ScriptedVnodeSource.h"

#include <utility>
#include <vector>

namespace orlimo {

namespace {

class NativeBackend final : public WatchBackend
{
public:
    VnodeSourceFactory factory() override
    {
        return [this](int fileDescriptor, VnodeEvents mask, Queue& queue) {
            auto source = makeFileSystemObjectSource(fileDescriptor, mask, queue);
            sources.push_back(source.get());
            return source;
        };
    }

    void notifyChange(VnodeEvents /*events*/) override {}

    void end() override
    {
        for (VnodeSource* source : std::exchange(sources, {})) {
            source->cancel();
        }
        runEventLoop(std::chrono::milliseconds(1));
    }

private:
    std::vector<VnodeSource*> sources;
};

class ScriptedBackend final : public WatchBackend
{
public:
    VnodeSourceFactory factory() override
    {
        scripts.push_back(std::make_shared<ScriptedVnodeSource::Script>());
        return ScriptedVnodeSource::factory(scripts.back());
    }

    void notifyChange(VnodeEvents events) override
    {
        for (const auto& script : scripts) {
            script->fire(events);
        }
    }

    void end() override
    {
        for (const auto& script : scripts) {
            script->dropHandlers();
        }
    }

private:
    std::vector<std::shared_ptr<ScriptedVnodeSource::Script>> scripts;
};

} // namespace

std::unique_ptr<WatchBackend> WatchBackend::named(const std::string& name)
{
    if (name == "Native") {
        return std::make_unique<NativeBackend>();
    }
    return std::make_unique<ScriptedBackend>();
}

} // namespace orlimo
