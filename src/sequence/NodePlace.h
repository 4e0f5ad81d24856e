#pragma once

#include "midi/PatternNode.h"

#include <cstdint>
#include <functional>

namespace volvelle {

// The track of the tree that takes an event which is read.
enum class EventTarget : std::uint8_t { ownTrack, firstTrack, tempoTrack };

// Answers where a node that was read goes, given the track that its kind is meant for; null for nowhere.
using NodePlace = std::function<PatternNode*(const EventNode& node, EventTarget target)>;

} // namespace volvelle
