#pragma once

#include "app/document/FileCircle.h"

#include <QImage>
#include <QPushButton>
#include <QWidget>

#include <memory>

namespace volvelle {

// What the browser shows while there is nothing to show: a disc with the notes of the example, and what to
// do. [main]
class EmptyBrowser : public QWidget {
    Q_OBJECT

public:
    explicit EmptyBrowser(QWidget* parent);

    QPushButton* newButton;
    QPushButton* importButton;

protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

private:
    int discSide() const;
    int top() const;

    std::unique_ptr<FileCircle> example;
    QImage disc;
};

} // namespace volvelle
