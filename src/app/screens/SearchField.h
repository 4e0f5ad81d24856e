#pragma once

#include <QLineEdit>

namespace volvelle {

// A field for words to search by, with a magnifier before them. [main]
class SearchField : public QLineEdit {
public:
    explicit SearchField(QWidget* parent);

protected:
    void paintEvent(QPaintEvent* event) override;
};

} // namespace volvelle
