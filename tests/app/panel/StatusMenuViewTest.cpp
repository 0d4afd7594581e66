#include "app/panel/StatusMenuView.h"

#include "app/panel/PopupView.h"
#include "controls/TextButton.h"
#include "platform/process/FatalStop.h"
#include "tests/app/ViewTestBase.h"
#include "tests/support/FatalStopExpectation.h"
#include "tests/support/process/ForkedRun.h"
#include "tests/support/process/OutputCapture.h"
#include "tests/support/widgets/Picture.h"
#include "tests/support/widgets/Pointer.h"
#include "tests/support/widgets/WidgetWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <algorithm>

namespace orlimo {
namespace {

using testing::ElementsAre;
using testing::IsEmpty;

class StatusMenuViewTest : public ViewTestBase
{
protected:
    static void choose(QWidget& menu, const char* command)
    {
        pointer::click(named<TextButton>(menu, command));
    }
};

TEST_F(StatusMenuViewTest, RunsEachCommandOnceWhenChosen)
{
    const auto menu = shownMenu();
    EXPECT_THAT(application.calls, IsEmpty());
    EXPECT_THAT(opened, IsEmpty());
    EXPECT_THAT(loginItem, IsEmpty());
    EXPECT_THAT(pasteboard.calls, IsEmpty());
    EXPECT_TRUE(menu->hasFocus()) << "a key works on no control before Tab";
    const auto stored = preferences.calls();
    choose(*menu, "about");
    EXPECT_THAT(application.calls, ElementsAre("about")) << "without options";
    choose(*menu, "openWebsite");
    EXPECT_THAT(opened, ElementsAre(QUrl(QStringLiteral("https://orlimo.example/"))));
    choose(*menu, "quit");
    EXPECT_THAT(application.calls, ElementsAre("about", "terminate"));
    EXPECT_EQ(preferences.calls(), stored);
}

TEST_F(StatusMenuViewTest, StaysAsItIsWithInvalidOrRefusedAddress)
{
    MenuServices services = menuServices();
    services.openUrl = [this](const QUrl& url) {
        opened.append(url);
        return false;
    };
    for (const char* address :
         {"",
          "https://orlimo example/",
          "http://[orlimo",
          "https://orlimo.example:port/",
          "http://%",
          "https://orlimo.example/a b",
          "the web page",
          "https://orlimo.example/"})
    {
        services.website = address;
        const auto menu = shownMenuOn(services);
        const Picture before = Picture::ofWindow(*menu);
        const OutputCapture output;
        choose(*menu, "openWebsite");
        pointer::moveTo(*menu, QPoint(5, 5));
        EXPECT_EQ(output.text(), "");
        EXPECT_TRUE(menu->isVisible());
        EXPECT_EQ(Picture::ofWindow(*menu).differenceFrom(before), QRectF()) << address;
    }
    EXPECT_THAT(opened, ElementsAre(QUrl(QStringLiteral("https://orlimo.example/"))));
    EXPECT_THAT(application.calls, IsEmpty());
    services.website = "http://[orlimo";
    const auto menu = shownMenuOn(services);
    const ForkedRun run = runForked([&menu] { named<TextButton>(*menu, "openWebsite").click(); });
    EXPECT_EQ(run.status, 0);
    EXPECT_EQ(run.output + run.errors, "");
}

TEST_F(StatusMenuViewTest, StopsWithoutApplication)
{
    MenuServices services = menuServices();
    services.application = []() -> SharedApplication& {
        fatalStop("there is no application object", "system", 1);
    };
    const auto menu = shownMenuOn(services);
    choose(*menu, "openWebsite");
    EXPECT_EQ(opened.size(), 1) << "needs no application";
    for (const char* command : {"about", "quit"}) {
        expectFatalStop(
            [&] { named<TextButton>(*menu, command).click(); },
            {},
            {.file = "system", .reason = "there is no application object"});
    }
}

TEST_F(StatusMenuViewTest, GivesItsPanelItsControllerAndReleasesIt)
{
    store.appendText("Your code is 482913.");
    auto message = watching();
    const std::weak_ptr<Message> weak = message;
    auto menu = std::make_unique<StatusMenuView>(std::move(message), menuServices());
    for (int times = 0; times < 2; ++times) {
        const OutputCapture output;
        menu->show();
        EXPECT_EQ(std::ranges::count(output.lines(), "Opened PopupWindow : APPEAR"), 1);
        menu->hide();
    }
    EXPECT_EQ(named<PopupView>(*menu, "panel").verificationCode(), "482913");
    menu.reset();
    EXPECT_TRUE(weak.expired());
}

} // namespace
} // namespace orlimo
