#pragma once

#include "base/Paths.h"
#include "rendering/PartRendering.h"
#include "tests/support/ProjectFolders.h"

#include <algorithm>
#include <array>
#include <cmath>
#include <gtest/gtest.h>
#include <vector>

namespace volvelle::test {

constexpr std::size_t quarterSecond = 12000; // frames
constexpr double audible = 1.0e-3;           // -60 dBFS

// The sum of both sides, from the beginning of the piece.
inline std::vector<float> rendered(const RenderPiece& piece, const std::vector<RenderPart>& parts)
{
    std::vector<float> mix;
    std::array<float, RenderPart::blockFrames> left{};
    std::array<float, RenderPart::blockFrames> right{};
    for (const RenderPart& part : parts) {
        const auto made = PartRendering::make(piece, part, std::nullopt);
        EXPECT_TRUE(made) << made.error();
        auto at = static_cast<std::size_t>(part.beginBlock) * RenderPart::blockFrames;
        while (made && (*made)->renderBlock(left.data(), right.data())) {
            mix.resize(std::max(mix.size(), at + left.size()));
            for (std::size_t i = 0; i < left.size(); ++i) {
                mix[at + i] += left[i] + right[i];
            }
            at += left.size();
        }
    }
    return mix;
}

// Of a quarter of a second.
inline double levelFrom(const std::vector<float>& sound, std::size_t begin)
{
    double sum = 0.0;
    for (std::size_t i = begin; i < begin + quarterSecond && i < sound.size(); ++i) {
        sum += static_cast<double>(sound[i]) * static_cast<double>(sound[i]);
    }
    return std::sqrt(sum / quarterSecond);
}

// With the built-in bank.
class RenderedParts : public testing::Test {
protected:
    RenderedParts() { setResourcesFolder(buildFolder() / "resources"); }

    ~RenderedParts() override { setResourcesFolder(std::nullopt); }
};

} // namespace volvelle::test
