#include "tests/app/StoredPreferences.h"

namespace orlimo {

void storePreferences(const ProgramSession& session, const std::map<std::string, bool>& values)
{
    std::string text = R"(<?xml version="1.0" encoding="UTF-8"?>
<!DOCTYPE plist PUBLIC "-//Apple//DTD PLIST 1.0//EN" "http://www.apple.com/DTDs/PropertyList-1.0.dtd">
<plist version="1.0"><dict>
)";
    for (const auto& [key, value] : values) {
        text += "<key>" + key + (value ? "</key><true/>\n" : "</key><false/>\n");
    }
    text += "</dict></plist>\n";
    // As GNUstep writes it: by the folder's time it tells that there is something new.
    const auto file = session.home() / "Library/Preferences/app.orlimo.Orlimo.plist";
    const auto changed = file.string() + ".new";
    writeFile(changed, text);
    std::filesystem::rename(changed, file);
}

} // namespace orlimo
