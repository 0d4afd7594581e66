#include <algorithm>
#include <array>
#include <cstddef>
#include <cstdint>
#include <cstring>
#include <random>
#include <span>

// Mutates stores mostly in their structure, and repairs the header and the log's checksums
// afterwards, so that SQLite still accepts most of them.

extern "C" std::size_t LLVMFuzzerMutate(std::uint8_t* data, std::size_t size, std::size_t maxSize);

namespace {

using Bytes = std::span<std::uint8_t>;

constexpr std::size_t headerSize = 100;
constexpr std::size_t logHeaderSize = 32;
constexpr std::size_t frameHeaderSize = 24;

std::uint32_t bigEndian(const std::uint8_t* at)
{
    return static_cast<std::uint32_t>(at[0]) << 24U | static_cast<std::uint32_t>(at[1]) << 16U |
           static_cast<std::uint32_t>(at[2]) << 8U | at[3];
}

std::uint32_t littleEndian(const std::uint8_t* at)
{
    return static_cast<std::uint32_t>(at[3]) << 24U | static_cast<std::uint32_t>(at[2]) << 16U |
           static_cast<std::uint32_t>(at[1]) << 8U | at[0];
}

void setBigEndian(std::uint8_t* at, std::uint32_t value)
{
    for (unsigned index = 0; index < 4; ++index) {
        at[index] = static_cast<std::uint8_t>(value >> (24U - 8U * index));
    }
}

bool isPowerOfTwo(std::uint32_t value)
{
    return value != 0 && (value & (value - 1)) == 0;
}

/// The offset of a log's header; the size if there is none.
std::size_t logStart(Bytes bytes)
{
    for (std::size_t start = 0; start + logHeaderSize <= bytes.size(); ++start) {
        const std::uint32_t magic = bigEndian(bytes.data() + start);
        if (magic == 0x377F0682U || magic == 0x377F0683U) {
            return start;
        }
    }
    return bytes.size();
}

struct Checksum
{
    std::uint32_t first = 0;
    std::uint32_t second = 0;

    /// Adds whole pairs of words.
    void add(Bytes bytes, bool isBigEndian)
    {
        const auto word = isBigEndian ? bigEndian : littleEndian;
        for (std::size_t offset = 0; offset + 8 <= bytes.size(); offset += 8) {
            first += word(bytes.data() + offset) + second;
            second += word(bytes.data() + offset + 4) + first;
        }
    }

    void store(std::uint8_t* at) const
    {
        setBigEndian(at, first);
        setBigEndian(at + 4, second);
    }
};

void repairLog(Bytes log)
{
    if (log.size() < logHeaderSize) {
        return;
    }
    const bool isBigEndian = (log[3] & 1U) != 0;
    Checksum checksum;
    checksum.add(log.first(24), isBigEndian);
    checksum.store(&log[24]);
    const std::uint32_t pageSize = bigEndian(&log[8]);
    if (!isPowerOfTwo(pageSize) || pageSize < 512 || pageSize > 65536) {
        return;
    }
    for (Bytes rest = log.subspan(logHeaderSize); rest.size() >= frameHeaderSize + pageSize;
         rest = rest.subspan(frameHeaderSize + pageSize))
    {
        std::memcpy(&rest[8], &log[16], 8); // the salts
        checksum.add(rest.first(8), isBigEndian);
        checksum.add(rest.subspan(frameHeaderSize, pageSize), isBigEndian);
        checksum.store(&rest[16]);
    }
}

void repairHeader(Bytes store)
{
    if (store.size() < headerSize) {
        return;
    }
    std::memcpy(store.data(), "SQLite format 3", 16);
    const std::uint32_t pageSize = store[16] * 256U + store[17];
    if (pageSize != 1 && (!isPowerOfTwo(pageSize) || pageSize < 512)) {
        store[16] = 2;
        store[17] = 0;
    }
    for (const std::size_t version : {18U, 19U}) {
        if (store[version] != 1 && store[version] != 2) {
            store[version] = 1;
        }
    }
    store[21] = 64;
    store[22] = 32;
    store[23] = 32;
    if (bigEndian(&store[44]) < 1 || bigEndian(&store[44]) > 4) {
        setBigEndian(&store[44], 4);
    }
    if (bigEndian(&store[56]) < 1 || bigEndian(&store[56]) > 3) {
        setBigEndian(&store[56], 1);
    }
}

using Random = std::minstd_rand;

std::size_t below(Random& random, std::size_t limit)
{
    return limit == 0 ? 0 : random() % limit;
}

std::size_t pageSizeOf(Bytes store)
{
    const std::size_t size = store.size() < headerSize ? 512 : store[16] * 256U + store[17];
    return size < 512 ? 512 : size;
}

/// Changes one byte of a page's header, its cell pointers or the beginning of a cell.
void changeStructure(Bytes store, Random& random)
{
    constexpr std::array<std::uint8_t, 14> significant{
        0, 1, 2, 5, 8, 9, 10, 12, 13, 0x0F, 0x7F, 0x80, 0x81, 0xFF};
    const std::size_t pageSize = pageSizeOf(store);
    const std::size_t page = below(random, store.size() / pageSize + 1) * pageSize;
    std::size_t offset = page + (page == 0 ? headerSize : 0) + below(random, 24);
    if (random() % 2 == 0 && offset + 1 < store.size()) {
        // The target of a pointer in the page's header.
        offset = page + (store[offset] * 256U + store[offset + 1]) % pageSize + below(random, 12);
    }
    if (offset < store.size()) {
        store[offset] = random() % 2 == 0 ? significant[below(random, significant.size())]
                                          : static_cast<std::uint8_t>(random());
    }
}

/// Overwrites one page with another.
void copyPage(Bytes store, Random& random)
{
    const std::size_t pageSize = pageSizeOf(store);
    const std::size_t pages = store.size() / pageSize;
    if (pages < 2) {
        return;
    }
    const std::size_t from = 1 + below(random, pages - 1);
    const std::size_t to = 1 + below(random, pages - 1);
    std::memmove(&store[to * pageSize], &store[from * pageSize], pageSize);
}

/// Lets the fuzzer change some bytes, keeping the length.
void changeBytes(Bytes bytes, Random& random)
{
    const std::size_t start = below(random, bytes.size());
    const std::size_t length = 1 + below(random, std::min<std::size_t>(bytes.size() - start, 64));
    std::array<std::uint8_t, 64> part{};
    std::memcpy(part.data(), &bytes[start], length);
    const std::size_t changed = LLVMFuzzerMutate(part.data(), length, length);
    std::memcpy(&bytes[start], part.data(), changed);
}

} // namespace

extern "C" std::size_t
LLVMFuzzerCustomMutator(std::uint8_t* data, std::size_t size, std::size_t maxSize, unsigned seed)
{
    Random random(seed + 1U);
    const unsigned strategy = static_cast<unsigned>(random() % 10);
    if (size == 0 || strategy == 0) {
        size = LLVMFuzzerMutate(data, size, maxSize);
    }
    const Bytes bytes(data, size);
    const std::size_t storeSize = logStart(bytes);
    const Bytes store = bytes.first(storeSize);
    if (!store.empty()) {
        for (std::size_t changes = 1 + below(random, 4); strategy >= 5 && changes > 0; --changes) {
            changeStructure(store, random);
        }
        if (strategy == 1) {
            copyPage(store, random);
        }
    }
    if (strategy >= 2 && strategy < 5 && !bytes.empty()) {
        changeBytes(bytes, random);
    }
    // Files that are no database are tried now and then.
    if (random() % 50 != 0) {
        repairHeader(store);
        repairLog(bytes.subspan(storeSize));
    }
    return size;
}
