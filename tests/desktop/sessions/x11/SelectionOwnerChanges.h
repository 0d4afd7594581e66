#pragma once

#include <cstddef>
#include <string>

#include <xcb/xcb.h>

namespace orlimo {

/// Counts how often the clipboard of an X server gets a new owner, as clipboard managers see it.
class SelectionOwnerChanges
{
public:
    /// Counts from when it has been made. `display` is the server's name.
    explicit SelectionOwnerChanges(const std::string& display);
    SelectionOwnerChanges(const SelectionOwnerChanges&) = delete;
    SelectionOwnerChanges& operator=(const SelectionOwnerChanges&) = delete;
    ~SelectionOwnerChanges();

    /// How many there were so far.
    [[nodiscard]] std::size_t count();

private:
    void awaitServer() const;

    xcb_connection_t* connection;
    std::size_t seen = 0;
};

} // namespace orlimo
