#include "app/panel/PopupView.h"

#include "app/panel/CodeLabel.h"
#include "app/panel/CopyButton.h"
#include "app/panel/OptionRow.h"
#include "app/panel/PanelSwitches.h"
#include "controls/Switch.h"
#include "controls/TextLabel.h"
#include "tests/app/ViewTestBase.h"
#include "tests/support/Await.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/widgets/Picture.h"
#include "tests/support/widgets/Pointer.h"

#include <QAccessible>
#include <QClipboard>
#include <QGuiApplication>
#include <QShowEvent>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

/// A window that holds a code panel, not shown yet.
class PopupViewTest : public ViewTestBase
{
protected:
    void make(const PanelServices& services)
    {
        controller = controller == nullptr ? watching() : controller;
        panel = std::make_unique<PopupView>(controller, services);
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

    [[nodiscard]] Switch& toggle(std::string_view key) const
    {
        return named<Switch>(*panel, std::string(key).c_str());
    }

    /// The preferences whose switches are on.
    [[nodiscard]] std::vector<std::string_view> switchesOn() const
    {
        std::vector<std::string_view> on;
        for (const PanelSwitch& panelSwitch : panelSwitches) {
            if (toggle(panelSwitch.preferenceKey).isChecked()) {
                on.push_back(panelSwitch.preferenceKey);
            }
        }
        return on;
    }

    [[nodiscard]] CodeLabel& label() const { return named<CodeLabel>(*panel, "verificationCode"); }

    [[nodiscard]] std::string shownCode() const { return label().text().toStdString(); }

    void pressCopy() { pointer::click(named<CopyButton>(*panel, "copy")); }

    QWidget window;
    std::shared_ptr<Message> controller;
    std::unique_ptr<PopupView> panel;
};

// The switches

TEST_F(PopupViewTest, ReadsEachPreferenceOnceWhenMade)
{
    std::vector<std::string> reads;
    for (const PanelSwitch& panelSwitch : panelSwitches) {
        reads.push_back("read " + std::string(panelSwitch.preferenceKey));
    }
    make(panelServices());
    EXPECT_EQ(preferences.calls(), reads);
    EXPECT_THAT(switchesOn(), IsEmpty()) << "absent preferences are off";
    for (const PanelSwitch& panelSwitch : panelSwitches) {
        preferences.setBool(true, panelSwitch.preferenceKey);
    }
    appear();
    disappear();
    appear();
    controller->setVerificationCode("000000");
    EXPECT_THAT(switchesOn(), IsEmpty()) << "later changes by others are not followed";
    EXPECT_THAT(loginItem, IsEmpty());
    for (const PanelSwitch& on : panelSwitches) {
        for (const PanelSwitch& each : panelSwitches) {
            preferences.setBool(each.preferenceKey == on.preferenceKey, each.preferenceKey);
        }
        make(panelServices());
        EXPECT_THAT(switchesOn(), ElementsAre(on.preferenceKey));
    }
}

TEST_F(PopupViewTest, StoresEachChangeAtOnceBeforeItSetsLaunchAtLogin)
{
    PanelServices services = panelServices();
    std::vector<std::string> atLoginChange;
    services.setLaunchAtLogin = [&](bool enabled) {
        atLoginChange.push_back(preferences.calls().back() + (enabled ? ", enable" : ", disable"));
    };
    make(services);
    appear();
    for (const char* value : {"true", "false"}) {
        for (const PanelSwitch& panelSwitch : panelSwitches) {
            const std::string key(panelSwitch.preferenceKey);
            const auto callsBefore = preferences.calls().size();
            pointer::click(toggle(key));
            EXPECT_EQ(preferences.calls().size(), callsBefore + 1);
            EXPECT_EQ(preferences.calls().back(), "write " + key + " = " + value);
        }
    }
    EXPECT_THAT(
        atLoginChange,
        ElementsAre(
            "write loginItemEnabled = true, enable", "write loginItemEnabled = false, disable"));
    // Whether launch at login could be had makes no difference to the switch.
    QTest::keyClick(&toggle("loginItemEnabled"), Qt::Key_Space);
    disappear();
    appear();
    EXPECT_THAT(switchesOn(), ElementsAre("loginItemEnabled"));
    EXPECT_TRUE(preferences.boolForKey("loginItemEnabled"));
}

TEST_F(PopupViewTest, AnnouncesSwitchUnderItsTextAnywhereInItsRow)
{
    make(panelServices());
    appear();
    for (const PanelSwitch& panelSwitch : panelSwitches) {
        SCOPED_TRACE(panelSwitch.text);
        Switch& onOff = toggle(panelSwitch.preferenceKey);
        const auto& row = *qobject_cast<OptionRow*>(onOff.parentWidget());
        auto* accessibleRow = QAccessible::queryAccessibleInterface(onOff.parentWidget());
        for (const QWidget* part :
             {static_cast<QWidget*>(&row.text()), static_cast<QWidget*>(&onOff)}) {
            const QPoint onScreen = part->mapToGlobal(part->rect().center());
            auto* found = accessibleRow->childAt(onScreen.x(), onScreen.y());
            ASSERT_NE(found, nullptr);
            EXPECT_EQ(found->object(), &onOff);
            EXPECT_EQ(found->text(QAccessible::Name), QLatin1String(panelSwitch.text));
        }
    }
}

// Appearing

TEST_F(PopupViewTest, LogsAndChecksOnceAtEachAppearance)
{
    make(panelServices());
    for (int times = 1; times <= 3; ++times) {
        const auto lines = appear();
        ASSERT_GE(lines.size(), 2U);
        EXPECT_EQ(lines[0], "Opened PopupWindow : APPEAR");
        EXPECT_EQ(lines[1], "ready to access disk");
        EXPECT_EQ(std::ranges::count(lines, "ready to access disk"), 1);
        const OutputCapture output;
        // A showing by the window system, of a workspace for example, is no appearance.
        QShowEvent event;
        QSpontaneKeyEvent::setSpontaneous(&event);
        QCoreApplication::instance()->notify(panel.get(), &event);
        disappear();
        EXPECT_EQ(output.text(), "");
    }
}

TEST_F(PopupViewTest, ShowsNewestCodeAtEachAppearanceAndKeepsItWhereNoneIsFound)
{
    store.appendText("Lunch at noon?");
    make(panelServices());
    appear();
    EXPECT_EQ(shownCode(), "");
    EXPECT_EQ(controller->verificationCode(), "No Code");
    disappear();
    receive("٧٧١٢٠٤");
    EXPECT_EQ(shownCode(), "");
    appear();
    EXPECT_EQ(shownCode(), "٧٧١٢٠٤") << "digits of every script, as they are";
    disappear();
    for (int number = 0; number < 10; ++number) {
        store.appendText("Lunch at noon?");
    }
    appear();
    EXPECT_EQ(controller->verificationCode(), "No Code");
    EXPECT_EQ(shownCode(), "٧٧١٢٠٤");
    EXPECT_EQ(panel->verificationCode(), "٧٧١٢٠٤");
}

TEST_F(PopupViewTest, ShowsNoCodeAtFirstWhereStoreIsNotReady)
{
    receive("482913");
    const OutputCapture swallowed;
    controller = Message::create(services());
    make(panelServices());
    EXPECT_THAT(appear(), ElementsAre("Opened PopupWindow : APPEAR", "not ready to access disk"));
    EXPECT_EQ(shownCode(), "");
}

TEST_F(PopupViewTest, KeepsItsCodeWhileOpen)
{
    receive("482913");
    make(panelServices());
    appear();
    receive("771204");
    {
        const OutputCapture swallowed;
        controller->fileDidChange();
    }
    ASSERT_EQ(controller->verificationCode(), "771204");
    QCoreApplication::processEvents();
    EXPECT_EQ(shownCode(), "482913");
    EXPECT_THAT(pasteboard.calls, IsEmpty());
    const OutputCapture output;
    pressCopy();
    EXPECT_THAT(pasteboard.calls, ElementsAre("declare string", "set 482913 as string"));
    EXPECT_EQ(output.text(), "");
    disappear();
    appear();
    EXPECT_EQ(shownCode(), "771204");
}

// The code

TEST_F(PopupViewTest, LetsCodeBeSelectedAndCopiedByHand)
{
    receive("482913");
    make(panelServices());
    appear();
    ASSERT_TRUE(await([this] { return window.isActiveWindow(); }));
    const QPoint onDigits = Picture::of(label()).ink().center().toPoint();
    const Picture unselected = Picture::ofWindow(window);
    pointer::click(label(), onDigits);
    ASSERT_TRUE(label().hasFocus());
    EXPECT_EQ(Picture::ofWindow(window).differenceFrom(unselected), QRectF()) << "a caret";
    const auto select = [&] {
        pointer::act(QTest::MouseDClick, label(), onDigits);
        EXPECT_EQ(label().selectedText(), QStringLiteral("482913"));
    };
    select();
    QTest::keyClick(&label(), Qt::Key_C, Qt::ControlModifier);
    EXPECT_EQ(QGuiApplication::clipboard()->text(), QStringLiteral("482913"));
    disappear();
    appear();
    EXPECT_FALSE(label().hasSelectedText()) << "forgotten when the window opens again";
    select();
    label().setCode(QStringLiteral("482913"));
    EXPECT_TRUE(label().hasSelectedText());
    label().setCode(QStringLiteral("5930"));
    EXPECT_FALSE(label().hasSelectedText()) << "forgotten with its code";
}

// Copying

TEST_F(PopupViewTest, CopiesEmptyCodeAsEmptyText)
{
    make(panelServices());
    appear();
    pressCopy();
    EXPECT_THAT(pasteboard.calls, ElementsAre("declare string", "set  as string"));
}

} // namespace
} // namespace orlimo
