#pragma once

#include <filesystem>

namespace orlimo {

/// Whether SQLite counts the memory it has, which it has to be able to before it can be starved.
/// Builds that do not by themselves are told to when the program starts; one that does not let
/// itself be told remains.
[[nodiscard]] bool sqliteTracksMemory();

/// Writes a store in `libraryFolder` of two messages: an older one that says "older", and one
/// without text whose body is read in vain once `limitSqliteMemory` was called. The store's texts
/// are UTF-16, so that SQLite has to convert them when they are read, and the body is large.
void writeStoreForMemoryLimit(const std::filesystem::path& libraryFolder);

/// From here on SQLite has too little memory to convert that body, and enough for all the rest. For
/// the whole process: call it in a child.
void limitSqliteMemory();

} // namespace orlimo
