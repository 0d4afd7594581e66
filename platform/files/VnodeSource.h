#pragma once

#include "platform/threads/Queue.h"

#include <functional>
#include <memory>

namespace orlimo {

/// Events of an open file, as a set of bits.
using VnodeEvents = unsigned;

/// The file became longer. The value is that of DISPATCH_VNODE_EXTEND.
inline constexpr VnodeEvents vnodeExtend = 0x4;

/// Reports events of one open file, on the queue that it was created with.
///
/// Events that accumulate before the handler runs are merged into one call. For the write-ahead log
/// of an SQLite store, all growth that belongs to one commit is one event, delivered as soon as the
/// commit can be read: SQLite appends to the log first and makes the commit visible only then, so
/// that a reader that acted on the first byte would see the old state of the store. Growth of any
/// other file is reported at once.
///
/// All members are called on the queue's thread; handlers run there too.
class VnodeSource
{
public:
    using Handler = std::function<void()>;

    VnodeSource() = default;
    VnodeSource(const VnodeSource&) = delete;
    VnodeSource& operator=(const VnodeSource&) = delete;
    virtual ~VnodeSource() = default;

    /// What to run for each delivered event. The source owns the handler, and with it whatever the
    /// handler holds, until it is cancelled. Set before `resume`.
    virtual void setEventHandler(Handler handler) = 0;

    /// What to run once after `cancel`, when no more events are delivered.
    virtual void setCancelHandler(Handler handler) = 0;

    /// Starts the delivery of events from now on. Throws std::system_error when the system lacks
    /// the resources to watch.
    virtual void resume() = 0;

    /// Ends the delivery: no event handler starts after this. The cancel handler runs later on the
    /// queue; after it both handlers are dropped. A second call does nothing.
    virtual void cancel() = 0;

    /// Inside the event handler: the events that the call reports.
    [[nodiscard]] virtual VnodeEvents data() const = 0;
};

/// Makes a source for an open file. Injected, so that tests can script one.
using VnodeSourceFactory =
    std::function<std::unique_ptr<VnodeSource>(int fileDescriptor, VnodeEvents mask, Queue& queue)>;

/// The system's source for the file behind `fileDescriptor`, which the caller keeps open until the
/// cancel handler has run. Only events in `mask` are reported. Throws std::system_error with the
/// system's error when the file cannot be watched.
[[nodiscard]] std::unique_ptr<VnodeSource>
makeFileSystemObjectSource(int fileDescriptor, VnodeEvents mask, Queue& queue);

} // namespace orlimo
