#pragma once

#include "app/circle/DiscGeometry.h"
#include "app/screens/Tokens.h"

#include <QPainter>

namespace volvelle {

// The parts of a disc, painted about the origin in units of the canvas. [any]

// Shadow, rim, ink, guides and scale.
void paintStillParts(QPainter& painter, const DiscGeometry& disc, const Tokens& tokens);

// The sounding sector and the names of the chords.
void paintChordParts(QPainter& painter, const DiscGeometry& disc, const Tokens& tokens);

// The hub with its texts, inside `DiscGeometry::hub` but for half a pixel of its edge.
void paintHub(QPainter& painter, const DiscGeometry& disc, const Tokens& tokens);

// Wedge, the way that has been played, and the index mark.
void paintMovingParts(QPainter& painter, const DiscGeometry& disc, const Tokens& tokens);

// Rim, ink and hub of a tile's disc.
void paintSmallParts(QPainter& painter, const Tokens& tokens);

} // namespace volvelle
