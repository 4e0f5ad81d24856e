#pragma once

#include "app/control/DocumentOverview.h"

#include <QWidget>

namespace volvelle {

// The file's name: the plain text is "File: NAME", and the prefix is painted fainter. A long name is cut in
// its middle, with the whole in the tooltip. [main]
class FileLabel : public QWidget {
public:
    explicit FileLabel(QWidget* parent);

    void setText(const QString& text);

    QString text() const { return whole; }

    QSize sizeHint() const override { return {272, 28}; }

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    QString whole;
};

// A row for each part: its colour, its name, its number of notes. Rows that do not fit are left out, the
// numbers where it is narrow. [main]
class Legend : public QWidget {
public:
    explicit Legend(QWidget* parent);

    void setParts(std::vector<DocumentOverview::Part> given);

protected:
    void paintEvent(QPaintEvent* event) override;

private:
    std::vector<DocumentOverview::Part> parts;
};

} // namespace volvelle
