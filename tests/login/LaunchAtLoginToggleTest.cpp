#include "login/LaunchAtLoginToggle.h"

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
#include <string>

namespace orlimo {
namespace {

using testing::HasSubstr;
using testing::IsEmpty;
using testing::SizeIs;

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
    LaunchAtLoginToggle() { clear(); }
    ~LaunchAtLoginToggle() override { clear(); }
    Q_DISABLE_COPY_MOVE(LaunchAtLoginToggle)

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

    toggle.show();
    switchOf(toggle).click();
    runQueued();
    toggle.hide();
    toggle.show();
    EXPECT_EQ(built, 1);
    EXPECT_EQ(&toggle.label(), made);
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

TEST_F(LaunchAtLoginToggle, ShowingToggleChangesNothing)
{
    LaunchAtLogin::setEnabled(true);
    writeFile(entry, "[Desktop Entry]\n");
    const QSignalSpy changes(
        &LaunchAtLogin::observable(), &LaunchAtLogin::Observable::objectWillChange);
    LaunchAtLogin::Toggle<> toggle;
    toggle.show();
    runQueued();
    EXPECT_EQ(changes.count(), 0);
    EXPECT_EQ(contentOf(entry), "[Desktop Entry]\n");
}

TEST_F(LaunchAtLoginToggle, ClickRegistersAndUnregisters)
{
    const LaunchAtLogin::Toggle<> toggle;
    const QSignalSpy changes(
        &LaunchAtLogin::observable(), &LaunchAtLogin::Observable::objectWillChange);
    switchOf(toggle).click();
    EXPECT_TRUE(isRegistered());
    runQueued();
    EXPECT_TRUE(switchOf(toggle).isChecked());
    EXPECT_EQ(changes.count(), 1);

    switchOf(toggle).click();
    EXPECT_FALSE(isRegistered());
    runQueued();
    EXPECT_FALSE(switchOf(toggle).isChecked());
    EXPECT_EQ(changes.count(), 2);
    EXPECT_THAT(CapturedSyslog::entries(), IsEmpty());
}

TEST_F(LaunchAtLoginToggle, AccessibleToggleActionRegisters)
{
    const LaunchAtLogin::Toggle<> toggle;
    EXPECT_EQ(toggle.focusProxy(), &switchOf(toggle));
    auto* const accessible = QAccessible::queryAccessibleInterface(&switchOf(toggle));
    EXPECT_EQ(accessible->role(), QAccessible::CheckBox);
    accessible->actionInterface()->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(isRegistered());
}

TEST_F(LaunchAtLoginToggle, ChangeMadeElsewhereIsShown)
{
    const LaunchAtLogin::Toggle<> first;
    const LaunchAtLogin::Toggle<> second;
    LaunchAtLogin::setEnabled(true);
    runQueued();
    EXPECT_TRUE(switchOf(first).isChecked());
    switchOf(second).click();
    runQueued();
    EXPECT_FALSE(isRegistered());
    EXPECT_FALSE(switchOf(first).isChecked());
    EXPECT_FALSE(switchOf(second).isChecked());
}

TEST_F(LaunchAtLoginToggle, FailedChangeShowsStateAgain)
{
    writeFile(folder, "a file");
    const LaunchAtLogin::Toggle<> toggle;
    switchOf(toggle).click();
    runQueued();
    EXPECT_FALSE(switchOf(toggle).isChecked());
    ASSERT_THAT(CapturedSyslog::entries(), SizeIs(1));
    EXPECT_THAT(
        CapturedSyslog::entries().front().text, HasSubstr("Failed to enable launch at login: "));
}

TEST_F(LaunchAtLoginToggle, ChangeOnDiskIsShownWithNextShowEvent)
{
    LaunchAtLogin::Toggle<> toggle;
    toggle.show();
    toggle.hide();
    const QSignalSpy changes(
        &LaunchAtLogin::observable(), &LaunchAtLogin::Observable::objectWillChange);
    writeFile(entry, "[Desktop Entry]\n");
    toggle.show();
    EXPECT_TRUE(switchOf(toggle).isChecked());
    EXPECT_EQ(changes.count(), 0);
}

TEST_F(LaunchAtLoginToggle, ToggleMayBeDestroyedBeforeChangeArrives)
{
    auto toggle = std::make_unique<LaunchAtLogin::Toggle<>>();
    LaunchAtLogin::setEnabled(true);
    toggle.reset();
    runQueued();
    LaunchAtLogin::setEnabled(true);
    runQueued();
    EXPECT_TRUE(LaunchAtLogin::isEnabled());
}

} // namespace
} // namespace orlimo
