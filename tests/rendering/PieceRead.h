#pragma once

#include "rendering/RenderPiece.h"

#include <gtest/gtest.h>
#include <string_view>
#include <vector>

namespace volvelle::test {

// The bytes of a MIDI file as a piece.
inline RenderPiece pieceRead(std::string_view bytes, bool isSequenced = false)
{
    RenderPiece piece;
    EXPECT_EQ(piece.read({bytes.begin(), bytes.end()}, isSequenced), noErr);
    return piece;
}

inline RenderPiece pieceRead(const std::vector<std::uint8_t>& bytes, bool isSequenced = false)
{
    return pieceRead({reinterpret_cast<const char*>(bytes.data()), bytes.size()}, isSequenced);
}

} // namespace volvelle::test
