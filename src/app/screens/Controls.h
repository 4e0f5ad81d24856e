#pragma once

#include "app/control/ScreenControls.h"

#include <QPointer>
#include <QPushButton>

#include <functional>
#include <memory>

namespace volvelle {

enum class ButtonKind { primary, secondary, quiet, link };

// A button of a screen: its text, and its key in the tooltip. [main]
QPushButton* makeButton(const QString& text, ButtonKind kind, const QString& tip, const QString& key,
                        QWidget* parent);

// A tooltip with its key as a second, fainter text, in the colours of now.
QString tipWithKey(const QString& tip, const QString& key);

// Gives a control such a tooltip, which follows the colours when they change.
void setTip(QWidget* control, const QString& tip, const QString& key);

// A tooltip of a text as it is, whatever letters it has.
QString plainTip(const QString& text);

// A button as the logic of a screen knows it: its room is kept while it is hidden. [main]
class ScreenButton : public UIButton {
public:
    using Hide = std::function<void(QWidget& button, bool isHidden)>;

    // `hide` carries out, so that a screen can look after the focus.
    ScreenButton(QWidget* button, Hide hide);

    void setHidden(bool isHidden) override;

private:
    QPointer<QWidget> button;
    Hide hide;
};

} // namespace volvelle
