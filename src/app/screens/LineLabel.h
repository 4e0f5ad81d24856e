#pragma once

#include <QWidget>

namespace volvelle {

// One line of plain text, cut in its middle where it has no room, with the whole in the tooltip then. It is
// given what its neighbours leave. [main]
class LineLabel : public QWidget {
    Q_OBJECT

public:
    explicit LineLabel(QWidget* parent);

    void setText(const QString& text);

    // As it is painted.
    QString shownText() const;

    QSize sizeHint() const override;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    void showTip();

    QString whole;
};

} // namespace volvelle
