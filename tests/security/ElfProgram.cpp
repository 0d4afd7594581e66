#include "tests/security/ElfProgram.h"

#include "tests/packaging/CommandResult.h"
#include "tests/support/process/OutputCapture.h"

#include <gtest/gtest.h>

#include <sstream>

namespace orlimo {

namespace {

std::string described(const std::filesystem::path& file, const std::string& option)
{
    const auto result =
        CommandResult::of("/usr/bin/readelf", {.arguments = {option, "--wide", file.string()}});
    EXPECT_EQ(result.status, 0) << result.text();
    return result.output;
}

/// The undefined names in a table of symbols.
std::vector<std::string> undefinedNames(const std::string& table)
{
    std::vector<std::string> names;
    for (const std::string& line : linesOf(table)) {
        std::istringstream words(line);
        std::string number, value, size, type, binding, visibility, section, name;
        words >> number >> value >> size >> type >> binding >> visibility >> section >> name;
        if (section == "UND" && !name.empty()) {
            names.push_back(name.substr(0, name.find('@')));
        }
    }
    return names;
}

} // namespace

ElfProgram::ElfProgram(const std::filesystem::path& file)
    : headerText(described(file, "--file-header"))
    , segmentsText(described(file, "--program-headers"))
    , dynamicText(described(file, "--dynamic"))
    , notesText(described(file, "--notes"))
    , importedNames(undefinedNames(described(file, "--dyn-syms")))
{}

} // namespace orlimo
