#pragma once

#include "platform/clipboard/linux/DataControlDevice.h"
#include "platform/clipboard/linux/DataControlProtocol.h"
#include "platform/clipboard/linux/DescriptorNotifier.h"
#include "platform/clipboard/linux/TextTransfers.h"
#include "platform/display/linux/WaylandDisplay.h"
#include "platform/display/linux/WaylandProxy.h"
#include "platform/display/linux/WaylandRegistry.h"
#include "platform/display/linux/WaylandRoundTrip.h"

#include <cstdint>
#include <functional>
#include <map>
#include <optional>

namespace orlimo {

/// A connection to a compositor through which the clipboards of its seats are set. Works on the
/// event loop, never blocks, and does nothing while the compositor sends nothing. Main thread.
class DataControlConnection
{
public:
    enum class State {
        connecting,  ///< the compositor has not listed its globals yet
        ready,       ///< the clipboards of the present seats can be set
        unsupported, ///< the compositor does not offer data control
        lost,        ///< the connection has ended for good
    };

    /// Queries the globals of the compositor at the other end of `connected`. `progressHandler` is
    /// called from the event loop whenever the state or the result of `setText` may have changed,
    /// and may destroy this object. `textTransfers` must outlive it.
    DataControlConnection(
        WaylandDisplay connected,
        TextTransfers& textTransfers,
        std::function<void()> progressHandler);
    DataControlConnection(const DataControlConnection&) = delete;
    DataControlConnection& operator=(const DataControlConnection&) = delete;
    ~DataControlConnection();

    /// The preferred protocol among the globals in `registry`; null if it has none.
    [[nodiscard]] static const DataControlProtocol* offeredBy(const WaylandRegistry& registry);

    [[nodiscard]] State state() const;

    /// Puts `text` on the clipboard of every seat: true once it is on its way to the compositor.
    /// False in any state but `ready`, while the compositor does not read earlier requests, and
    /// while there is no seat; the text is then not kept.
    [[nodiscard]] bool setText(const SharedText& text);

private:
    void bindGlobals();
    void seatDidAppear(const WaylandRegistry::Global& global);
    void dispatch();
    void flush();
    void release();
    void notify() const;

    TextTransfers& transfers;
    std::function<void()> onProgress;
    /// The text on the clipboards, for later seats; absent once another program has replaced it.
    std::optional<SharedText> offeredText;
    const DataControlProtocol* protocol = nullptr;

    // Destroyed in reverse order, each before what it was created from; absent once the connection
    // is lost.
    std::optional<WaylandDisplay> display;
    std::optional<WaylandRegistry> registry;
    /// Complete once the registry has listed everything.
    std::optional<WaylandRoundTrip> registryRoundTrip;
    WaylandProxy manager;
    std::map<std::uint32_t, DataControlDevice> devices;
    DescriptorNotifier readable;
    DescriptorNotifier writable;
};

} // namespace orlimo
