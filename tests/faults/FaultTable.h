#pragma once

#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// What the program does about a message: the lines that it prints, and whether the code is then on
/// the clipboard.
struct Reaction
{
    bool copies = true;
    /// Absent: the lines that belong to a code that is copied, or none.
    std::optional<std::vector<std::string>> lines{};
};

/// One fault under the built program, and its effects.
struct FaultRow
{
    enum class Phase {
        fromStart,   ///< until the first message has come
        whileRunning ///< from when the program watches, until the first message has come
    };

    /// What the files of the user's configuration hold at the end.
    enum class Settings {
        complete,  ///< what was there, and what the program adds at its first start
        unchanged, ///< what was there before the program started
        none,      ///< there is no file
    };

    enum class LoginItem { registered, unchanged, none };

    /// What fails, in words.
    std::string name;
    /// The faults, as rules of the injector.
    std::string rules{};
    Phase phase = Phase::fromStart;
    /// What the program prints while it starts. Absent: the same as without the fault.
    std::optional<std::vector<std::string>> start{};
    /// The reactions to a message that comes while the fault lasts, and to one that comes when it
    /// is over.
    Reaction duringFault{};
    Reaction afterFault{};
    /// Part of what standard error says; empty where it says nothing.
    std::string errors{};
    /// Part of what reaches the system's log; empty where nothing does.
    std::string systemLog{};
    /// Whether the lines on standard output are lost, those of the reactions included.
    bool losesOutput = false;
    /// Whether there are settings of the user's, with one preference missing, and a login item.
    bool hasFiles = false;
    Settings settings = Settings::complete;
    LoginItem loginItem = LoginItem::registered;
    /// The status or the signal with which the program ends because of the fault. Absent: it runs
    /// on.
    std::optional<int> status{};
    std::optional<int> signal{};
    /// Whether everything stands in the store itself before the first message, and nothing in its
    /// log.
    bool hasEmptyLog = false;
    /// Whether there is a session bus, which the other rows do without.
    bool hasBus = false;
    /// Whether there is a compositor beside the X server, which has data control.
    bool hasCompositor = false;
    /// Whether the bus is ended when the fault begins.
    bool endsBus = false;
};

/// The rows about one thing that the program works with.
struct FaultGroup
{
    std::string name;
    std::vector<FaultRow> rows;
};

/// Every fault that is tried.
[[nodiscard]] const std::vector<FaultGroup>& faultTable();

} // namespace orlimo
