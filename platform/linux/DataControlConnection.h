#pragma once

#include "platform/linux/DataControlDevice.h"
#include "platform/linux/DataControlProtocol.h"
#include "platform/linux/DescriptorNotifier.h"
#include "platform/linux/SharedText.h"
#include "platform/linux/TextTransfers.h"
#include "platform/linux/WaylandDisplay.h"
#include "platform/linux/WaylandProxy.h"
#include "platform/linux/WaylandRegistry.h"

#include <cstdint>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace orlimo {

/// A connection to a compositor that lets the clipboards of its seats be set. Serves them on the
/// event loop; does nothing while the compositor has nothing to say. Main thread.
class DataControlConnection
{
public:
    /// Connects to the compositor of that name (see WaylandDisplay). Null where there is none,
    /// where it does not offer this or has no seat, and where it does not say so before `deadline`.
    /// `transfers` must outlive the connection.
    [[nodiscard]] static std::unique_ptr<DataControlConnection>
    open(const std::string& name, WaylandDisplay::Deadline deadline, TextTransfers& transfers);

    DataControlConnection(const DataControlConnection&) = delete;
    DataControlConnection& operator=(const DataControlConnection&) = delete;
    ~DataControlConnection();

    /// The protocol to use with what `registry` lists; null when it has none of them, or no seat.
    [[nodiscard]] static const DataControlProtocol* offeredBy(const WaylandRegistry& registry);

    /// Puts `text` on the clipboard of every seat: on its way to the compositor when this returns.
    /// False when the connection is lost, when the compositor does not take it before `deadline`,
    /// and when there is no seat; the connection is then of no more use.
    [[nodiscard]] bool setText(const SharedText& text, WaylandDisplay::Deadline deadline);

private:
    DataControlConnection(WaylandDisplay connected, TextTransfers& readers);

    [[nodiscard]] bool begin(WaylandDisplay::Deadline deadline);
    void seatDidAppear(const WaylandRegistry::Global& global);
    void serve();
    void flush();
    void release();

    TextTransfers& transfers;
    /// What is on the clipboards, for seats that come later; absent when another program has
    /// replaced it.
    std::optional<SharedText> held;
    const DataControlProtocol* protocol = nullptr;

    // From here on each goes before what it was made of: absent once the connection is lost.
    std::optional<WaylandDisplay> display;
    std::optional<WaylandRegistry> registry;
    WaylandProxy manager;
    std::map<std::uint32_t, DataControlDevice> devices;
    DescriptorNotifier readable;
    DescriptorNotifier writable;
};

} // namespace orlimo
