#pragma once

#include "capture/Message.h"
#include "tests/capture/MemoryUserDefaults.h"
#include "tests/capture/RecordingPasteboard.h"
#include "tests/support/ManualClock.h"
#include "tests/support/ManualQueue.h"
#include "tests/support/ScriptedVnodeSource.h"
#include "tests/support/StoreWriter.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <memory>

namespace orlimo {

/// A message store in a temporary folder with an open writer, preferences with only capturing
/// switched on, and a clipboard that records its calls.
class MessageTestBase : public testing::Test
{
protected:
    /// A watch on the store's log that reports what the test says.
    struct Watch
    {
        ManualClock clock;
        ManualQueue decisions;
        ManualQueue main;
        std::shared_ptr<ScriptedVnodeSource::Script> source =
            std::make_shared<ScriptedVnodeSource::Script>();
    };

    MessageTestBase();
    ~MessageTestBase() override { watch.source->dropHandlers(); }

    [[nodiscard]] CaptureServices services();

    /// A controller that watches the store. What it logs meanwhile is discarded.
    [[nodiscard]] std::shared_ptr<Message> watching();

    TemporaryFolder library;
    StoreWriter store;
    Database& database;
    MemoryUserDefaults defaults;
    RecordingPasteboard clipboard;
    Watch watch;
};

} // namespace orlimo
