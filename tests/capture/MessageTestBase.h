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

/// A message store in a temporary folder with an open writer, the preferences of the sandboxed home
/// with only capturing switched on, and the clipboard, holding "before".
class MessageTestBase : public testing::Test
{
protected:
    MessageTestBase();

    [[nodiscard]] std::filesystem::path log() const;

    /// The program's own services, but with this store and with a watch that opens the log and
    /// never reports anything: the test reports changes.
    [[nodiscard]] CaptureServices services() const;

    /// A controller that watches the store. What it logs meanwhile is discarded.
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
