#pragma once

namespace orlimo {

/// Empties the program's own store of preferences, by the means of the system under test.
void clearUserDefaults();

} // namespace orlimo
