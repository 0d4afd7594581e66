#include "tests/app/StoredPreferences.h"

namespace orlimo {

void storePreferences(const ProgramSession& session, const std::map<std::string, bool>& values)
{
    std::string text = "[General]\n";
    for (const auto& [key, value] : values) {
        text += key + (value ? "=true\n" : "=false\n");
    }
    writeFile(session.preferences(), text);
}

} // namespace orlimo
