#pragma once

#include "tests/program/ProgramSession.h"

#include <map>
#include <string>

namespace orlimo {

/// Replaces the stored preferences of the session's program, as another program would.
inline void
storePreferences(const ProgramSession& session, const std::map<std::string, bool>& values)
{
    std::string text = "[General]\n";
    for (const auto& [key, value] : values) {
        text += key + (value ? "=true\n" : "=false\n");
    }
    writeFile(session.preferences(), text);
}

} // namespace orlimo
