#pragma once

#include "platform/clipboard/linux/TextTransfers.h"

#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace orlimo {

class DataControlConnection;

/// Whether a compositor is known to let programs without a window set the clipboard.
enum class DataControlAvailability {
    offered,
    notOffered, ///< or there is no compositor
    unknown,    ///< a compositor is listening but has not responded in time
};

/// Sets the clipboard of a Wayland session in the background, without a window or the focus, if the
/// compositor offers the data-control protocol. Main thread, with an event loop, on which the text
/// is sent to the compositor and to the programs that paste it. Causes no wake-ups while idle.
class DataControlClipboard
{
public:
    /// The result of setting a text.
    enum class Outcome {
        sent,        ///< it is on its way to the compositor
        unsupported, ///< the compositor does not offer this
        unreachable, ///< there is no compositor, or it hangs up
    };
    using Completion = std::function<void(Outcome)>;

    /// Whether a compositor can be reached that offers the protocol and has a seat. Waits for its
    /// response for at most `limit`. `display` is the compositor's name or the path of its socket;
    /// empty means the session's own. Needs no application object.
    [[nodiscard]] static DataControlAvailability
    availability(std::chrono::milliseconds limit, const std::string& display = {});

    /// For the compositor `display`, as above. Connects when the first text is set.
    explicit DataControlClipboard(std::string display = {});
    DataControlClipboard(const DataControlClipboard&) = delete;
    DataControlClipboard& operator=(const DataControlClipboard&) = delete;

    /// Gives up the clipboard; pending transfers end early.
    ~DataControlClipboard();

    /// Puts `text`, UTF-8 and possibly empty, on the clipboard of every seat as soon as the
    /// compositor responds and has a seat; never blocks. `completion` is called once, from within
    /// this function or later, unless a newer text replaces this one first: only the newest is
    /// kept. A lost connection is re-established.
    void setText(std::string text, Completion completion);

private:
    struct Pending
    {
        SharedText text;
        Completion completion;
    };

    void advance();
    void connect();
    void complete(Outcome outcome);

    std::string display;
    TextTransfers transfers;
    std::optional<Pending> pending;
    std::unique_ptr<DataControlConnection> connection;
    /// Whether the connection was established for the pending text.
    bool isConnectionNew = false;
    /// Runs only while a text is pending and the compositor accepts no connection.
    QTimer retryTimer;
    std::chrono::milliseconds retryDelay{0};
};

} // namespace orlimo
