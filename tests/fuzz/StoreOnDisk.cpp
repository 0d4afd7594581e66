#include "tests/fuzz/StoreOnDisk.h"

#include <algorithm>
#include <string>

#include <fcntl.h>
#include <unistd.h>

namespace orlimo {

namespace {

struct Parts
{
    std::string_view store;
    std::string_view log;
};

/// The number with which a log begins is even or odd, for the order of bytes in its checksums.
Parts partsOf(std::string_view bytes)
{
    constexpr std::string_view beginning = "\x37\x7F\x06";
    for (std::size_t place = bytes.find(beginning); place != std::string_view::npos;
         place = bytes.find(beginning, place + 1))
    {
        const std::string_view log = bytes.substr(place);
        if (log.size() >= 4 && (log[3] == '\x82' || log[3] == '\x83')) {
            return {bytes.substr(0, place), log};
        }
    }
    return {bytes, {}};
}

void setContent(int descriptor, std::string_view content)
{
    (void)!::pwrite(descriptor, content.data(), content.size(), 0);
    (void)!::ftruncate(descriptor, static_cast<off_t>(content.size()));
}

bool holds(int descriptor, std::string_view content)
{
    std::string present(content.size() + 1, '\0');
    const ssize_t got = ::pread(descriptor, present.data(), present.size(), 0);
    return got >= 0 &&
           std::string_view(present).substr(0, static_cast<std::size_t>(got)) == content;
}

} // namespace

StoreOnDisk::StoreOnDisk()
{
    const auto file = library.path() / "Messages/chat.db";
    std::filesystem::create_directories(file.parent_path());
    log = file.string() + "-wal";
    sharedIndex = file.string() + "-shm";
    journal = file.string() + "-journal";
    store = UniqueFd(::open(file.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
}

void StoreOnDisk::fill(std::string_view bytes)
{
    const Parts parts = partsOf(bytes);
    for (const auto& file : {log, sharedIndex, journal}) {
        (void)::unlink(file.c_str());
    }
    setContent(store.get(), parts.store);
    if (!parts.log.empty()) {
        const UniqueFd descriptor(::open(log.c_str(), O_RDWR | O_CREAT | O_CLOEXEC, 0600));
        setContent(descriptor.get(), parts.log);
    }
}

bool StoreOnDisk::isUnchanged(std::string_view bytes) const
{
    const Parts parts = partsOf(bytes);
    if (!holds(store.get(), parts.store)) {
        return false;
    }
    if (parts.log.empty()) {
        return true;
    }
    // Opened by nobody else: a log has no locks that closing it could take away.
    const UniqueFd descriptor(::open(log.c_str(), O_RDONLY | O_CLOEXEC));
    return holds(descriptor.get(), parts.log);
}

} // namespace orlimo
