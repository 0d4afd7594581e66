#pragma once

#include "tests/program/ProgramSession.h"

#include <map>
#include <string>

namespace orlimo {

/// Stores preferences in the place of those that the session's program has, where its host keeps
/// them, as another program of the user's would.
void storePreferences(const ProgramSession& session, const std::map<std::string, bool>& values);

} // namespace orlimo
