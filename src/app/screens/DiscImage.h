#pragma once

#include "app/circle/DiscContent.h"
#include "app/circle/MIDICircleViewDelegate.h"
#include "app/control/DocumentOverview.h"
#include "app/screens/Tokens.h"

#include <QImage>

#include <stop_token>

namespace volvelle {

// Discs as pictures; `side` and `ratio` are lengths and the pixels of each. [any] One music by one thread.

// A tile's: no scale, no thick notes. One that is asked to stop lacks notes.
QImage smallDiscImage(MIDICircleViewDelegate& music, int side, double ratio, Theme theme,
                      const std::stop_token& stop = {});

// The one of an empty browser: no names, the notes faint and white.
QImage faintDiscImage(MIDICircleViewDelegate& music, int side, double ratio, Theme theme);

// That of a document's screen at a beat, at rest without one.
QImage documentDiscImage(MIDICircleViewDelegate& music, const DocumentOverview& overview,
                         std::optional<double> beat, int side, double ratio, Theme theme);

// What a document's disc shows of it.
DiscContent discContentOf(const DocumentOverview& overview, double beats);

} // namespace volvelle
