#include "tests/sequence/patterns/PatternFixture.h"

#include "sequence/patterns/MIDIPattern.h"

#include <functional>
#include <random>

// The checks of ranges and the edits behind them.
namespace volvelle::test {
namespace {

const std::string fromBelow = "Warnung: Die Anfangsposition ist kleiner als 0.0.";
const std::string fromAbove = "Warnung: Die Anfangsposition ist größer als die Länge 4.0.";
const std::string toBelow = "Warnung: Die Endposition ist kleiner als 0.0.";
const std::string toAbove = "Warnung: Die Endposition ist größer als die Länge 4.0.";
const std::string swapped = "Warnung: Die Anfangsposition ist größer als die Endposition.";
const std::string isEmptyRange = "Fehler: Die Anfangsposition ist gleich der Endposition.";
const std::string targetBelow = "Warnung: Die Zielposition ist 0.0.";
const std::string targetAbove = "Warnung: Die Zielposition ist kleiner die Länge 4.0.";
const std::string noSource = "Fehler: Die Quell Spur ist undefiniert.";
const std::string notMerged = "Fehler: Die Spuren konnten nicht zusammengeführt werden.";

const std::string emptyThenNil = concat(isEmptyRange, "\n", nilMessage);

using Pattern = std::shared_ptr<MIDIPattern>;

class MIDIPatternEditingTest : public PatternFixture {
protected:
    struct Edit {
        std::string name;
        Operation operation;
        std::string failure;
        bool hasTarget;
        std::function<void(double from, double to, double target)> run;
    };

    // A pattern of 4 beats with a note at 1.
    static Pattern pattern(std::uint8_t note)
    {
        auto result = std::make_shared<MIDIPattern>();
        result->createNoteEvent(1.0, 0, note, 100, 0, 1.0F);
        result->setTrackLength(result->musicTrack, 4.0);
        return result;
    }

    static Lines notes(const std::string& own, const std::string& more = "")
    {
        Lines lines{"1.0 note 0 " + own + " 100 0 1.0"};
        if (!more.empty()) {
            lines.push_back("1.0 note 0 " + more + " 100 0 1.0");
        }
        return lines;
    }

    void expectUnchanged() const
    {
        EXPECT_EQ(contents(own->musicTrack), notes("60"));
        EXPECT_EQ(contents(other->musicTrack), notes("72"));
        EXPECT_EQ(own->getTrackLength(own->musicTrack), 4.0);
        EXPECT_EQ(other->getTrackLength(other->musicTrack), 4.0);
    }

    // Whether the service was asked: it then takes the fault away.
    bool isCalled(const Edit& edit, double from, double to, double target)
    {
        fail(edit.operation);
        edit.run(from, to, target);
        OSStatus status = noErr;
        return !takesFault(edit.operation, status);
    }

    Pattern own = pattern(60);
    Pattern other = pattern(72);

    const std::vector<Edit> edits{
        {"clearRange", Operation::MusicTrackClear, "Fehler: Die Spur konnte nicht geleert werden.", false,
         [this](double from, double to, double) { own->clearRange(from, to); }},
        {"cut", Operation::MusicTrackCut, "Fehler: Die Events konnten nicht ausgeschnitten werden.", false,
         [this](double from, double to, double) { own->cut(from, to); }},
        {"move", Operation::MusicTrackMoveEvents, "Fehler: Die Events konnten nicht verschoben werden.", true,
         [this](double from, double to, double target) { own->move(from, to, target); }},
        {"mergeFrom", Operation::MusicTrackMerge, notMerged, true,
         [this](double from, double to, double target) { own->mergeFrom(other, from, to, target); }},
        {"mergeTo", Operation::MusicTrackMerge, notMerged, true,
         [this](double from, double to, double target) { own->mergeTo(other, from, to, target); }},
        {"copyFrom", Operation::MusicTrackCopyInsert,
         "Fehler: Die Events konnten nicht in diese Spur eingefügt werden.", true,
         [this](double from, double to, double target) { own->copyFrom(other, from, to, target); }},
        {"copyTo", Operation::MusicTrackCopyInsert,
         "Fehler: Die Events konnten nicht in die andere Spur eingefügt werden.", true,
         [this](double from, double to, double target) { own->copyTo(other, from, to, target); }}};
};

using MIDIPatternEditingDeathTest = MIDIPatternEditingTest;

TEST_F(MIDIPatternEditingTest, ACheckedRangeIsMovedIntoTheTrack)
{
    struct Case {
        double from, to, newFrom, newTo;
        bool isValid;
        Lines lines;
    };

    const std::vector<Case> cases{{0.0, 4.0, 0.0, 4.0, true, {}},
                                  {-1.0, 10.0, 0.0, 4.0, true, {fromBelow, toAbove}},
                                  {10.0, -1.0, 0.0, 4.0, true, {fromAbove, toBelow, swapped}},
                                  {3.0, 1.0, 1.0, 3.0, true, {swapped}},
                                  {2.0, 2.0, 2.0, 2.0, false, {isEmptyRange}},
                                  {-2.0, -1.0, 0.0, 0.0, false, {fromBelow, toBelow, isEmptyRange}},
                                  {5.0, 6.0, 4.0, 4.0, false, {fromAbove, toAbove, isEmptyRange}},
                                  {4.0, 4.5, 4.0, 4.0, false, {toAbove, isEmptyRange}}};
    for (const Case& each : cases) {
        double from = each.from;
        double to = each.to;
        EXPECT_EQ(own->check(from, to), each.isValid) << each.from << " " << each.to;
        EXPECT_EQ(from, each.newFrom);
        EXPECT_EQ(to, each.newTo);
        EXPECT_EQ(said(), each.lines) << each.from << " " << each.to;
    }
}

// The steps one by one.
bool plainCheck(double& from, double& to, const std::string& length, Lines& lines)
{
    const double end = std::stod(length);
    const auto correct = [&](double& value, const std::string& name) {
        if (value < 0.0) {
            lines.push_back("Warnung: Die " + name + " ist kleiner als 0.0.");
        }
        if (value > end) {
            lines.push_back("Warnung: Die " + name + " ist größer als die Länge " + length + ".");
        }
        value = std::min(std::max(value, 0.0), end);
    };
    correct(from, "Anfangsposition");
    correct(to, "Endposition");
    if (from > to) {
        lines.push_back(swapped);
        const double first = from;
        from = to;
        to = first;
    }
    if (from == to) {
        lines.push_back(isEmptyRange);
    }
    return from != to;
}

TEST_F(MIDIPatternEditingTest, ManyRangesAreCheckedAsTheStepsSay)
{
    std::mt19937 random(37);
    std::uniform_int_distribution<int> draw(-3, 9);
    for (int i = 0; i < 2000; ++i) {
        const double length = std::max(0, draw(random)) / 2.0;
        own->setTrackLength(own->musicTrack, length);
        double from = draw(random) / 2.0;
        double to = draw(random) / 2.0;
        double plainFrom = from;
        double plainTo = to;
        Lines lines;
        const bool isValid = plainCheck(plainFrom, plainTo, text(length), lines);
        ASSERT_EQ(own->check(from, to), isValid);
        ASSERT_EQ(from, plainFrom);
        ASSERT_EQ(to, plainTo);
        ASSERT_EQ(said(), lines);
    }
}

TEST_F(MIDIPatternEditingTest, ACheckedTargetIsMovedIntoTheTrackAndAlwaysPasses)
{
    const std::vector<std::tuple<double, double, Lines>> cases{{-1.0, 0.0, {targetBelow}},
                                                               {0.0, 0.0, {}},
                                                               {2.5, 2.5, {}},
                                                               {4.0, 4.0, {}},
                                                               {9.0, 4.0, {targetAbove}}};
    for (const auto& [before, after, lines] : cases) {
        double target = before;
        EXPECT_TRUE(own->check(target));
        EXPECT_EQ(target, after);
        EXPECT_EQ(said(), lines);
    }
}

TEST_F(MIDIPatternEditingTest, AFailedLengthLeavesAnEmptyRange)
{
    double from = 1.0;
    double to = 2.0;
    fail(Operation::MusicTrackGetProperty);
    EXPECT_FALSE(own->check(from, to));
    EXPECT_EQ(said(), (Lines{"{line} Fehler: -7. \nDie Länge der Spur konnte nicht ermittelt werden.",
                             "Warnung: Die Anfangsposition ist größer als die Länge 0.0.",
                             "Warnung: Die Endposition ist größer als die Länge 0.0.", isEmptyRange}));
}

TEST_F(MIDIPatternEditingTest, AValidRangeChangesNothingAndAsksTheServiceForNothing)
{
    for (const Edit& edit : edits) {
        for (const auto& [from, to, lines] : std::vector<std::tuple<double, double, Lines>>{
                 {1.0, 2.0, {}}, {0.0, 4.0, {}}, {2.0, 1.0, {swapped}}, {-1.0, 9.0, {fromBelow, toAbove}}}) {
            EXPECT_FALSE(isCalled(edit, from, to, 9.0)) << edit.name;
            edit.run(from, to, 9.0);
            EXPECT_EQ(said(), join({lines, lines})) << edit.name;
            expectUnchanged();
        }
    }
}

TEST_F(MIDIPatternEditingTest, AnEmptyRangeReachesTheServiceWhichHasNothingToDo)
{
    for (const Edit& edit : edits) {
        EXPECT_TRUE(isCalled(edit, 2.0, 2.0, 1.0)) << edit.name;
        EXPECT_EQ(said(), (Lines{isEmptyRange, edit.failure})) << edit.name;
        for (const double at : {0.0, 1.0, 2.0, 4.0, 5.0}) {
            edit.run(at, at, 1.0);
            expectUnchanged();
        }
        said();
    }
}

TEST_F(MIDIPatternEditingTest, BehindAnEmptyRangeTheTargetIsCorrected)
{
    for (const Edit& edit : edits) {
        edit.run(2.0, 2.0, -1.0);
        EXPECT_EQ(said(), edit.hasTarget ? (Lines{isEmptyRange, targetBelow}) : Lines{isEmptyRange})
            << edit.name;
        edit.run(2.0, 2.0, 9.0);
        EXPECT_EQ(said(), edit.hasTarget ? (Lines{isEmptyRange, targetAbove}) : Lines{isEmptyRange})
            << edit.name;
        expectUnchanged();
    }
}

TEST_F(MIDIPatternEditingTest, TheRangeIsThatOfTheOwnLengthInBothDirections)
{
    other->setTrackLength(other->musicTrack, 2.0);
    own->mergeFrom(other, 3.0, 9.0, 0.0);
    own->mergeTo(other, 3.0, 9.0, 0.0);
    own->copyFrom(other, 3.0, 9.0, 0.0);
    own->copyTo(other, 3.0, 9.0, 0.0);
    EXPECT_EQ(said(), (Lines{toAbove, toAbove, toAbove, toAbove}));
}

TEST_F(MIDIPatternEditingTest, AMergeWithoutARangeAddsTheWholeSource)
{
    other->setTrackLength(other->musicTrack, 6.0);
    own->mergeFrom(other);
    EXPECT_EQ(contents(own->musicTrack), notes("60", "72"));
    EXPECT_EQ(contents(other->musicTrack), notes("72"));
    own = pattern(60);
    own->mergeTo(other);
    EXPECT_EQ(contents(own->musicTrack), notes("60"));
    EXPECT_EQ(contents(other->musicTrack), notes("72", "60"));
    EXPECT_EQ(said(), Lines{});
}

TEST_F(MIDIPatternEditingTest, AMergeWithoutARangeTakesTheSourcesOwnLength)
{
    const auto addLate = [](const Pattern& to, std::uint8_t note) {
        to->createNoteEvent(3.0, 0, note, 100, 0, 1.0F);
    };
    addLate(other, 73);
    other->setTrackLength(other->musicTrack, 4.0);
    own->setTrackLength(own->musicTrack, 2.0);
    own->mergeFrom(other);
    EXPECT_EQ(contents(own->musicTrack), join({notes("60", "72"), {"3.0 note 0 73 100 0 1.0"}}));
    own = pattern(60);
    addLate(own, 61);
    other = pattern(72);
    other->setTrackLength(other->musicTrack, 2.0);
    own->mergeTo(other);
    EXPECT_EQ(contents(other->musicTrack), join({notes("72", "60"), {"3.0 note 0 61 100 0 1.0"}}));
}

TEST_F(MIDIPatternEditingTest, AFailedMergeWithoutARangeIsReported)
{
    fail(Operation::MusicTrackMerge, someStatus, 0, 2);
    own->mergeFrom(other);
    own->mergeTo(other);
    EXPECT_EQ(said(), (Lines{notMerged, notMerged}));
    expectUnchanged();
}

TEST_F(MIDIPatternEditingTest, AMergeReportsAnAbsentPattern)
{
    own->mergeFrom(nullptr);
    own->mergeTo(nullptr);
    EXPECT_EQ(said(), (Lines{noSource, noSource}));
    own->mergeFrom(nullptr, 2.0, 2.0, 0.0);
    own->mergeTo(nullptr, 2.0, 2.0, 0.0);
    EXPECT_EQ(said(), (Lines{isEmptyRange, noSource, isEmptyRange, noSource}));
    own->mergeFrom(nullptr, 1.0, 2.0, 0.0);
    own->mergeTo(nullptr, 1.0, 2.0, 0.0);
    EXPECT_EQ(said(), Lines{});
    expectUnchanged();
}

TEST_F(MIDIPatternEditingDeathTest, ACopyBehindAnEmptyRangeNeedsTheOtherPattern)
{
    EXPECT_STOP(own->copyFrom(nullptr, 2.0, 2.0, 0.0), emptyThenNil);
    EXPECT_STOP(own->copyTo(nullptr, 2.0, 2.0, 0.0), emptyThenNil);
}

TEST_F(MIDIPatternEditingDeathTest, EveryEditNeedsItsTrack)
{
    own->musicTrack = nullptr;
    for (const Edit& edit : edits) {
        EXPECT_STOP(edit.run(1.0, 2.0, 0.0), nilMessage) << edit.name;
    }
    EXPECT_STOP(own->mergeFrom(other), nilMessage);
    EXPECT_STOP(own->mergeTo(other), nilMessage);
    double position = 1.0;
    EXPECT_STOP(own->check(position), nilMessage);
}

TEST_F(MIDIPatternEditingDeathTest, TheOtherPatternNeedsItsTrack)
{
    other->musicTrack = nullptr;
    for (const std::size_t i : {3U, 4U, 5U, 6U}) {
        EXPECT_STOP(edits[i].run(2.0, 2.0, 0.0), emptyThenNil) << edits[i].name;
    }
    EXPECT_STOP(own->mergeFrom(other), nilMessage);
    EXPECT_STOP(own->mergeTo(other), nilMessage);
}

} // namespace
} // namespace volvelle::test
