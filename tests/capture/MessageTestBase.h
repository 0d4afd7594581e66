#pragma once

#include "capture/Message.h"
#include "tests/capture/PreferenceSandbox.h"
#include "tests/support/StoreWriter.h"
#include "tests/support/TemporaryFolder.h"

#include <gtest/gtest.h>

#include <filesystem>
#include <memory>
#include <string>

namespace orlimo {

/// A message store in a folder of the test's own, with its writer at work; the preferences of the
/// sandboxed home, with capturing switched on and nothing else; the clipboard, holding "before".
class MessageTestBase : public testing::Test
{
protected:
    MessageTestBase();

    [[nodiscard]] std::filesystem::path log() const;

    /// The program's own host, but for the place of the store, and for a watch that opens the log
    /// and then hears nothing: changes are told by the test.
    [[nodiscard]] CaptureServices services() const;

    /// A controller that was allowed to watch the store. What it logs on the way is swallowed.
    [[nodiscard]] static std::shared_ptr<Message> watching(CaptureServices services);
    [[nodiscard]] std::shared_ptr<Message> watching() const { return watching(services()); }

    /// What another program would paste.
    [[nodiscard]] static std::string clipboardText();
    static void setClipboardText(const std::string& text);

    PreferenceSandbox sandbox;
    TemporaryFolder library;
    StoreWriter store;
    Database& database;
    UserDefaults& defaults;
};

} // namespace orlimo
