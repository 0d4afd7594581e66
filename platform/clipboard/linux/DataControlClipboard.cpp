#include "platform/clipboard/linux/DataControlClipboard.h"

#include "platform/clipboard/linux/DataControlConnection.h"
#include "platform/display/linux/WaylandDisplay.h"
#include "platform/display/linux/WaylandRegistry.h"

#include <algorithm>
#include <system_error>
#include <utility>

#include <wayland-client-protocol.h>

namespace orlimo {

namespace {

using namespace std::chrono_literals;

/// The delays between attempts to connect to a compositor whose connection backlog is full, for
/// which the system has no notification: each is twice the previous one.
constexpr std::chrono::milliseconds initialRetryDelay = 250ms;
constexpr std::chrono::milliseconds maxRetryDelay = 16s;

/// Whether a compositor is listening that did not accept the connection in time.
bool isBusy(const std::error_code& error)
{
    return error == std::errc::resource_unavailable_try_again;
}

} // namespace

DataControlAvailability
DataControlClipboard::availability(std::chrono::milliseconds limit, const std::string& display)
{
    const auto deadline = std::chrono::steady_clock::now() + limit;
    std::error_code error;
    auto connected = WaylandDisplay::connect(display, deadline, error);
    if (!connected) {
        return isBusy(error) ? DataControlAvailability::unknown
                             : DataControlAvailability::notOffered;
    }
    WaylandRegistry registry(*connected); // not const: events change it
    const auto response = connected->roundTrip(deadline);
    if (response == WaylandDisplay::Response::timedOut) {
        return DataControlAvailability::unknown;
    }
    const bool isOffered = response == WaylandDisplay::Response::received &&
                           DataControlConnection::offeredBy(registry) != nullptr &&
                           registry.find(wl_seat_interface.name) != nullptr;
    return isOffered ? DataControlAvailability::offered : DataControlAvailability::notOffered;
}

DataControlClipboard::DataControlClipboard(std::string displayName)
    : display(std::move(displayName))
{
    retryTimer.setSingleShot(true);
    retryTimer.callOnTimeout([this] { connect(); });
}

DataControlClipboard::~DataControlClipboard() = default;

void DataControlClipboard::setText(std::string text, Completion completion)
{
    pending = {std::make_shared<const std::string>(std::move(text)), std::move(completion)};
    retryDelay = initialRetryDelay;
    if (!connection) {
        connect();
    } else {
        advance();
    }
}

/// Sends the pending text, or takes the next step towards that.
void DataControlClipboard::advance()
{
    if (!pending) {
        return;
    }
    if (connection->setText(pending->text)) {
        complete(Outcome::sent);
        return;
    }
    switch (connection->state()) {
    case DataControlConnection::State::connecting:
    case DataControlConnection::State::ready:
        break; // the connection notifies of progress
    case DataControlConnection::State::unsupported:
        connection.reset();
        complete(Outcome::unsupported);
        break;
    case DataControlConnection::State::lost:
        connection.reset();
        if (isConnectionNew) {
            complete(Outcome::unreachable);
        } else {
            connect();
        }
        break;
    }
}

void DataControlClipboard::connect()
{
    retryTimer.stop();
    std::error_code error;
    auto connected = WaylandDisplay::connect(display, std::chrono::steady_clock::now(), error);
    if (!connected && isBusy(error)) {
        retryTimer.start(retryDelay);
        retryDelay = std::min(2 * retryDelay, maxRetryDelay);
        return;
    }
    if (!connected) {
        complete(Outcome::unreachable);
        return;
    }
    connection = std::make_unique<DataControlConnection>(
        *std::move(connected), transfers, [this] { advance(); });
    isConnectionNew = true;
    advance();
}

void DataControlClipboard::complete(Outcome outcome)
{
    isConnectionNew = false;
    const auto completion = std::exchange(pending, std::nullopt)->completion;
    completion(outcome);
}

} // namespace orlimo
