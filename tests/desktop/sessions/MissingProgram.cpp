#include "tests/desktop/sessions/MissingProgram.h"

namespace orlimo {

std::string missingProgram(std::initializer_list<std::filesystem::path> programs)
{
    for (const auto& program : programs) {
        if (!std::filesystem::exists(program)) {
            return "there is no " + program.string();
        }
    }
    return "";
}

} // namespace orlimo
