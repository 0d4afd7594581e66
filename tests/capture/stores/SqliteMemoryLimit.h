#pragma once

#include <filesystem>

namespace orlimo {

/// Whether SQLite tracks its memory, without which it cannot be limited. The program switches that
/// on when it starts, but some builds do not support it.
[[nodiscard]] bool sqliteTracksMemory();

/// Writes a store in `libraryFolder` of two messages: an older one that says "older", and one
/// without text whose body cannot be read once `limitSqliteMemory` was called. The store's texts
/// are UTF-16, so that SQLite has to convert them when they are read, and the body is large.
void writeStoreForMemoryLimit(const std::filesystem::path& libraryFolder);

/// From here on SQLite has too little memory to convert that body, but enough for everything else.
/// For the whole process: call it in a child.
void limitSqliteMemory();

} // namespace orlimo
