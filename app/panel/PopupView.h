#pragma once

#include "app/panel/PanelServices.h"
#include "capture/Message.h"

#include <QWidget>

#include <memory>
#include <string>

namespace orlimo {

class CodeLabel;
class GroupBox;
class OptionRow;
struct PanelSwitch;

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
    /// A row whose switch shows the preference and stores each change of it.
    [[nodiscard]] OptionRow* makeOption(const PanelSwitch& panelSwitch);
    [[nodiscard]] GroupBox* makeLatestCode();
    void appear();
    void copyCode();

    std::shared_ptr<Message> message;
    PanelServices services;
    std::string code;
    CodeLabel* codeLabel = nullptr;
};

} // namespace orlimo
