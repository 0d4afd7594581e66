#pragma once

#include "platform/clipboard/linux/DataControlAvailability.h"
#include "platform/clipboard/linux/SharedText.h"

#include <QTimer>

#include <chrono>
#include <functional>
#include <memory>
#include <optional>
#include <string>

namespace orlimo {

class DataControlConnection;
class TextTransfers;

/// The clipboard of a Wayland session, set in the background: without a window and without the
/// focus, where the compositor offers the protocol for that. Main thread, with an event loop, on
/// which the text is handed to the compositor and to the programs that paste it. An idle session
/// costs nothing.
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

    /// Whether a compositor can be reached that offers this, and a seat to have a clipboard. Waits
    /// for its response for `limit` at most. `display` is the compositor's name, or the path of its
    /// socket; empty stands for the session's own. Needs no application object.
    [[nodiscard]] static DataControlAvailability
    availability(std::chrono::milliseconds limit, const std::string& display = {});

    /// For the compositor of that name, as above. Connects when the first text is set.
    explicit DataControlClipboard(std::string display = {});
    DataControlClipboard(const DataControlClipboard&) = delete;
    DataControlClipboard& operator=(const DataControlClipboard&) = delete;

    /// Gives the clipboard up; readers that have not got all of a text get no more.
    ~DataControlClipboard();

    /// Takes the clipboard of every seat over with `text`, UTF-8, which may be empty, as soon as
    /// the compositor responds and has a seat; never blocks. `completed` is called once, from
    /// within this function or later, or not at all when a newer text replaces this one before:
    /// only the newest is kept. A connection that was lost is made anew.
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
    std::unique_ptr<TextTransfers> transfers;
    std::optional<Pending> pending;
    std::unique_ptr<DataControlConnection> connection;
    /// Whether the connection was made for the text that is pending.
    bool isConnectionNew = false;
    /// Runs only while a text is pending and the compositor takes no connection.
    QTimer retryTimer;
    std::chrono::milliseconds retryDelay{0};
};

} // namespace orlimo
