#include "controls/accessibility/ReturnKey.h"

#include "tests/support/widgets/WidgetWindow.h"

#include <QKeyEvent>
#include <QPointer>
#include <QPushButton>
#include <QSignalSpy>
#include <QTest>
#include <gtest/gtest.h>

namespace orlimo {
namespace {

class ReturnKeyTest : public testing::TestWithParam<Qt::Key>
{
protected:
    ReturnKeyTest()
    {
        ReturnKey::attach(*button);
        button->setFocus();
    }

    void send(QEvent::Type type, bool isRepeated)
    {
        QKeyEvent event(type, GetParam(), Qt::NoModifier, QStringLiteral("\r"), isRepeated);
        QCoreApplication::sendEvent(&*button, &event);
    }

    WidgetWindow<QPushButton> button{QStringLiteral("Copy")};
    QSignalSpy clicked{&*button, &QPushButton::clicked};
};

TEST_P(ReturnKeyTest, ClicksOnceOnRelease)
{
    send(QEvent::KeyPress, false);
    EXPECT_TRUE(button->isDown());
    for (int times = 0; times < 10; ++times) {
        send(QEvent::KeyRelease, true);
        send(QEvent::KeyPress, true);
    }
    EXPECT_EQ(clicked.count(), 0);
    send(QEvent::KeyRelease, false);
    EXPECT_FALSE(button->isDown());
    EXPECT_EQ(clicked.count(), 1);
}

TEST_P(ReturnKeyTest, AllowsClickToDeleteButton)
{
    auto* gone = new QPushButton(&button.window);
    ReturnKey::attach(*gone);
    QObject::connect(gone, &QPushButton::clicked, gone, [gone] { delete gone; });
    QPointer<QPushButton> left = gone;
    QTest::keyPress(gone, GetParam());
    QTest::keyRelease(gone, GetParam());
    EXPECT_EQ(left, nullptr);
}

INSTANTIATE_TEST_SUITE_P(Keys, ReturnKeyTest, testing::Values(Qt::Key_Return, Qt::Key_Enter));

} // namespace
} // namespace orlimo
