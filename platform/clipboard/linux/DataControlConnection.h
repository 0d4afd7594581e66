#pragma once

#include "platform/clipboard/linux/DataControlDevice.h"
#include "platform/clipboard/linux/DataControlProtocol.h"
#include "platform/clipboard/linux/DescriptorNotifier.h"
#include "platform/clipboard/linux/SharedText.h"
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

/// A connection to a compositor that lets the clipboards of its seats be set. Serves them on the
/// event loop and never waits; does nothing while the compositor has nothing to say. Main thread.
class DataControlConnection
{
public:
    enum class State {
        connecting,  ///< the compositor has not listed its globals yet
        ready,       ///< the clipboards of the seats that there are can be set
        unsupported, ///< the compositor does not offer this
        lost,        ///< the connection has ended; of no more use
    };

    /// Asks the compositor at the other end of `connected` what it offers. `progressed` is called
    /// from the event loop whenever the state or what `setText` returns may have changed, and may
    /// end this object. `readers` must outlive it.
    DataControlConnection(
        WaylandDisplay connected,
        TextTransfers& textTransfers,
        std::function<void()> progressHandler);
    DataControlConnection(const DataControlConnection&) = delete;
    DataControlConnection& operator=(const DataControlConnection&) = delete;
    ~DataControlConnection();

    /// The protocol to use with what `registry` lists; null when it has none of them.
    [[nodiscard]] static const DataControlProtocol* offeredBy(const WaylandRegistry& registry);

    [[nodiscard]] State state() const;

    /// Puts `text` on the clipboard of every seat: on its way to the compositor when this returns
    /// true. False while that cannot be done: in any state but `ready`, while the compositor does
    /// not take what was sent before, and while there is no seat. Nothing is kept for later then.
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
    /// What is on the clipboards, for seats that come later; absent when another program has
    /// replaced it.
    std::optional<SharedText> offeredText;
    const DataControlProtocol* protocol = nullptr;

    // From here on each goes before what it was made of: absent once the connection is lost.
    std::optional<WaylandDisplay> display;
    std::optional<WaylandRegistry> registry;
    /// Complete when the registry has listed everything.
    std::optional<WaylandRoundTrip> registryRoundTrip;
    WaylandProxy manager;
    std::map<std::uint32_t, DataControlDevice> devices;
    DescriptorNotifier readable;
    DescriptorNotifier writable;
};

} // namespace orlimo
