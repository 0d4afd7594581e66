#include "app/AppDelegate.h"
#include "app/ModuleServices.h"
#include "app/panel/CopyButton.h"
#include "app/panel/PopupView.h"
#include "controls/Switch.h"
#include "login/LaunchAtLogin.h"
#include "tests/app/ViewTestBase.h"
#include "tests/app/linux/SystemServices.h"
#include "tests/capture/PreferenceSandbox.h"
#include "tests/support/TemporaryFolder.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/widgets/Pointer.h"

#include <QCoreApplication>
#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <filesystem>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;

/// The system's own services: preferences and the login item in their files.
class NativeServicesTest : public ViewTestBase
{
protected:
    NativeServicesTest() { LaunchAtLogin::install(loginServices(systemServices())); }

    const std::filesystem::path entry = PreferenceSandbox::file().parent_path().parent_path() /
                                        "autostart/app.orlimo.Orlimo.desktop";
};

TEST_F(NativeServicesTest, PanelUsesSystemPreferencesPasteboardAndLoginItem)
{
    std::filesystem::remove(entry);
    store.appendText("Your code is 482913.");
    defaults.setBool(true, "fourDigitInclude");
    QWidget window;
    auto* panel = new PopupView(watching(), orlimo::menuServices(systemServices()).panel);
    panel->setParent(&window);
    panel->resize(300, panel->sizeHint().height());
    window.resize(300, 540);
    const auto toggle = [panel](const char* key) -> Switch& { return named<Switch>(*panel, key); };
    EXPECT_TRUE(toggle("capturingEnabled").isChecked());
    EXPECT_TRUE(toggle("fourDigitInclude").isChecked());
    EXPECT_FALSE(toggle("loginItemEnabled").isChecked());
    const OutputCapture swallowed;
    window.show();
    QCoreApplication::processEvents();
    pointer::click(named<CopyButton>(*panel, "copy"));
    EXPECT_EQ(clipboardText(), "482913");
    pointer::click(toggle("fourDigitInclude"));
    EXPECT_THAT(contentOf(PreferenceSandbox::file()), HasSubstr("fourDigitInclude=false\n"));
    pointer::click(toggle("loginItemEnabled"));
    EXPECT_THAT(contentOf(PreferenceSandbox::file()), HasSubstr("loginItemEnabled=true\n"));
    EXPECT_TRUE(std::filesystem::exists(entry));
    pointer::click(toggle("loginItemEnabled"));
    EXPECT_THAT(contentOf(PreferenceSandbox::file()), HasSubstr("loginItemEnabled=false\n"));
    EXPECT_FALSE(std::filesystem::exists(entry));
}

TEST_F(NativeServicesTest, DelegateUsesSystemPreferencesAndLoginItem)
{
    std::filesystem::remove(entry);
    defaults.setBool(false, "loginItemEnabled");
    AppDelegate delegate(delegateServices(systemServices()));
    delegate.applicationWillFinishLaunching();
    EXPECT_THAT(
        linesOf(contentOf(PreferenceSandbox::file())),
        ElementsAre(
            "[General]",
            "capturingEnabled=true",
            "fourDigitInclude=true",
            "loginItemEnabled=false"));
    EXPECT_TRUE(std::filesystem::exists(entry));
    std::filesystem::remove(entry);
}

} // namespace
} // namespace orlimo
