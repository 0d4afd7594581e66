#pragma once

#include <QColor>
#include <QMargins>
#include <QRectF>
#include <QSize>
#include <QString>
#include <QUrl>

#include <ostream>

// How Qt's values are printed when an expectation about them fails. Found by the test
// framework because they stand in the values' own namespace.

inline void PrintTo(const QString& text, std::ostream* stream)
{
    *stream << '"' << text.toStdString() << '"';
}

inline void PrintTo(const QUrl& url, std::ostream* stream)
{
    *stream << url.toString().toStdString();
}

inline void PrintTo(const QColor& color, std::ostream* stream)
{
    *stream << color.name(QColor::HexArgb).toStdString();
}

inline void PrintTo(const QPoint& point, std::ostream* stream)
{
    *stream << point.x() << "," << point.y();
}

inline void PrintTo(const QSize& size, std::ostream* stream)
{
    *stream << size.width() << " x " << size.height();
}

inline void PrintTo(const QRect& area, std::ostream* stream)
{
    PrintTo(area.size(), stream);
    *stream << " at ";
    PrintTo(area.topLeft(), stream);
}

inline void PrintTo(const QRectF& area, std::ostream* stream)
{
    *stream << area.width() << " x " << area.height() << " at " << area.x() << "," << area.y();
}

inline void PrintTo(const QMargins& margins, std::ostream* stream)
{
    *stream << margins.left() << " " << margins.top() << " " << margins.right() << " "
            << margins.bottom();
}
