#pragma once

#include "tests/program/ProgramSession.h"

#include <map>
#include <string>

namespace orlimo {

/// Replaces the stored preferences of the session's program, as another program would.
void storePreferences(const ProgramSession& session, const std::map<std::string, bool>& values);

} // namespace orlimo
