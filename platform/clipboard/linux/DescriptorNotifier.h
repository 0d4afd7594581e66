#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace orlimo {

/// Stops a notifier at once and removes it when it is no longer at work, so that it may be let go
/// of in its own call.
struct NotifierDeleter
{
    void operator()(QSocketNotifier* notifier) const;
};

/// Calls back on the event loop each time a descriptor is ready, while it lives and is enabled.
/// Must go before the descriptor is closed. Main thread.
using DescriptorNotifier = std::unique_ptr<QSocketNotifier, NotifierDeleter>;

/// A notifier, enabled, that calls `ready` when `descriptor` can be read from or written to.
[[nodiscard]] DescriptorNotifier
makeDescriptorNotifier(int descriptor, QSocketNotifier::Type type, std::function<void()> ready);

} // namespace orlimo
