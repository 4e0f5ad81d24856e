#pragma once

#include "app/circle/DiscContent.h"
#include "app/circle/MIDICircleView.h"
#include "app/screens/CirclePainter.h"
#include "app/screens/DiscPainter.h"

#include <QWidget>

#include <functional>
#include <memory>

namespace volvelle {

// The disc with the circle on it, without what finds no memory. A click plays or stops. [main]
class DiscWidget : public QWidget {
    Q_OBJECT

public:
    explicit DiscWidget(QWidget* parent);
    ~DiscWidget() override;

    // The circle, as the screen's logic knows it.
    const std::shared_ptr<MIDICircleView>& circle() const { return view; }

    // All but the position, which is the circle's.
    void setContent(DiscContent content);

    const DiscContent& content() const { return shown; }

    void setPlaying(bool isPlaying);

    // What a screen reader says of it; `position` while it plays.
    void setSpoken(const QString& music);

Q_SIGNALS:
    void clicked();
    void positionChanged(double beats);

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void enterEvent(QEnterEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void moveEvent(QMoveEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    bool isOnDisc(const QPointF& point) const;
    void lookForPointer();
    void showPointer();
    void followCircle();
    void showPosition();
    void moveCircle();
    // What finds no memory is left out from then on, until there is other music, with one line.
    void paintWithinMemory(bool& isLeftOut, const std::function<void()>& painting);
    double side() const;

    std::shared_ptr<MIDICircleView> view;
    DiscContent shown;
    DiscPainter discPainter;
    CirclePainter circlePainter;
    double beat = 0.0; // that the circle was at last
    bool isCirclePainted = false;
    bool lacksDisc = false; // they find no memory
    bool lacksCircle = false;
    QTransform toWidget; // from the pixels of the device that was painted on
    bool isPressed = false;
    QPointF pointer{-1.0, -1.0}; // where it was last
};

} // namespace volvelle
