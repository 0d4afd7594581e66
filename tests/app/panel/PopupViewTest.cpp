#include "app/panel/PopupView.h"

#include "app/panel/CodeLabel.h"
#include "app/panel/CopyButton.h"
#include "app/panel/OptionRow.h"
#include "controls/Switch.h"
#include "controls/TextLabel.h"
#include "tests/app/ViewTestBase.h"
#include "tests/capture/PreferenceSandbox.h"
#include "tests/capture/TestCaptureServices.h"
#include "tests/support/Await.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/widgets/Picture.h"
#include "tests/support/widgets/Pointer.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QMimeData>
#include <QShowEvent>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <filesystem>
#include <map>
#include <optional>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;

constexpr std::array keys{"capturingEnabled", "fourDigitInclude", "loginItemEnabled"};

/// How often the controller was asked for a code, as its log has it.
auto checkCount(const OutputCapture& output)
{
    return std::ranges::count(output.lines(), "ready to access disk");
}

/// A window that holds a code panel, not shown yet.
class PopupViewTest : public ViewTestBase
{
protected:
    /// Makes the panel, of the host's preferences as they are.
    void make(const std::shared_ptr<Message>& message) { make(message, panelServices()); }

    void make(const std::shared_ptr<Message>& message, const PanelServices& services)
    {
        controller = message;
        panel = std::make_unique<PopupView>(message, services);
        panel->setParent(&window);
        panel->resize(300, panel->sizeHint().height());
        window.resize(300, 540);
    }

    /// Shows the window, and returns what that logs.
    std::vector<std::string> appear()
    {
        const OutputCapture output;
        window.show();
        QCoreApplication::processEvents();
        return output.lines();
    }

    void disappear() { window.hide(); }

    void receive(const std::string& code) { store.appendText("Your code is " + code + "."); }

    [[nodiscard]] Switch& toggle(const char* key) const { return named<Switch>(*panel, key); }

    [[nodiscard]] std::string shownCode() const
    {
        return named<CodeLabel>(*panel, "verificationCode").text().toStdString();
    }

    void pressCopy() { pointer::click(named<CopyButton>(*panel, "copy")); }

    QWidget window;
    std::shared_ptr<Message> controller;
    std::unique_ptr<PopupView> panel;
};

// The switches

TEST_F(PopupViewTest, ShowsAbsentPreferencesAsOff)
{
    make(watching());
    for (const char* key : keys) {
        EXPECT_FALSE(toggle(key).isChecked()) << key;
    }
}

TEST_F(PopupViewTest, ShowsEachPreferenceInItsOwnSwitch)
{
    for (const char* on : keys) {
        for (const char* key : keys) {
            preferences.setBool(std::string_view(key) == on, key);
        }
        make(watching());
        for (const char* key : keys) {
            EXPECT_EQ(toggle(key).isChecked(), std::string_view(key) == on) << key;
        }
    }
}

TEST_F(PopupViewTest, ReadsEachPreferenceOnceAndWritesNone)
{
    make(watching());
    appear();
    disappear();
    appear();
    EXPECT_THAT(
        preferences.calls(),
        ElementsAre("read capturingEnabled", "read fourDigitInclude", "read loginItemEnabled"));
    EXPECT_THAT(loginItem, IsEmpty());
}

TEST_F(PopupViewTest, DoesNotFollowPreferencesThatOthersChange)
{
    make(watching());
    appear();
    for (const char* key : keys) {
        preferences.setBool(true, key);
    }
    disappear();
    appear();
    controller->setVerificationCode("000000");
    for (const char* key : keys) {
        EXPECT_FALSE(toggle(key).isChecked()) << key;
    }
}

TEST_F(PopupViewTest, WritesEachSwitchThroughAtOnce)
{
    make(watching());
    appear();
    const auto callsBefore = preferences.calls().size();
    pointer::click(toggle("capturingEnabled"));
    pointer::click(toggle("fourDigitInclude"));
    pointer::click(toggle("loginItemEnabled"));
    pointer::click(toggle("fourDigitInclude"));
    pointer::click(toggle("capturingEnabled"));
    pointer::click(toggle("loginItemEnabled"));
    const std::vector<std::string> written(
        preferences.calls().begin() + static_cast<std::ptrdiff_t>(callsBefore),
        preferences.calls().end());
    EXPECT_THAT(
        written,
        ElementsAre(
            "write capturingEnabled = true",
            "write fourDigitInclude = true",
            "write loginItemEnabled = true",
            "write fourDigitInclude = false",
            "write capturingEnabled = false",
            "write loginItemEnabled = false"));
    EXPECT_THAT(loginItem, ElementsAre("enable", "disable"));
}

TEST_F(PopupViewTest, WritesASwitchThatTheKeyboardFlips)
{
    make(watching());
    appear();
    QTest::keyClick(&toggle("fourDigitInclude"), Qt::Key_Space);
    EXPECT_EQ(preferences.calls().back(), "write fourDigitInclude = true");
    EXPECT_THAT(loginItem, IsEmpty());
}

TEST_F(PopupViewTest, StoresLaunchAtLoginBeforeItAsksForIt)
{
    PanelServices services = panelServices();
    std::vector<std::string> lastCalls;
    services.setLaunchAtLogin = [&](bool enabled) {
        lastCalls.push_back(
            preferences.calls().back() + (enabled ? ", then enable" : ", then disable"));
    };
    make(watching(), services);
    appear();
    pointer::click(toggle("loginItemEnabled"));
    pointer::click(toggle("loginItemEnabled"));
    EXPECT_THAT(
        lastCalls,
        ElementsAre(
            "write loginItemEnabled = true, then enable",
            "write loginItemEnabled = false, then disable"));
}

TEST_F(PopupViewTest, KeepsTheUsersChoiceWhenLaunchAtLoginCannotBeHad)
{
    PanelServices services = panelServices();
    services.setLaunchAtLogin = [](bool) {};
    make(watching(), services);
    appear();
    pointer::click(toggle("loginItemEnabled"));
    EXPECT_TRUE(toggle("loginItemEnabled").isChecked());
    EXPECT_TRUE(preferences.boolForKey("loginItemEnabled"));
    disappear();
    appear();
    EXPECT_TRUE(toggle("loginItemEnabled").isChecked());
}

TEST_F(PopupViewTest, NamesEachSwitchAfterItsRow)
{
    make(watching());
    const std::array names{"Auto Copy to Clipboard", "Include 4 digit code", "Launch at login"};
    for (std::size_t number = 0; number < keys.size(); ++number) {
        auto* accessible = QAccessible::queryAccessibleInterface(&toggle(keys[number]));
        ASSERT_NE(accessible, nullptr);
        EXPECT_EQ(accessible->role(), QAccessible::CheckBox);
        EXPECT_EQ(accessible->text(QAccessible::Name), QLatin1String(names[number]));
    }
}

/// Adds how often each name is announced in `element`.
void countNames(QAccessibleInterface& element, std::map<QString, int>& counts)
{
    if (!element.state().invisible) {
        ++counts[element.text(QAccessible::Name)];
    }
    for (int number = 0; number < element.childCount(); ++number) {
        countNames(*element.child(number), counts);
    }
}

TEST_F(PopupViewTest, AnnouncesEachTextOnce)
{
    receive("482913");
    make(watching());
    appear();
    std::map<QString, int> counts;
    countNames(*QAccessible::queryAccessibleInterface(panel.get()), counts);
    counts.erase(QString());
    using testing::Pair;
    EXPECT_THAT(
        counts,
        testing::UnorderedElementsAre(
            Pair(QStringLiteral("Capture Options"), 1),
            Pair(QStringLiteral("Auto Copy to Clipboard"), 1),
            Pair(QStringLiteral("Include 4 digit code"), 1),
            Pair(QStringLiteral("Launch at login"), 1),
            Pair(QStringLiteral("Latest Code"), 1),
            Pair(QStringLiteral("482913"), 1),
            Pair(QStringLiteral("Copy"), 1)));
}

TEST_F(PopupViewTest, HasEachSwitchFoundWhereverInItsRowOnePoints)
{
    make(watching());
    appear();
    for (const char* key : keys) {
        Switch& onOff = toggle(key);
        const OptionRow& row = *qobject_cast<OptionRow*>(onOff.parentWidget());
        auto* accessible = QAccessible::queryAccessibleInterface(onOff.parentWidget());
        for (const QWidget* place :
             {static_cast<QWidget*>(&row.text()), static_cast<QWidget*>(&onOff)}) {
            const QPoint onScreen = place->mapToGlobal(place->rect().center());
            auto* found = accessible->childAt(onScreen.x(), onScreen.y());
            ASSERT_NE(found, nullptr) << key;
            EXPECT_EQ(found->object(), &onOff) << key;
        }
    }
}

// Appearing

TEST_F(PopupViewTest, LogsAndChecksWhenItAppears)
{
    make(watching());
    const auto lines = appear();
    ASSERT_GE(lines.size(), 2U);
    EXPECT_EQ(lines[0], "Opened PopupWindow : APPEAR");
    EXPECT_EQ(lines[1], "ready to access disk");
}

TEST_F(PopupViewTest, ChecksOnceAtEachAppearance)
{
    make(watching());
    const OutputCapture output;
    EXPECT_EQ(checkCount(output), 0);
    for (int times = 1; times <= 3; ++times) {
        window.show();
        QCoreApplication::processEvents();
        EXPECT_EQ(checkCount(output), times);
        disappear();
        EXPECT_EQ(checkCount(output), times);
    }
    EXPECT_EQ(std::ranges::count(output.lines(), "Opened PopupWindow : APPEAR"), 3);
}

TEST_F(PopupViewTest, DoesNotTakeTheWindowSystemsOwnShowingForAnAppearance)
{
    make(watching());
    appear();
    const OutputCapture output;
    QShowEvent event;
    QSpontaneKeyEvent::setSpontaneous(&event);
    ASSERT_TRUE(event.spontaneous());
    QCoreApplication::instance()->notify(panel.get(), &event);
    EXPECT_EQ(output.text(), "");
}

TEST_F(PopupViewTest, ShowsTheCodeThatItFinds)
{
    receive("482913");
    make(watching());
    EXPECT_EQ(shownCode(), "");
    appear();
    EXPECT_EQ(shownCode(), "482913");
    EXPECT_EQ(panel->verificationCode(), "482913");
}

TEST_F(PopupViewTest, ShowsTheNewestCodeAtEachAppearance)
{
    receive("482913");
    make(watching());
    appear();
    disappear();
    receive("771204");
    EXPECT_EQ(shownCode(), "482913");
    appear();
    EXPECT_EQ(shownCode(), "771204");
}

TEST_F(PopupViewTest, ShowsNothingAtFirstWhereThereIsNoCode)
{
    store.appendText("Lunch at noon?");
    make(watching());
    appear();
    EXPECT_EQ(shownCode(), "");
    EXPECT_EQ(panel->verificationCode(), "");
    EXPECT_EQ(controller->verificationCode(), "No Code");
}

TEST_F(PopupViewTest, ShowsNothingAtFirstWhereTheStoreIsNotReady)
{
    receive("482913");
    OutputCapture swallowed;
    make(Message::create(services()));
    EXPECT_THAT(appear(), ElementsAre("Opened PopupWindow : APPEAR", "not ready to access disk"));
    EXPECT_EQ(shownCode(), "");
}

TEST_F(PopupViewTest, KeepsItsCodeWhereNoneIsFoundLater)
{
    receive("482913");
    make(watching());
    appear();
    disappear();
    for (int number = 0; number < 10; ++number) {
        store.appendText("Lunch at noon?");
    }
    appear();
    EXPECT_EQ(shownCode(), "482913");
    EXPECT_EQ(panel->verificationCode(), "482913");
    EXPECT_EQ(controller->verificationCode(), "No Code");
}

TEST_F(PopupViewTest, DoesNotShowWhatIsPublishedWhileItIsOpen)
{
    receive("482913");
    make(watching());
    appear();
    receive("771204");
    {
        const OutputCapture swallowed;
        controller->fileDidChange();
    }
    ASSERT_EQ(controller->verificationCode(), "771204");
    QCoreApplication::processEvents();
    EXPECT_EQ(shownCode(), "482913");
    pressCopy();
    EXPECT_EQ(pasteboard.calls.back(), "set 482913 as string");
    disappear();
    appear();
    EXPECT_EQ(shownCode(), "771204");
}

TEST_F(PopupViewTest, DoesNotShowThatTheControllerHasNoCode)
{
    make(watching());
    appear();
    controller->setVerificationCode("No Code");
    EXPECT_EQ(shownCode(), "");
}

TEST_F(PopupViewTest, KeepsItsControllerAlive)
{
    make(watching());
    const std::weak_ptr<Message> weak = controller;
    controller.reset();
    EXPECT_FALSE(weak.expired());
    appear();
    panel.reset();
    EXPECT_TRUE(weak.expired());
}

TEST_F(PopupViewTest, GoneIsNotToldOfChanges)
{
    make(watching());
    panel.reset();
    controller->setVerificationCode("771204");
    EXPECT_EQ(controller->verificationCode(), "771204");
}

// The code

TEST_F(PopupViewTest, ShowsDigitsOfEveryScriptAsTheyAre)
{
    receive("٤٨٢٩١٣");
    make(watching());
    appear();
    EXPECT_EQ(shownCode(), "٤٨٢٩١٣");
    pressCopy();
    EXPECT_EQ(pasteboard.calls.back(), "set ٤٨٢٩١٣ as string");
}

TEST_F(PopupViewTest, ShowsTheCodeVerbatim)
{
    make(watching());
    appear();
    auto& label = named<CodeLabel>(*panel, "verificationCode");
    EXPECT_EQ(label.textFormat(), Qt::PlainText);
    label.setCode(QStringLiteral("<b>1</b>"));
    const QRectF verbatim = Picture::of(label).ink();
    label.setCode(QStringLiteral("1"));
    EXPECT_GT(verbatim.width(), 5 * Picture::of(label).ink().width());
}

/// The panel with a code, and the pointer over that.
class CodeSelection : public PopupViewTest
{
protected:
    /// The code as it looks when the panel has just appeared.
    Picture appeared()
    {
        receive("482913");
        make(watching());
        appear();
        return Picture::of(label());
    }

    CodeLabel& label() { return named<CodeLabel>(*panel, "verificationCode"); }

    /// In the middle of the code.
    QPoint onDigits() { return Picture::of(label()).ink().center().toPoint(); }

    Picture unselected = appeared();
};

TEST_F(CodeSelection, IsMadeWithThePointerAndCanBeCopied)
{
    pointer::doubleClick(label(), onDigits());
    EXPECT_EQ(label().selectedText(), QStringLiteral("482913"));
    EXPECT_FALSE(label().textInteractionFlags().testFlag(Qt::TextEditable));
    QTest::keyClick(&label(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("482913"));
}

TEST_F(CodeSelection, ShowsNoCaret)
{
    ASSERT_TRUE(await([this] { return window.isActiveWindow(); }));
    const Picture before = Picture::ofWindow(window);
    pointer::click(label(), onDigits());
    ASSERT_TRUE(label().hasFocus());
    EXPECT_EQ(Picture::ofWindow(window).differenceFrom(before), QRectF());
}

TEST_F(CodeSelection, IsGoneWhenTheWindowOpensAgain)
{
    pointer::doubleClick(label(), onDigits());
    disappear();
    appear();
    EXPECT_FALSE(label().hasSelectedText());
    EXPECT_EQ(Picture::of(label()).differenceFrom(unselected), QRectF());
}

TEST_F(CodeSelection, IsGoneWhenTheCodeIsAnotherOne)
{
    pointer::doubleClick(label(), onDigits());
    label().setCode(QStringLiteral("482913"));
    EXPECT_TRUE(label().hasSelectedText());
    label().setCode(QStringLiteral("5930"));
    EXPECT_FALSE(label().hasSelectedText());
    label().setCode(QStringLiteral("482913"));
    EXPECT_EQ(Picture::of(label()).differenceFrom(unselected), QRectF());
}

TEST_F(PopupViewTest, AnnouncesTheCode)
{
    receive("482913");
    make(watching());
    appear();
    auto* accessible =
        QAccessible::queryAccessibleInterface(&named<CodeLabel>(*panel, "verificationCode"));
    ASSERT_NE(accessible, nullptr);
    EXPECT_EQ(accessible->text(QAccessible::Name), QStringLiteral("482913"));
}

// Copying

TEST_F(PopupViewTest, CopiesTheCodeAfterTakingThePasteboardOver)
{
    receive("482913");
    make(watching());
    appear();
    EXPECT_THAT(pasteboard.calls, IsEmpty());
    pressCopy();
    EXPECT_THAT(pasteboard.calls, ElementsAre("declare string", "set 482913 as string"));
    pressCopy();
    EXPECT_EQ(pasteboard.calls.size(), 4U);
}

TEST_F(PopupViewTest, CopiesAnEmptyCodeAsAnEmptyText)
{
    make(watching());
    appear();
    pressCopy();
    EXPECT_THAT(pasteboard.calls, ElementsAre("declare string", "set  as string"));
}

TEST_F(PopupViewTest, CopiesWithoutALogLine)
{
    make(watching());
    appear();
    const OutputCapture output;
    pressCopy();
    EXPECT_EQ(output.text(), "");
}

TEST_F(PopupViewTest, LeavesAnEmptyTextOnTheUsersPasteboard)
{
    setClipboardText("before");
    make(
        watching(),
        {preferences, capturePasteboard(), [](bool) {}, {systemSymbol, systemSymbolSize}});
    appear();
    pressCopy();
    const QMimeData* content = QGuiApplication::clipboard()->mimeData();
    ASSERT_NE(content, nullptr);
    EXPECT_EQ(content->text(), QString());
    EXPECT_TRUE(content->hasFormat(QStringLiteral("text/plain")));
}

} // namespace
} // namespace orlimo
