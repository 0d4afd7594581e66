#pragma once

#include "app/panel/PanelServices.h"
#include "capture/Message.h"

#include <QWidget>

#include <memory>
#include <string>
#include <string_view>

namespace orlimo {

class CodeLabel;
class CopyButton;
class GroupBox;
class OptionRow;

/// The code panel: the latest code with its copy button, and the switches for the preferences. The
/// switches show the preferences as they were when the panel was made; the code is the one found
/// when the panel was last shown. Main thread.
class PopupView : public QWidget
{
    Q_OBJECT

public:
    PopupView(std::shared_ptr<Message> controller, PanelServices panelServices);

    /// What the panel shows, and its copy button copies; empty until a code was found.
    [[nodiscard]] const std::string& verificationCode() const { return code; }

protected:
    void showEvent(QShowEvent* event) override;

private:
    [[nodiscard]] GroupBox* makeCaptureOptions();
    /// A row whose switch stands as `state` says, and keeps both it and the preference up to date.
    [[nodiscard]] OptionRow* makeOption(
        const QString& text, std::string_view preferenceKey, bool& state, int minTextWidth = 0);
    [[nodiscard]] GroupBox* makeLatestCode();
    void appear();
    void copyCode();
    void showState();

    std::shared_ptr<Message> message;
    PanelServices services;
    bool capturingEnabled;
    bool fourDigitInclude;
    bool loginItemEnabled;
    std::string code;
    CodeLabel* codeLabel = nullptr;
    CopyButton* copyButton = nullptr;
};

} // namespace orlimo
