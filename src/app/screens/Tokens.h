#pragma once

#include <QColor>

namespace volvelle {

enum class Theme { dark, light };

// The colours of a theme, by what they are for. [any]
struct Tokens {
    QColor bg, surface, rim, rimEdge, sector, disc, discEdge;
    QColor control, controlHover, controlPressed, line, edge;
    QColor tick, tickBeat, tickBar;
    QColor fg, fg2, fg3;
    QColor accent, accentHover, accentPressed, onAccent, disabled;
    double shadow; // opacity below a disc

    static const Tokens& of(Theme theme);
};

} // namespace volvelle
