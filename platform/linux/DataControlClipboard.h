#pragma once

#include <memory>
#include <string>

namespace orlimo {

class DataControlConnection;
class TextTransfers;

/// The clipboard of a Wayland session, set in the background: without a window and without the
/// focus, where the compositor offers the protocol for that. Main thread, with an event loop, on
/// which the text is handed to the programs that paste it. An idle session costs nothing.
class DataControlClipboard
{
public:
    /// Whether a compositor can be reached that offers this, and a seat to have a clipboard. Waits
    /// two seconds for its answer at the most. `display` is the compositor's name, or the path of
    /// its socket; empty stands for the session's own. Needs no application object.
    [[nodiscard]] static bool isOffered(const std::string& display = {});

    /// For the compositor of that name, as above. Connects when the first text is set.
    explicit DataControlClipboard(std::string display = {});
    DataControlClipboard(const DataControlClipboard&) = delete;
    DataControlClipboard& operator=(const DataControlClipboard&) = delete;

    /// Gives the clipboard up; readers that have not got all of a text get no more.
    ~DataControlClipboard();

    /// Takes the clipboard of every seat over with `text`, UTF-8, which may be empty. The text is
    /// on its way to the compositor when this returns, which is after two seconds at the latest. A
    /// connection that was lost is made anew. False when the clipboard could not be set.
    [[nodiscard]] bool setText(std::string text);

private:
    std::string display;
    std::unique_ptr<TextTransfers> transfers;
    std::unique_ptr<DataControlConnection> connection;
};

} // namespace orlimo
