#pragma once

#include "app/circle/CircleDrawing.h"

#include <QPainter>
#include <QPainterPath>

namespace volvelle {

QColor qColor(const UIColor& color);

// One arc, or nothing where it has no place or cannot be seen. [any]
void paintArc(QPainter& painter, const CircleArc& arc);

void paintLine(QPainter& painter, const CircleLine& line);

// What is left of a stroked arc inside its clips, to be filled.
QPainterPath clippedOutline(const CircleArc& arc);

} // namespace volvelle
