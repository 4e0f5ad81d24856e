#pragma once

#include <QLabel>

namespace volvelle {

// One line of plain text, cut in its middle where it has no room, with the whole in the tooltip then. It is
// given what its neighbours leave. [main]
class LineLabel : public QLabel {
    Q_OBJECT

public:
    explicit LineLabel(QWidget* parent);

    void setText(const QString& text);

    // As it is painted.
    QString shownText() const;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void changeEvent(QEvent* event) override;

private:
    void showTip();
};

} // namespace volvelle
