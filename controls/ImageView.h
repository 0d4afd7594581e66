#pragma once

#include "controls/painting/Colors.h"
#include "resources/Artwork.h"

#include <QString>
#include <QWidget>

namespace orlimo {

/// An image asset, stretched to a frame of a fixed size. Without meaning of its own to a reader of
/// the screen.
class ImageView : public QWidget
{
    Q_OBJECT

public:
    /// `tint` makes the image a template, of which only the shape counts.
    ImageView(QString imageName, QSize frame, PaletteColor tint = nullptr);

    [[nodiscard]] const QString& imageName() const { return name; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString name;
    Artwork image;
    PaletteColor tintOf;
};

} // namespace orlimo
