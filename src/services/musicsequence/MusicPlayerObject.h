#pragma once

#include "services/musicsequence/MusicSequence.h"

namespace volvelle {

// A player: it holds the sequence that it would play. [any]
class MusicPlayerObject {
public:
    MusicSequence sequence; // null before one was set
};

} // namespace volvelle
