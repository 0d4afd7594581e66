#include "platform/clipboard/linux/DataControlConnection.h"

#include <algorithm>
#include <utility>

#include <wayland-client-protocol.h>

namespace orlimo {

namespace {

/// The first seat version with a request to release it; later ones add nothing needed here.
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

DataControlConnection::DataControlConnection(
    WaylandDisplay connected, TextTransfers& textTransfers, std::function<void()> progressHandler)
    : transfers(textTransfers)
    , onProgress(std::move(progressHandler))
    , display(std::move(connected))
    , registry(*display)
    , registryRoundTrip(display->get())
{
    readable = makeDescriptorNotifier(display->descriptor(), QSocketNotifier::Read, [this] {
        dispatch();
        notify();
    });
    writable = makeDescriptorNotifier(display->descriptor(), QSocketNotifier::Write, [this] {
        flush();
        notify();
    });
    flush();
}

DataControlConnection::~DataControlConnection() = default;

const DataControlProtocol* DataControlConnection::offeredBy(const WaylandRegistry& registry)
{
    const auto* const found =
        std::ranges::find_if(dataControlProtocols, [&](const auto* candidate) {
            return registry.find(candidate->manager.name) != nullptr;
        });
    return found == dataControlProtocols.end() ? nullptr : *found;
}

DataControlConnection::State DataControlConnection::state() const
{
    if (!display) {
        return State::lost;
    }
    if (manager) {
        return State::ready;
    }
    return registryRoundTrip->isComplete() ? State::unsupported : State::connecting;
}

bool DataControlConnection::setText(const SharedText& text)
{
    if (display) {
        // Pending events first: the compositor, or a seat, may have gone.
        dispatch();
    }
    const bool canSend = state() == State::ready && !devices.empty() && !writable->isEnabled();
    if (!canSend) {
        // Outdated, although the compositor does not know yet.
        offeredText.reset();
        return false;
    }
    offeredText = text;
    for (auto& [name, device] : devices) {
        device.setText(text);
    }
    flush();
    return display.has_value();
}

/// Binds the manager and the seats once all globals are known.
void DataControlConnection::bindGlobals()
{
    if (manager || !registryRoundTrip->isComplete()) {
        return;
    }
    protocol = offeredBy(*registry);
    if (protocol == nullptr) {
        return;
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
}

/// Creates the clipboard of a new seat and offers it the text that the other seats have.
void DataControlConnection::seatDidAppear(const WaylandRegistry::Global& global)
{
    if (!isSeat(global)) {
        return;
    }
    const auto [made, isNew] = devices.try_emplace(
        global.name, manager, *protocol, boundSeat(*registry, global), transfers, [this] {
            offeredText.reset();
        });
    if (isNew && offeredText) {
        made->second.setText(*offeredText);
    }
}

/// Handles the compositor's events and sends the requests they cause.
void DataControlConnection::dispatch()
{
    if (display->dispatch()) {
        bindGlobals();
        flush();
    } else {
        release();
    }
}

/// Sends queued requests. While the compositor does not read them, no events are read from it
/// either, so that the queue stays small.
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

/// Releases a connection that has ended, including its descriptor.
void DataControlConnection::release()
{
    writable.reset();
    readable.reset();
    devices.clear();
    manager = WaylandProxy();
    registryRoundTrip.reset();
    registry.reset();
    display.reset();
}

void DataControlConnection::notify() const
{
    const auto callback = onProgress; // the call may destroy this object
    callback();
}

} // namespace orlimo
