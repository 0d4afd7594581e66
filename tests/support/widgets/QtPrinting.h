#pragma once

#include <QDebug>

#include <ostream>

/// How Qt's values are printed when an expectation about them fails. Found by the test framework
/// because it stands in the values' own namespace.
template <class Value>
requires requires(QDebug debug, const Value& value)
{
    debug << value;
}
void PrintTo(const Value& value, std::ostream* stream)
{
    QString text;
    QDebug(&text).nospace() << value;
    *stream << text.toStdString();
}
