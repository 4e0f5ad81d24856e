#pragma once

#include "app/screens/Tokens.h"

#include <QFont>
#include <QObject>
#include <QPalette>
#include <QString>

namespace volvelle {

// The colours and type of the application: dark or light, as the desktop wants. One for the process, made
// after the application. [main]
class Appearance : public QObject {
    Q_OBJECT

public:
    // In large, small and so on; sizes are pixels.
    enum class Text { display, title, largeButton, text, name, meta, small, caps };

    static Appearance& shared();

    Theme theme() const { return current; }

    const Tokens& tokens() const;

    // Sets palette, style sheet and font of the application.
    void apply(Theme theme);

    // Whether things may move that need not.
    static bool reducesMotion();

    static QFont font(Text kind);

    // How a screen of that width (pixels) is laid out, and the room that it keeps at its sides.
    static bool isWide(int width) { return width >= 1100; }

    static int margin(int width) { return isWide(width) ? 40 : 20; }

Q_SIGNALS:
    void changed();

private:
    Appearance() = default;
    QPalette palette() const;
    QString styleSheet() const;

    Theme current = Theme::dark;
};

} // namespace volvelle
