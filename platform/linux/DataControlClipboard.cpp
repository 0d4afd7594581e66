#include "platform/linux/DataControlClipboard.h"

#include "platform/linux/DataControlConnection.h"
#include "platform/linux/SharedText.h"
#include "platform/linux/TextTransfers.h"
#include "platform/linux/WaylandDisplay.h"
#include "platform/linux/WaylandRegistry.h"

#include <chrono>
#include <utility>

namespace orlimo {

namespace {

using namespace std::chrono_literals;

/// How long a compositor may take for all that one call needs of it.
constexpr auto longestWait = 2s;

WaylandDisplay::Deadline deadlineFromNow()
{
    return std::chrono::steady_clock::now() + longestWait;
}

} // namespace

bool DataControlClipboard::isOffered(const std::string& display)
{
    const auto deadline = deadlineFromNow();
    auto connected = WaylandDisplay::connect(display, deadline);
    if (!connected) {
        return false;
    }
    WaylandRegistry registry(*connected); // learns while it lives, so it is no constant
    return connected->roundTrip(deadline) && DataControlConnection::offeredBy(registry) != nullptr;
}

DataControlClipboard::DataControlClipboard(std::string displayName)
    : display(std::move(displayName))
    , transfers(std::make_unique<TextTransfers>())
{}

DataControlClipboard::~DataControlClipboard() = default;

bool DataControlClipboard::setText(std::string text)
{
    const auto deadline = deadlineFromNow();
    const auto shared = std::make_shared<const std::string>(std::move(text));
    if (connection && connection->setText(shared, deadline)) {
        return true;
    }
    // One at a time: the old connection would still hold the clipboard.
    connection.reset();
    connection = DataControlConnection::open(display, deadline, *transfers);
    if (connection && !connection->setText(shared, deadline)) {
        connection.reset();
    }
    return connection != nullptr;
}

} // namespace orlimo
