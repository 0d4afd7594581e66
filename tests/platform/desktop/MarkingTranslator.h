#pragma once

#include <QCoreApplication>
#include <QTranslator>

namespace orlimo {

/// While it lives, translates each text into its context, a colon and itself.
class MarkingTranslator final : public QTranslator
{
public:
    MarkingTranslator() { QCoreApplication::installTranslator(this); }
    MarkingTranslator(const MarkingTranslator&) = delete;
    MarkingTranslator& operator=(const MarkingTranslator&) = delete;
    ~MarkingTranslator() override { QCoreApplication::removeTranslator(this); }

    [[nodiscard]] bool isEmpty() const override { return false; }
    [[nodiscard]] QString translate(
        const char* context,
        const char* sourceText,
        const char* /*disambiguation*/,
        int /*n*/) const override
    {
        return QString::fromUtf8(context) + QStringLiteral(": ") + QString::fromUtf8(sourceText);
    }
};

} // namespace orlimo
