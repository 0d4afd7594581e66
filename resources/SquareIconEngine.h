#pragma once

#include <QColor>
#include <QIconEngine>
#include <QList>
#include <QPixmap>
#include <QSize>
#include <QString>

#include <functional>
#include <optional>

namespace orlimo {

/// Shows a square picture as an icon, in the middle of areas of any shape. A size is drawn only
/// when it is requested. Main thread.
class SquareIconEngine final : public QIconEngine
{
public:
    struct Options
    {
        /// The picture in that many pixels, with one pixel per point.
        std::function<QPixmap(const QSize& pixels)> draw;
        /// In pixels.
        QList<QSize> availableSizes;
        /// Makes the picture a template: its shape is shown in this color.
        std::optional<QColor> tint{};
        /// The largest size that is painted, in points; a size requested as a pixmap is not
        /// limited.
        std::optional<QSize> maxSize{};
        /// The name under which an icon theme has the same icon.
        QString themeName{};
    };

    explicit SquareIconEngine(Options engineOptions);

    void paint(QPainter* painter, const QRect& area, QIcon::Mode mode, QIcon::State state) override;
    QSize actualSize(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap pixmap(const QSize& size, QIcon::Mode mode, QIcon::State state) override;
    QPixmap
    scaledPixmap(const QSize& size, QIcon::Mode mode, QIcon::State state, qreal scale) override;
    QList<QSize> availableSizes(QIcon::Mode mode, QIcon::State state) override;
    [[nodiscard]] QIconEngine* clone() const override { return new SquareIconEngine(*this); }
    QString key() const override { return QStringLiteral("SquareIconEngine"); }
    QString iconName() override { return options.themeName; }

private:
    Options options;
};

} // namespace orlimo
