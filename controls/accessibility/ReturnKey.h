#pragma once

#include <QObject>

class QAbstractButton;

namespace orlimo {

/// Has the Return and Enter keys do on a button what the space bar does: it goes down with the key
/// and is clicked when the key comes up, once however long that is held. Which keys press a button
/// is otherwise the desktop theme's choice in Qt, and only the space bar without one. Main thread.
class ReturnKey : public QObject
{
public:
    /// For as long as `button` lives.
    static void attach(QAbstractButton& button);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;

private:
    explicit ReturnKey(QAbstractButton& button);
};

} // namespace orlimo
