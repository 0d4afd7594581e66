#pragma once

#include "tests/support/process/ChildProcess.h"

#include <map>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace orlimo {

/// The selections of a Wayland desktop that lets programs without a window read and write them, as
/// other programs see them. A selection is "clipboard" or "primary".
class WaylandClipboard
{
public:
    /// `environment` is what puts a program on the desktop.
    explicit WaylandClipboard(std::map<std::string, std::optional<std::string>> environment);
    WaylandClipboard(const WaylandClipboard&) = delete;
    WaylandClipboard& operator=(const WaylandClipboard&) = delete;
    ~WaylandClipboard() = default;

    /// What a program pastes from `selection`, byte for byte, as `type` or, where that is empty, as
    /// what a program that wants text picks. Absent when nobody owns it, when the type is not
    /// offered, and when the text does not come to an end within ten seconds; `problem` says which.
    [[nodiscard]] std::optional<std::string>
    paste(const std::string& selection = "clipboard", const std::string& type = "") const;

    /// Why the last paste got nothing; empty where it did.
    [[nodiscard]] const std::string& problem() const { return lastProblem; }

    /// The types that the owner of `selection` offers.
    [[nodiscard]] std::vector<std::string> types(const std::string& selection = "clipboard") const;

    /// Makes another program own `selection` with `text`, until someone else does or the object
    /// goes, and waits until it does.
    void copy(const std::string& text, const std::string& selection = "clipboard");

private:
    [[nodiscard]] ChildSettings
    tool(std::vector<std::string> arguments, const std::string& selection) const;

    std::map<std::string, std::optional<std::string>> variables;
    std::map<std::string, std::unique_ptr<ChildProcess>> owners;
    mutable std::string lastProblem;
};

} // namespace orlimo
