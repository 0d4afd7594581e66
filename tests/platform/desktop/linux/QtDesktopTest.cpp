#include "platform/ApplicationIdentity.h"
#include "platform/desktop/SharedApplication.h"
#include "platform/desktop/SystemSymbol.h"
#include "platform/desktop/Workspace.h"
#include "platform/desktop/linux/AboutPanel.h"
#include "resources/ImageIcon.h"
#include "tests/platform/desktop/MarkingTranslator.h"
#include "tests/platform/desktop/RecordingDelegate.h"
#include "tests/support/Await.h"

#include <QApplication>
#include <QLabel>
#include <QScreen>
#include <QTest>
#include <QTimer>
#include <gtest/gtest.h>

#include <algorithm>
#include <array>

namespace orlimo {
namespace {

QList<QDialog*> openPanels()
{
    QList<QDialog*> panels;
    for (QWidget* const widget : QApplication::topLevelWidgets()) {
        auto* const dialog = qobject_cast<QDialog*>(widget);
        if (dialog != nullptr && dialog->isVisible()) {
            panels.append(dialog);
        }
    }
    return panels;
}

QDialog& show()
{
    sharedApplication().orderFrontStandardAboutPanel();
    EXPECT_EQ(openPanels().size(), 1);
    return *openPanels().constFirst();
}

TEST(AboutPanelTest, NamesTheProgramItsVersionAndCopyright)
{
    const MarkingTranslator translator;
    AboutPanel panel;
    panel.show();
    EXPECT_EQ(panel.windowTitle(), QStringLiteral("AboutPanel: About Orlimo"));
    QStringList texts;
    for (const QLabel* const line : panel.findChildren<QLabel*>()) {
        texts.append(line->text());
        EXPECT_GE(line->width(), line->sizeHint().width());
    }
    EXPECT_EQ(
        texts,
        (QStringList{
            QStringLiteral("Orlimo"),
            QStringLiteral("AboutPanel: Version 1.0.0"),
            QString::fromUtf8(identity::copyright.data())}));
    EXPECT_EQ(
        panel.windowIcon().pixmap(64).toImage(),
        imageIcon(QStringLiteral("logo")).pixmap(64).toImage());
    EXPECT_EQ(panel.minimumSize(), panel.maximumSize());
    EXPECT_FALSE(panel.isModal());
    EXPECT_TRUE(panel.windowFlags().testFlag(Qt::WindowCloseButtonHint));
}

TEST(AboutPanelTest, IsOnePanelThatComesBackToTheFront)
{
    QDialog& panel = show();
    QWidget other;
    other.show();
    other.activateWindow();
    ASSERT_TRUE(await([&] { return other.isActiveWindow(); }));
    EXPECT_EQ(&show(), &panel);
    EXPECT_TRUE(await([&] { return panel.isActiveWindow(); }));
    QTest::keyClick(&panel, Qt::Key_Escape);
    EXPECT_TRUE(openPanels().isEmpty());
    show().showMinimized();
    EXPECT_FALSE(show().isMinimized());
    EXPECT_EQ(&show(), &panel);
    panel.close();
    EXPECT_TRUE(openPanels().isEmpty());
}

TEST(QtSharedApplication, StartTokenIsNotInheritedByChildProcesses)
{
    constexpr std::array<const char*, 2> variables{"XDG_ACTIVATION_TOKEN", "DESKTOP_STARTUP_ID"};
    for (const char* const variable : variables) {
        qputenv(variable, "token");
    }
    const auto areSet = [&variables] {
        return std::ranges::count_if(variables, qEnvironmentVariableIsSet);
    };
    RecordingDelegate delegate;
    delegate.onDidFinish = [&areSet] {
        EXPECT_EQ(areSet(), 2);
        QTimer::singleShot(0, qApp, [&areSet] {
            EXPECT_EQ(areSet(), 0);
            sharedApplication().terminate();
        });
    };
    EXPECT_EQ(sharedApplication().run(delegate), 0);
}

TEST(Workspace, MainScreenIsThePrimaryOneInQtsCoordinates)
{
    EXPECT_EQ(mainScreenFrame(), QGuiApplication::primaryScreen()->geometry());
    EXPECT_EQ(fromSystemCoordinates(QRectF(1, 2, 3, 4)), QRectF(1, 2, 3, 4));
}

TEST(Workspace, UrlWithoutAnOpenerIsReported)
{
    EXPECT_FALSE(openUrl(QUrl(QStringLiteral("orlimo-without-opener:address"))));
}

TEST(SymbolArtwork, IsAFifthLargerThanTheText)
{
    EXPECT_EQ(systemSymbolSize(u"hand.raised.fill", 15), QSize(18, 18));
    EXPECT_EQ(systemSymbolSize(u"hand.raised.fill", 24), QSize(29, 29));
    for (const QStringView name : {u"logo", u"hand.raised"}) {
        EXPECT_TRUE(systemSymbol(name, 15, Qt::black, 1).isNull()) << "not a symbol";
    }
}

} // namespace
} // namespace orlimo
