#include "login/LaunchAtLoginToggle.h"

#include "platform/process/LoginItemLog.h"
#include "tests/platform/desktop/MarkingTranslator.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/CapturedSyslog.h"

#include <QAccessible>
#include <QApplication>
#include <QLabel>
#include <QSignalSpy>
#include <QTest>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <filesystem>
#include <memory>

#include <syslog.h>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

template <typename Label> Switch& switchOf(const LaunchAtLogin::Toggle<Label>& toggle)
{
    return *toggle.template findChild<Switch*>();
}

QString announcedName(QWidget& widget)
{
    return QAccessible::queryAccessibleInterface(&widget)->text(QAccessible::Name);
}

/// On the autostart entry in the test program's own configuration folder.
class LaunchAtLoginToggle : public testing::Test
{
protected:
    LaunchAtLoginToggle()
    {
        LaunchAtLogin::install(
            {.service = mainAppService(),
             .logError = logLoginItemError,
             .currentLaunchEvent = currentLaunchEvent});
        clear();
    }

    static void runQueued() { QCoreApplication::processEvents(); }
    void clear() const { std::filesystem::remove_all(folder); }
    [[nodiscard]] bool isRegistered() const { return std::filesystem::is_regular_file(entry); }

    // Set by the main function of the test program.
    std::filesystem::path folder =
        std::filesystem::path(std::getenv("XDG_CONFIG_HOME")) / "autostart";
    std::filesystem::path entry = folder / "app.orlimo.Orlimo.desktop";
    CapturedSyslog syslog;
};

TEST_F(LaunchAtLoginToggle, OnlyLocalizedKeyIsTranslated)
{
    const MarkingTranslator translator;
    const LocalizedStringKey key{"orlimo::Test", "Start"};
    const auto markup = QStringLiteral("<b>bold</b> &amp; %1");
    const auto expectTitle = [](const LaunchAtLogin::Toggle<>& toggle, const QString& title) {
        EXPECT_EQ(&toggle.launchAtLogin(), &LaunchAtLogin::observable());
        EXPECT_EQ(toggle.label().text(), title);
        EXPECT_EQ(toggle.label().textFormat(), Qt::PlainText);
        EXPECT_EQ(announcedName(switchOf(toggle)), title);
    };
    expectTitle(LaunchAtLogin::Toggle<>(), QStringLiteral("Launch at login"));
    expectTitle(LaunchAtLogin::Toggle<>(markup), markup);
    expectTitle(LaunchAtLogin::Toggle<>(QString()), QString());
    expectTitle(LaunchAtLogin::Toggle<>(key), QStringLiteral("orlimo::Test: Start"));
}

TEST_F(LaunchAtLoginToggle, LabelIsBuiltOnce)
{
    int built = 0;
    QLabel* made = nullptr;
    LaunchAtLogin::Toggle<QLabel> toggle([&built, &made] {
        ++built;
        auto label = std::make_unique<QLabel>(QStringLiteral("built"));
        made = label.get();
        return label;
    });
    EXPECT_EQ(built, 1);
    EXPECT_EQ(&toggle.label(), made);
    EXPECT_EQ(made->parentWidget(), &toggle);
    EXPECT_EQ(announcedName(switchOf(toggle)), QStringLiteral("built"));
}

TEST_F(LaunchAtLoginToggle, SwitchFollowsLabelInReadingDirection)
{
    LaunchAtLogin::Toggle<> toggle;
    toggle.resize(300, 40);
    toggle.show();
    const QWidget& label = toggle.label();
    const QWidget& control = switchOf(toggle);
    EXPECT_EQ(control.geometry().left(), label.geometry().right() + 1 + 8);
    EXPECT_EQ(label.geometry().left(), 0);
    EXPECT_EQ(control.geometry().center().y(), label.geometry().center().y());
    toggle.setLayoutDirection(Qt::RightToLeft);
    runQueued();
    EXPECT_EQ(label.geometry().left(), control.geometry().right() + 1 + 8);
    EXPECT_EQ(label.geometry().right(), 299);
}

TEST_F(LaunchAtLoginToggle, ShownToggleShowsStateOnDiskAndChangesNothing)
{
    LaunchAtLogin::Toggle<> toggle;
    const QSignalSpy changes(
        &LaunchAtLogin::observable(), &LaunchAtLogin::Observable::objectWillChange);
    for (const bool isOn : {true, false}) {
        toggle.hide();
        clear();
        if (isOn) {
            writeFile(entry, "[Desktop Entry]\n");
        }
        toggle.show();
        runQueued();
        EXPECT_EQ(switchOf(toggle).isChecked(), isOn);
        EXPECT_EQ(isRegistered() ? contentOf(entry) : "", isOn ? "[Desktop Entry]\n" : "");
    }
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(LaunchAtLoginToggle, ClickAndAccessibleActionRegisterAndUnregister)
{
    const LaunchAtLogin::Toggle<> toggle;
    const LaunchAtLogin::Toggle<> other;
    const QSignalSpy changes(
        &LaunchAtLogin::observable(), &LaunchAtLogin::Observable::objectWillChange);
    const auto expectShown = [&](bool on, int numberOfChanges) {
        EXPECT_EQ(isRegistered(), on);
        runQueued();
        EXPECT_EQ(switchOf(toggle).isChecked(), on);
        EXPECT_EQ(switchOf(other).isChecked(), on);
        EXPECT_EQ(changes.count(), numberOfChanges);
    };
    EXPECT_EQ(toggle.focusProxy(), &switchOf(toggle));
    switchOf(toggle).click();
    expectShown(true, 1);
    auto* const accessible = QAccessible::queryAccessibleInterface(&switchOf(toggle));
    EXPECT_EQ(accessible->role(), QAccessible::CheckBox);
    accessible->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    expectShown(false, 2);
    LaunchAtLogin::setEnabled(true);
    expectShown(true, 3);
    EXPECT_THAT(CapturedSyslog::entries(), IsEmpty());
}

TEST_F(LaunchAtLoginToggle, FailedChangeIsLoggedAndShowsStateAgain)
{
    writeFile(folder, "a file");
    const LaunchAtLogin::Toggle<> toggle;
    switchOf(toggle).click();
    runQueued();
    EXPECT_FALSE(switchOf(toggle).isChecked());
    const CapturedSyslog::Entry failure{
        .priority = LOG_USER | LOG_ERR,
        .text = "[app.orlimo.Orlimo.LaunchAtLogin:main] Failed to enable launch at login: " +
                folder.string() + ": File exists"};
    EXPECT_THAT(CapturedSyslog::entries(), ElementsAre(failure));
}

} // namespace
} // namespace orlimo
