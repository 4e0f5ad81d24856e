#pragma once

#include "app/circle/CGRect.h"
#include "app/circle/DiscContent.h"

#include <array>
#include <optional>
#include <string>
#include <vector>

namespace volvelle {

// Where everything stands on the disc below the notes. Lengths are units of the canvas, measured from the
// centre, y downwards; angles are radians clockwise from twelve. [any]
class DiscGeometry {
public:
    // `side`: the disc's width in pixels.
    DiscGeometry(const DiscContent& content, double side);

    // Brings what moves to another position, or to rest; all else of the content is to be the same.
    void move(const DiscContent& content);

    // Pixels of a unit.
    static double unitOf(const DiscContent& content, double side);

    enum class Step { sixteenth, beat, bar };

    struct Tick {
        double angle;
        Step step;
        double outer; // radius; the inner one is `scaleInner`

        bool operator==(const Tick&) const = default;
    };

    struct Sector {
        double start;
        double sweep;

        bool operator==(const Sector&) const = default;
    };

    struct Chord {
        double begin; // beats, as the next
        double end;
        Sector sector;
        std::string name;
        double nameAngle; // of the name's middle
        bool isFlipped;   // the name is turned about, to stand upright
        double room;      // units along the ring
    };

    static constexpr double sideUnits = 604.0;
    static constexpr double smallSideUnits = 534.0;
    static constexpr double shadowInner = 294.0, shadowOuter = 302.0, shadowDrop = 2.0;
    static constexpr double rim = 298.0, smallRim = 266.0;
    static constexpr double ink = 254.0, smallInk = 244.0;
    static constexpr double spokeInner = 92.0, spokeOuter = 252.0;
    static constexpr double wedgeInner = 88.0, wedgeOuter = 253.0;
    static constexpr double hub = 86.0, smallHub = 80.0;
    static constexpr double chordBaseline = 41.0, positionBaseline = 58.0;
    static constexpr double scaleInner = 256.0, scaleOuter = 267.0;
    static constexpr double nameRadius = 283.0;
    static constexpr double progress = 255.0;

    double unit;                              // pixels
    std::vector<double> octaves;              // radii
    std::vector<double> spokes;               // angles
    std::vector<Tick> ticks;                  // sixteenths, beats, bars
    std::vector<Chord> chords;                // each up to the next one's start
    std::array<CGPoint, 3> index;             // the mark at twelve, its tip first
    std::optional<std::size_t> soundingChord; // also at rest
    std::string chordName;                    // of that; may be empty
    std::string positionText;                 // "bar.beat"
    std::string tempoText;
    std::optional<Sector> wedge;    // while playing
    std::optional<Sector> elapsed;  // while playing, its bead at the end
    std::optional<Sector> sounding; // the chord's sector while playing

    // The point on a circle of that radius.
    static CGPoint place(double angle, double radius);

    // The least rectangle around the part of a ring between two radii.
    static CGRect around(const Sector& sector, double inner, double outer);

private:
    void makeTicks(const DiscContent& content);
    void addTicks(double beats, double step, Step kind, double outer);
    void makeChords(const DiscContent& content);
    void findChord(const DiscContent& content);
    void makeTexts(const DiscContent& content);
    void makeMoving(const DiscContent& content);

    // An angle of so many beats, a full turn at most.
    static double angle(double beats, const DiscContent& content);
};

} // namespace volvelle
