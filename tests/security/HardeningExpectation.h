#pragma once

#include <filesystem>

namespace orlimo {

/// Expects that the program `file` was built with everything that makes a mistake in it harder to
/// exploit.
void expectHardened(const std::filesystem::path& file);

} // namespace orlimo
