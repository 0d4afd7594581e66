#pragma once

#include <QByteArray>
#include <QVariantMap>

namespace orlimo {

/// What the text of a settings file stands for, as QSettings understands it. Main thread.
class SettingsText
{
public:
    /// Has the toolkit understand `text`.
    explicit SettingsText(QByteArray text);

    [[nodiscard]] const QByteArray& text() const { return sourceText; }

    /// Whether the host had the memory for understanding it. Without, nothing here says anything
    /// about the text.
    [[nodiscard]] bool isAvailable() const { return available; }

    /// Whether there is something in it that is no setting.
    [[nodiscard]] bool isDamaged() const { return damaged; }

    /// The value under each key; nothing when the text is damaged.
    [[nodiscard]] const QVariantMap& contents() const { return values; }

private:
    QByteArray sourceText;
    QVariantMap values;
    bool available = false;
    bool damaged = false;
};

} // namespace orlimo
