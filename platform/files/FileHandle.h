#pragma once

#include <cstdint>
#include <filesystem>
#include <functional>
#include <memory>
#include <system_error>
#include <utility>

namespace orlimo {

/// An open file, opened for reading. Owns its descriptor: closed by `close` or with the handle.
/// Used on one thread at a time.
class FileHandle
{
public:
    /// The file as the system has it, which closes it at its end.
    class OpenFile
    {
    public:
        OpenFile() = default;
        OpenFile(const OpenFile&) = delete;
        OpenFile& operator=(const OpenFile&) = delete;
        virtual ~OpenFile() = default;

        [[nodiscard]] virtual int descriptor() const = 0;
        /// See `seekToEndOfFile`.
        [[nodiscard]] virtual std::uint64_t seekToEnd() const = 0;
        /// Called at most once, before the end.
        virtual std::error_code close() = 0;
    };

    explicit FileHandle(std::unique_ptr<OpenFile> opened)
        : openFile(std::move(opened))
    {}

    /// Opens `file`. Throws std::system_error with the system's error on failure.
    [[nodiscard]] static FileHandle openForReading(const std::filesystem::path& file);

    /// The descriptor, still owned by the handle; -1 once the handle is closed.
    [[nodiscard]] int fileDescriptor() const { return openFile ? openFile->descriptor() : -1; }

    /// Moves the read position to the end of the file and returns that offset in bytes; 0 for a
    /// file without a position, such as a pipe.
    std::uint64_t seekToEndOfFile() const { return openFile ? openFile->seekToEnd() : 0; }

    /// Closes the descriptor and returns the system's error, if any. Closing twice is harmless.
    std::error_code close()
    {
        const auto closing = std::move(openFile);
        return closing ? closing->close() : std::error_code();
    }

private:
    /// Null once the handle is closed.
    std::unique_ptr<OpenFile> openFile;
};

/// Opens a file as `FileHandle::openForReading` does; handed in, so that tests can provide another.
using FileOpener = std::function<FileHandle(const std::filesystem::path&)>;

} // namespace orlimo
