#include "platform/files/FileHandle.h"

#include "platform/files/UniqueFd.h"
#include "platform/loginitem/macos/ErrorConversion.h"
#include "platform/process/macos/Retained.h"

#include <cerrno>
#include <utility>

#import <Foundation/Foundation.h>
#include <fcntl.h>
#include <sys/stat.h>

namespace orlimo {

namespace {

[[noreturn]] void failToOpen(const std::filesystem::path& file, std::error_code error)
{
    throw std::system_error(error, "cannot open " + file.string());
}

[[noreturn]] void failToOpen(const std::filesystem::path& file, int number)
{
    failToOpen(file, std::error_code(number, std::generic_category()));
}

bool isPipe(const std::filesystem::path& file)
{
    struct stat status = {};
    return ::stat(file.c_str(), &status) == 0 && S_ISFIFO(status.st_mode);
}

/// Opening a pipe through Foundation would block the main thread until there is a writer.
Retained<NSFileHandle*> openPipe(const std::filesystem::path& file)
{
    UniqueFd opened(::open(file.c_str(), O_RDONLY | O_NONBLOCK | O_CLOEXEC));
    if (!opened) {
        failToOpen(file, errno);
    }
    return Retained<NSFileHandle*>::adopt(
        [[NSFileHandle alloc] initWithFileDescriptor:opened.release() closeOnDealloc:YES]);
}

Retained<NSFileHandle*> openFileOrFolder(const std::filesystem::path& file)
{
    if (file.empty()) {
        failToOpen(file, ENOENT); // as a URL it would be the current folder
    }
    NSURL* const url = [NSURL fileURLWithFileSystemRepresentation:file.c_str()
                                                      isDirectory:NO
                                                    relativeToURL:nil];
    if (url == nil) {
        failToOpen(file, EILSEQ);
    }
    NSError* error = nil;
    NSFileHandle* const handle = [NSFileHandle fileHandleForReadingFromURL:url error:&error];
    if (handle == nil) {
        failToOpen(file, toErrorCode(error));
    }
    return Retained<NSFileHandle*>::retain(handle);
}

/// No object here has a destructor: NSException would not run it.
std::uint64_t endOffset(NSFileHandle* handle)
{
    @try
    {
        return [handle seekToEndOfFile];
    } @catch (NSException*)
    {
        return 0; // the file has no position
    }
}

class OpenNSFileHandle final : public FileHandle::OpenFile
{
public:
    explicit OpenNSFileHandle(Retained<NSFileHandle*> opened)
        : handle(std::move(opened))
    {}
    ~OpenNSFileHandle() override
    {
        // Not left to the last reference, which a pool of somebody else may hold.
        (void)OpenNSFileHandle::close();
    }

    [[nodiscard]] int descriptor() const override { return [handle.get() fileDescriptor]; }

    [[nodiscard]] std::uint64_t seekToEnd() const override
    {
        @autoreleasepool {
            return endOffset(handle.get());
        }
    }

    std::error_code close() override
    {
        const Retained<NSFileHandle*> closing = std::move(handle);
        if (!closing) {
            return {};
        }
        @autoreleasepool {
            NSError* error = nil;
            return [closing.get() closeAndReturnError:&error] ? std::error_code()
                                                              : toErrorCode(error);
        }
    }

private:
    Retained<NSFileHandle*> handle;
};

} // namespace

FileHandle FileHandle::openForReading(const std::filesystem::path& file)
{
    @autoreleasepool {
        Retained<NSFileHandle*> handle = isPipe(file) ? openPipe(file) : openFileOrFolder(file);
        (void)::fcntl([handle.get() fileDescriptor], F_SETFD, FD_CLOEXEC);
        return FileHandle(std::make_unique<OpenNSFileHandle>(std::move(handle)));
    }
}

} // namespace orlimo
