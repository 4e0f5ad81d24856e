#include "app/screens/Controls.h"

#include "app/screens/Appearance.h"

#include <array>
#include <utility>

namespace volvelle {

QString tipWithKey(const QString& tip, const QString& key)
{
    if (key.isEmpty()) {
        return tip;
    }
    QColor faint = Appearance::shared().tokens().bg;
    faint.setAlphaF(0.72F);
    return QString("<span style='white-space:pre'>%1  <span style='color:%2'>%3</span></span>")
        .arg(tip.toHtmlEscaped(), faint.name(QColor::HexArgb), key.toHtmlEscaped());
}

QString plainTip(const QString& text)
{
    return QString("<span>%1</span>").arg(text.toHtmlEscaped());
}

void setTip(QWidget* control, const QString& tip, const QString& key)
{
    const char* const name = "tip";
    if (!control->property(name).isValid()) {
        QObject::connect(&Appearance::shared(), &Appearance::changed, control, [control, name] {
            const QStringList parts = control->property(name).toStringList();
            control->setToolTip(tipWithKey(parts[0], parts[1]));
        });
    }
    control->setProperty(name, QStringList{tip, key});
    control->setToolTip(tipWithKey(tip, key));
}

QPushButton* makeButton(const QString& text, ButtonKind kind, const QString& tip, const QString& key,
                        QWidget* parent)
{
    static constexpr std::array names{"primary", "secondary", "quiet", "link"};
    auto* button = new QPushButton(text, parent);
    button->setProperty("kind", names[static_cast<std::size_t>(kind)]);
    button->setAccessibleName(text);
    button->setAccessibleDescription(tip);
    setTip(button, tip, key);
    button->setAutoDefault(true); // Return presses it
    button->setCursor(kind == ButtonKind::link ? Qt::PointingHandCursor : Qt::ArrowCursor);
    QSizePolicy policy = button->sizePolicy();
    policy.setRetainSizeWhenHidden(true);
    button->setSizePolicy(policy);
    return button;
}

ScreenButton::ScreenButton(QWidget* button, Hide hide) : button(button), hide(std::move(hide)) {}

void ScreenButton::setHidden(bool isHidden)
{
    if (button) {
        hide(*button, isHidden);
    }
}

} // namespace volvelle
