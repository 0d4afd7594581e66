#pragma once

#include <QSocketNotifier>

#include <functional>
#include <memory>

namespace orlimo {

/// Disables a notifier at once and deletes it from the event loop, so that it may be released
/// within its own callback.
struct NotifierDeleter
{
    void operator()(QSocketNotifier* notifier) const;
};

/// Calls back on the event loop each time a descriptor is ready, while it exists and is enabled.
/// Must be destroyed before the descriptor is closed. Main thread.
using DescriptorNotifier = std::unique_ptr<QSocketNotifier, NotifierDeleter>;

/// An enabled notifier that calls `ready` when `descriptor` is readable or writable.
[[nodiscard]] DescriptorNotifier
makeDescriptorNotifier(int descriptor, QSocketNotifier::Type type, std::function<void()> ready);

} // namespace orlimo
