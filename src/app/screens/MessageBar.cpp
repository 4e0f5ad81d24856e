#include "app/screens/MessageBar.h"

#include "app/screens/Appearance.h"
#include "app/screens/Controls.h"

#include <QHBoxLayout>

namespace volvelle {

MessageBar::MessageBar(QWidget* parent)
    : QFrame(parent), label(new LineLabel(this)), button(makeButton("", ButtonKind::secondary, "", "", this))
{
    setProperty("kind", "bar");
    auto* close = makeButton("Close", ButtonKind::link, "Close this line", "", this);
    auto* layout = new QHBoxLayout(this);
    layout->addWidget(label, 1);
    layout->addWidget(button);
    layout->addWidget(close);
    // A click leaves the focus with the field that the line is about.
    button->setFocusPolicy(Qt::TabFocus);
    close->setFocusPolicy(Qt::TabFocus);
    connect(button, &QPushButton::clicked, this, &MessageBar::acted);
    connect(close, &QPushButton::clicked, this, &MessageBar::closed);
    hide();
}

void MessageBar::resizeEvent(QResizeEvent* event)
{
    QFrame::resizeEvent(event);
    const int margin = Appearance::margin(width());
    layout()->setContentsMargins(margin, 8, margin, 8);
}

void MessageBar::tell(const QString& line, const QString& action)
{
    label->setText(line);
    button->setText(action);
    button->setAccessibleName(action);
    button->setVisible(!action.isEmpty());
    setAccessibleName(line);
    setVisible(true);
}

} // namespace volvelle
