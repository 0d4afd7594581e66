#include "tests/soak/StatementCost.h"

#include "sample/SampleStore.h"
#include "tests/capture/stores/ProcessLifetimeDatabase.h"
#include "tests/support/DeliberateLeak.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <malloc.h>

namespace orlimo {

namespace {

/// Bytes that are handed out at this moment, with what the allocator adds to each piece.
long allocated()
{
    return static_cast<long>(::mallinfo2().uordblks);
}

} // namespace

long statementCost()
{
    constexpr std::int64_t messages = 10;
    constexpr int reads = 200;
    const TemporaryFolder library;
    std::filesystem::create_directories(library.path() / "Messages");
    sample::SampleStore store(library.path() / "Messages/chat.db");
    store.fill(messages);

    const DeliberateLeak statements;
    Database& database = processLifetimeDatabase(library.path());
    // What the first reads need once is not what each of them keeps.
    for (int read = 0; read < reads; ++read) {
        EXPECT_EQ(database.fetchMessages(messages).size(), 10U);
    }
    const long before = allocated();
    for (int read = 0; read < reads; ++read) {
        (void)database.fetchMessages(messages);
    }
    return (allocated() - before) / reads;
}

} // namespace orlimo
