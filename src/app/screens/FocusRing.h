#pragma once

#include <QPointer>
#include <QWidget>

namespace volvelle {

// The ring round the control that has the keyboard's focus, above all else of a window and out of the mouse's
// way. Shown only where the focus came by a key. [main]
class FocusRing : public QWidget {
public:
    explicit FocusRing(QWidget* window);

protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

private:
    void follow(QWidget* widget, bool byKey);
    void place();

    QPointer<QWidget> control;
};

} // namespace volvelle
