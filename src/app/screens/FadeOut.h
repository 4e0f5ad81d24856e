#pragma once

#include <QPixmap>
#include <QVariantAnimation>
#include <QWidget>

namespace volvelle {

// A picture of what was shown before, which fades and is gone. [main]
class FadeOut : public QWidget {
public:
    FadeOut(QWidget* over, QPixmap picture);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QPixmap picture;
    QVariantAnimation fade;
};

} // namespace volvelle
