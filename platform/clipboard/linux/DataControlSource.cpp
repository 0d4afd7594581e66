#include "platform/clipboard/linux/DataControlSource.h"

#include "platform/clipboard/linux/PasswordManagerHint.h"

#include <algorithm>
#include <array>
#include <memory>
#include <string>
#include <string_view>
#include <utility>

namespace orlimo {

namespace {

/// The type names of plain text that Wayland and X clients request.
constexpr std::array<const char*, 5> textTypes{
    "text/plain;charset=utf-8", "text/plain", "UTF8_STRING", "STRING", "TEXT"};

bool isText(std::string_view type)
{
    return std::ranges::find(textTypes, type) != textTypes.end();
}

} // namespace

DataControlSource::DataControlSource(
    const WaylandProxy& manager,
    const DataControlProtocol& protocol,
    SharedText offeredText,
    TextTransfers& textTransfers,
    std::function<void(DataControlSource&)> cancelled)
    : text(std::move(offeredText))
    , transfers(textTransfers)
    , onCancelled(std::move(cancelled))
    , source(
          manager.create(DataControlProtocol::ManagerRequest::createDataSource, protocol.source),
          DataControlProtocol::SourceRequest::destroy)
{
    source.deliverTo(*this);
    for (const char* const type : textTypes) {
        source.send(DataControlProtocol::SourceRequest::offer, type);
    }
    source.send(DataControlProtocol::SourceRequest::offer, passwordManagerHint::type);
}

void DataControlSource::receive(std::uint32_t event, const wl_argument* arguments)
{
    if (event == DataControlProtocol::SourceEvent::send) {
        UniqueFd writeEnd(arguments[1].h); // owned whether or not it is served
        const std::string_view type = arguments[0].s;
        if (isText(type)) {
            transfers.start(text, std::move(writeEnd));
        } else if (type == passwordManagerHint::type) {
            transfers.start(
                std::make_shared<const std::string>(passwordManagerHint::value),
                std::move(writeEnd));
        }
    } else if (event == DataControlProtocol::SourceEvent::cancelled) {
        const auto callback = onCancelled; // the call may destroy this object
        callback(*this);
    }
}

} // namespace orlimo
