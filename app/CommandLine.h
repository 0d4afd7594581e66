#pragma once

#include <cstddef>
#include <functional>
#include <span>
#include <string>

namespace orlimo {

/// What the program is asked to do on its command line. Made before Qt's application
/// object, so that it needs no display.
struct CommandLine
{
    enum class Request {
        run,
        /// Run, started by the system because the user has just logged in.
        runLaunchedAtLogin,
        /// Write `text` to standard output and end with status 0.
        print,
        /// Write `text` to standard error and end with status 2.
        refuse,
    };

    Request request = Request::run;
    /// Whether to run even where the program already runs in this session.
    bool sideBySide = false;
    /// What there is to write, with its line break; empty when the program is to run.
    std::string text;

    /// Reads the arguments as main() gets them. The first one that settles the matter wins. What
    /// Qt takes for itself (-platform, -style ...) and what the system adds is passed over.
    /// `systemArgumentCount`: how many of the arguments, from the first one on, the system has put
    /// there for its own libraries.
    [[nodiscard]] static CommandLine parse(
        int argc,
        const char* const* argv,
        const std::function<std::size_t(std::span<const char* const>)>& systemArgumentCount);
};

} // namespace orlimo
