#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <system_error>

namespace orlimo {

/// An open file, opened for reading. Owns its descriptor: closed by `close` or with the handle.
/// Used on one thread at a time.
class FileHandle
{
public:
    /// Opens `file`. Throws std::system_error with the system's error on failure.
    [[nodiscard]] static FileHandle openForReading(const std::filesystem::path& file);

    FileHandle(FileHandle&& other) noexcept;
    FileHandle& operator=(FileHandle&& other) noexcept;
    FileHandle(const FileHandle&) = delete;
    FileHandle& operator=(const FileHandle&) = delete;
    ~FileHandle();

    /// The descriptor, still owned by the handle; -1 once the handle is closed.
    [[nodiscard]] int fileDescriptor() const;

    /// Moves the read position to the end of the file and returns that offset in bytes; 0 for a
    /// file without a position, such as a pipe.
    std::uint64_t seekToEndOfFile() const;

    /// Closes the descriptor and returns the system's error, if any. Closing twice is harmless.
    std::error_code close();

private:
    class OpenFile;

    explicit FileHandle(std::unique_ptr<OpenFile> opened);

    /// Null once the handle is closed.
    std::unique_ptr<OpenFile> openFile;
};

} // namespace orlimo
