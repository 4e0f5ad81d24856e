#pragma once

#include "app/screens/LineLabel.h"

#include <QFrame>
#include <QPushButton>

namespace volvelle {

// A line at the foot of the window with one thing to do or none, and a way to be rid of it. [main]
class MessageBar : public QFrame {
    Q_OBJECT

public:
    explicit MessageBar(QWidget* parent);

    void tell(const QString& line, const QString& action);

Q_SIGNALS:
    void acted();
    void closed();

protected:
    void resizeEvent(QResizeEvent* event) override;

private:
    LineLabel* label;
    QPushButton* button;
};

} // namespace volvelle
