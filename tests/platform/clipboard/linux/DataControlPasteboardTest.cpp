#include "platform/clipboard/linux/DataControlPasteboard.h"

#include "tests/platform/clipboard/linux/ScriptedCompositor.h"
#include "tests/platform/process/PipeReader.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/EnvironmentChange.h"

#include <QClipboard>
#include <QGuiApplication>
#include <gtest/gtest.h>

#include <optional>
#include <string>
#include <utility>

namespace orlimo {
namespace {

constexpr const char* outOfReach = "orlimo: the compositor's clipboard cannot be reached\n";

std::string qtClipboard()
{
    return QGuiApplication::clipboard()->text().toStdString();
}

/// The pasteboard beside a compositor and Qt's clipboard on a platform other than Wayland.
class DataControlPasteboardTest : public testing::Test
{
protected:
    void SetUp() override
    {
        QGuiApplication::clipboard()->setText(QStringLiteral("old text"));
        testing::internal::CaptureStderr();
    }

    void start(const ScriptedCompositor::Script& script = {})
    {
        compositor.emplace(folder.path() / "compositor", script);
    }

    void put(std::string_view text)
    {
        pasteboard.declareTypes({PasteboardType::string});
        pasteboard.setString(text, PasteboardType::string);
    }

    /// Waits until a program that pastes through the compositor gets `text`.
    [[nodiscard]] bool awaitPaste(const std::string& text)
    {
        return await([&] {
            UniqueFd end = compositor->paste();
            PipeReader reader(std::move(end));
            return reader.awaitEnd() && reader.content() == text;
        });
    }

    TemporaryFolder folder;
    EnvironmentChange display{"WAYLAND_DISPLAY", (folder.path() / "compositor").string()};
    std::optional<ScriptedCompositor> compositor;
    DataControlPasteboard pasteboard;
};

TEST_F(DataControlPasteboardTest, EachTextIsOneChangeAndDeclaringIsNone)
{
    start();
    for (std::size_t texts = 0; texts < 2; ++texts) {
        pasteboard.declareTypes({PasteboardType::string});
        runEventLoop(std::chrono::milliseconds(50));
        EXPECT_EQ(compositor->selections(), texts);
        pasteboard.setString(std::to_string(texts), PasteboardType::string);
        EXPECT_TRUE(awaitPaste(std::to_string(texts)));
        EXPECT_EQ(compositor->selections(), texts + 1);
    }
    EXPECT_EQ(qtClipboard(), "old text");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "");
}

TEST_F(DataControlPasteboardTest, QtsClipboardIsUsedWhileTheCompositorDoesNotRespond)
{
    start();
    compositor->hold();
    put("1111");
    put("123456");
    EXPECT_EQ(qtClipboard(), "old text");
    EXPECT_TRUE(await([] { return qtClipboard() == "123456"; }));
    compositor->resume();
    EXPECT_TRUE(awaitPaste("123456"));
    EXPECT_EQ(compositor->selections(), 1U);
    put("7777");
    EXPECT_TRUE(awaitPaste("7777"));
    EXPECT_EQ(qtClipboard(), "123456");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), outOfReach);
}

TEST_F(DataControlPasteboardTest, QtsClipboardIsUsedForGoodIfDataControlIsNotOffered)
{
    start({.offersExt = false});
    compositor->hold();
    put("123456");
    EXPECT_EQ(qtClipboard(), "old text");
    compositor->resume();
    EXPECT_TRUE(await([] { return qtClipboard() == "123456"; }));
    put("7777");
    EXPECT_EQ(qtClipboard(), "7777") << "at once";
    EXPECT_EQ(testing::internal::GetCapturedStderr(), "") << "warned, though Qt is not on Wayland";
}

TEST_F(DataControlPasteboardTest, QtsClipboardIsUsedWhileThereIsNoCompositor)
{
    for (const char* text : {"1111", "123456"}) {
        put(text);
        EXPECT_EQ(qtClipboard(), text) << "at once";
    }
    EXPECT_EQ(testing::internal::GetCapturedStderr(), outOfReach);
    testing::internal::CaptureStderr();
    start();
    put("7777");
    EXPECT_TRUE(awaitPaste("7777"));
    EXPECT_EQ(qtClipboard(), "123456");
    compositor.reset();
    put("2222");
    EXPECT_EQ(qtClipboard(), "2222");
    EXPECT_EQ(testing::internal::GetCapturedStderr(), outOfReach) << "again";
}

} // namespace
} // namespace orlimo
