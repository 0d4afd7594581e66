#include "platform/linux/DataControlConnection.h"

#include <algorithm>
#include <utility>

#include <wayland-client-protocol.h>

namespace orlimo {

namespace {

/// The version of a seat that can be given up by a request, the latest that is of any use here.
constexpr std::uint32_t seatVersion = WL_SEAT_RELEASE_SINCE_VERSION;

bool isSeat(const WaylandRegistry::Global& global)
{
    return global.interface == wl_seat_interface.name;
}

WaylandProxy boundSeat(const WaylandRegistry& registry, const WaylandRegistry::Global& global)
{
    const std::uint32_t version = std::min(global.version, seatVersion);
    wl_proxy* const seat = registry.bind(global, wl_seat_interface, version);
    return version < seatVersion ? WaylandProxy(seat) : WaylandProxy(seat, WL_SEAT_RELEASE);
}

} // namespace

std::unique_ptr<DataControlConnection> DataControlConnection::open(
    const std::string& name, WaylandDisplay::Deadline deadline, TextTransfers& transfers)
{
    auto display = WaylandDisplay::connect(name, deadline);
    if (!display) {
        return nullptr;
    }
    std::unique_ptr<DataControlConnection> connection(
        new DataControlConnection(*std::move(display), transfers));
    return connection->begin(deadline) ? std::move(connection) : nullptr;
}

DataControlConnection::DataControlConnection(WaylandDisplay connected, TextTransfers& readers)
    : transfers(readers)
    , display(std::move(connected))
    , registry(*display)
{}

DataControlConnection::~DataControlConnection() = default;

const DataControlProtocol* DataControlConnection::offeredBy(const WaylandRegistry& registry)
{
    if (registry.find(wl_seat_interface.name) == nullptr) {
        return nullptr;
    }
    const auto* const found =
        std::ranges::find_if(dataControlProtocols, [&](const auto* candidate) {
            return registry.find(candidate->manager.name) != nullptr;
        });
    return found == dataControlProtocols.end() ? nullptr : *found;
}

bool DataControlConnection::begin(WaylandDisplay::Deadline deadline)
{
    if (!display->roundTrip(deadline)) {
        return false;
    }
    protocol = offeredBy(*registry);
    if (protocol == nullptr) {
        return false;
    }
    manager = WaylandProxy(
        registry->bind(
            *registry->find(protocol->manager.name),
            protocol->manager,
            DataControlProtocol::version),
        DataControlProtocol::ManagerRequest::destroy);
    for (const auto& global : registry->globals()) {
        seatDidAppear(global);
    }
    registry->observe(
        [this](const WaylandRegistry::Global& global) { seatDidAppear(global); },
        [this](std::uint32_t name) { devices.erase(name); });
    readable =
        makeDescriptorNotifier(display->descriptor(), QSocketNotifier::Read, [this] { serve(); });
    writable =
        makeDescriptorNotifier(display->descriptor(), QSocketNotifier::Write, [this] { flush(); });
    flush();
    return display.has_value();
}

bool DataControlConnection::setText(const SharedText& text, WaylandDisplay::Deadline deadline)
{
    // What the compositor has said comes first: that it is gone, or that a seat is.
    if (!display || !display->dispatch() || devices.empty()) {
        return false;
    }
    held = text;
    for (auto& [name, device] : devices) {
        device.setText(text);
    }
    const bool isSent = display->flush(deadline);
    flush();
    return isSent && display.has_value();
}

/// Makes the clipboard of a seat that there is from now on, and gives it the text that the other
/// seats have.
void DataControlConnection::seatDidAppear(const WaylandRegistry::Global& global)
{
    if (!isSeat(global)) {
        return;
    }
    const auto [made, isNew] = devices.try_emplace(
        global.name, manager, *protocol, boundSeat(*registry, global), transfers, [this] {
            held.reset();
        });
    if (isNew && held) {
        made->second.setText(*held);
    }
}

/// Takes what the compositor says.
void DataControlConnection::serve()
{
    if (display->dispatch()) {
        flush();
    } else {
        release();
    }
}

/// Sends what the events have made necessary. While the compositor does not take it, nothing more
/// is read from it either: what is waiting to be sent stays small.
void DataControlConnection::flush()
{
    const auto output = display->flush();
    if (output == WaylandDisplay::Output::lost) {
        release();
        return;
    }
    const bool isWaiting = output == WaylandDisplay::Output::waiting;
    readable->setEnabled(!isWaiting);
    writable->setEnabled(isWaiting);
}

/// Lets go of a connection that has ended, down to its descriptor.
void DataControlConnection::release()
{
    writable.reset();
    readable.reset();
    devices.clear();
    manager = WaylandProxy();
    registry.reset();
    display.reset();
}

} // namespace orlimo
