#include "app/screens/FadeOut.h"

#include <QPainter>

#include <utility>

namespace volvelle {

namespace {

constexpr int length = 150; // ms

} // namespace

FadeOut::FadeOut(QWidget* over, QPixmap picture) : QWidget(over), picture(std::move(picture))
{
    setAttribute(Qt::WA_TransparentForMouseEvents);
    setGeometry(over->rect());
    fade.setDuration(length);
    fade.setStartValue(1.0);
    fade.setEndValue(0.0);
    connect(&fade, &QVariantAnimation::valueChanged, this, [this] { update(); });
    connect(&fade, &QVariantAnimation::finished, this, &QObject::deleteLater);
    show();
    fade.start();
}

void FadeOut::paintEvent(QPaintEvent* /*event*/)
{
    QPainter painter(this);
    painter.setOpacity(fade.currentValue().toDouble());
    painter.drawPixmap(0, 0, picture);
}

} // namespace volvelle
