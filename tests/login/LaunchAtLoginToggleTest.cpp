#include "login/LaunchAtLoginToggle.h"

#include "tests/login/linux/SystemLoginServices.h"
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
    LaunchAtLoginToggle()
    {
        LaunchAtLogin::install(systemLoginServices());
        clear();
    }
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

TEST_F(LaunchAtLoginToggle, ObservesTheSharedObservableHoweverItIsMade)
{
    const LaunchAtLogin::Toggle<> plain;
    const LaunchAtLogin::Toggle<> titled(QStringLiteral("x"));
    const LaunchAtLogin::Toggle<> localized(LocalizedStringKey{"orlimo::Test", "x"});
    const LaunchAtLogin::Toggle<QWidget> built([] { return std::make_unique<QWidget>(); });
    EXPECT_EQ(&plain.launchAtLogin(), &LaunchAtLogin::observable());
    EXPECT_EQ(&titled.launchAtLogin(), &LaunchAtLogin::observable());
    EXPECT_EQ(&localized.launchAtLogin(), &LaunchAtLogin::observable());
    EXPECT_EQ(&built.launchAtLogin(), &LaunchAtLogin::observable());
}

TEST_F(LaunchAtLoginToggle, WithoutArgumentIsTitledAsIsInEveryLanguage)
{
    const MarkingTranslator translator;
    const LaunchAtLogin::Toggle<> toggle;
    EXPECT_EQ(toggle.label().text(), QStringLiteral("Launch at login"));
    EXPECT_EQ(announcedName(switchOf(toggle)), QStringLiteral("Launch at login"));
}

TEST_F(LaunchAtLoginToggle, ShowsAnyStringAsItIs)
{
    const MarkingTranslator translator;
    for (const auto& title :
         {QStringLiteral("Drag & drop"),
          QStringLiteral("<b>bold</b> &amp;"),
          QStringLiteral("100 %1 %s"),
          QStringLiteral("ログイン時に起動"),
          QString()})
    {
        const LaunchAtLogin::Toggle<> toggle(title);
        EXPECT_EQ(toggle.label().text(), title);
        EXPECT_EQ(toggle.label().textFormat(), Qt::PlainText);
        EXPECT_EQ(announcedName(switchOf(toggle)), title);
    }
}

TEST_F(LaunchAtLoginToggle, LooksALocalizedKeyUp)
{
    const LocalizedStringKey key{"orlimo::Test", "Start"};
    EXPECT_EQ(LaunchAtLogin::Toggle<>(key).label().text(), QStringLiteral("Start"));
    const MarkingTranslator translator;
    const LaunchAtLogin::Toggle<> toggle(key);
    EXPECT_EQ(toggle.label().text(), QStringLiteral("orlimo::Test: Start"));
    EXPECT_EQ(announcedName(switchOf(toggle)), QStringLiteral("orlimo::Test: Start"));
}

TEST_F(LaunchAtLoginToggle, BuildsItsLabelOnceAtTheBeginning)
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

TEST_F(LaunchAtLoginToggle, AnnouncesALabelOfAnyKindByItsName)
{
    const LaunchAtLogin::Toggle<QWidget> toggle([] {
        auto label = std::make_unique<QWidget>();
        label->setAccessibleName(QStringLiteral("a picture"));
        return label;
    });
    EXPECT_EQ(announcedName(switchOf(toggle)), QStringLiteral("a picture"));
}

TEST_F(LaunchAtLoginToggle, ItsSwitchIsACheckBox)
{
    const LaunchAtLogin::Toggle<> toggle;
    EXPECT_EQ(
        QAccessible::queryAccessibleInterface(&switchOf(toggle))->role(), QAccessible::CheckBox);
}

TEST_F(LaunchAtLoginToggle, StandsBesideItsLabelInTheReadingDirection)
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

TEST_F(LaunchAtLoginToggle, ShowsWhetherTheProgramIsRegistered)
{
    EXPECT_FALSE(switchOf(LaunchAtLogin::Toggle<>()).isChecked());
    LaunchAtLogin::setEnabled(true);
    EXPECT_TRUE(switchOf(LaunchAtLogin::Toggle<>()).isChecked());
}

TEST_F(LaunchAtLoginToggle, BeingMadeChangesNothing)
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

TEST_F(LaunchAtLoginToggle, RegistersAndUnregistersWhenItIsFlicked)
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

TEST_F(LaunchAtLoginToggle, IsFlickedByTheSpaceBar)
{
    LaunchAtLogin::Toggle<> toggle;
    toggle.show();
    toggle.setFocus();
    ASSERT_NE(toggle.focusProxy(), nullptr);
    QTest::keyClick(toggle.focusProxy(), Qt::Key_Space);
    EXPECT_TRUE(isRegistered());
}

TEST_F(LaunchAtLoginToggle, IsFlickedByAssistiveTechnology)
{
    const LaunchAtLogin::Toggle<> toggle;
    QAccessible::queryAccessibleInterface(&switchOf(toggle))
        ->actionInterface()
        ->doAction(QAccessibleActionInterface::toggleAction());
    EXPECT_TRUE(isRegistered());
}

TEST_F(LaunchAtLoginToggle, ShowsAChangeThatIsMadeElsewhere)
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

TEST_F(LaunchAtLoginToggle, ShowsTheStateAgainWhenTheChangeFails)
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

TEST_F(LaunchAtLoginToggle, StaysOffWhileTheUsersApprovalIsMissing)
{
    writeFile(entry, "[Desktop Entry]\nX-GNOME-Autostart-enabled=false\n");
    const LaunchAtLogin::Toggle<> toggle;
    EXPECT_FALSE(switchOf(toggle).isChecked());
    switchOf(toggle).click();
    runQueued();
    EXPECT_FALSE(switchOf(toggle).isChecked());
    EXPECT_THAT(contentOf(entry), HasSubstr("X-GNOME-Autostart-enabled=false"));
    EXPECT_THAT(CapturedSyslog::entries(), IsEmpty());
}

TEST_F(LaunchAtLoginToggle, ShowsWhatHasChangedBehindItsBackWhenItComesIntoView)
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

TEST_F(LaunchAtLoginToggle, AChangeAnnouncedBeforeItsEndHarmsNobody)
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
