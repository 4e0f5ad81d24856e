#include "tests/sequence/patterns/GridReadingFixture.h"

#include <array>
#include <random>

// Random walks against the steps one by one, on lists of lines.
namespace volvelle::test {
namespace {

class MIDIPatternSequenceWalkTest : public GridReadingFixture {
protected:
    int draw(int end) { return std::uniform_int_distribution<int>(0, end - 1)(random); }

    void take(const std::string& node)
    {
        plain.resize(std::max(plain.size(), row + 1));
        if (isSelected) {
            plain[row].at(column).push_back(node);
        }
    }

    void addRow(double time, int index)
    {
        const int number = draw(5) == 0 ? 1024 + draw(3) : draw(6);
        putRow(time, number, index);
        if (number < 1024) {
            row = static_cast<std::size_t>(number);
            isSelected = true;
        }
        take(concat("MetaSequenceNumberEvent ", time, " 0: 0 2 [", number % 256, ", ", number / 256, "]"));
    }

    void addColumn(double time, int index)
    {
        const int prefix = draw(20);
        putColumn(time, static_cast<std::uint8_t>(prefix), index);
        if (prefix < 16) {
            column = static_cast<std::size_t>(prefix);
            isSelected = true;
        }
        take(concat("MetaChannelPrefixEvent ", time, " 0: 32 1 [", prefix, "]"));
    }

    void addNote(double time, int index)
    {
        const int number = draw(128);
        putNote(time, static_cast<std::uint8_t>(number), index);
        take(noteNode(time, number));
    }

    void addEvents()
    {
        for (int i = 0; i < 30; ++i) {
            const int index = i / 10;
            const double time = i % 10;
            switch (draw(4)) {
            case 0:
                addRow(time, index);
                break;
            case 1:
                addColumn(time, index);
                break;
            default:
                addNote(time, index);
            }
        }
    }

    void expectPlainCells() const
    {
        ASSERT_EQ(grid->sections.size(), plain.size());
        for (std::size_t i = 0; i < plain.size(); ++i) {
            for (std::size_t k = 0; k < 16; ++k) {
                ASSERT_EQ(nodes(i, k), plain[i].at(k)) << i << " " << k;
            }
        }
    }

    std::mt19937 random{39};
    std::size_t row = 0;
    std::size_t column = 0;
    bool isSelected = false;
    std::vector<std::array<Lines, 16>> plain;
};

TEST_F(MIDIPatternSequenceWalkTest, ManyTracksAreReadAsTheStepsSay)
{
    for (int round = 0; round < 200; ++round) {
        empty(3);
        row = 0;
        column = 0;
        isSelected = false;
        plain.assign(1, {});
        addEvents();
        grid->musicSequenceToSequenceNode();
        expectPlainCells();
        if (HasFatalFailure()) {
            return;
        }
    }
}

} // namespace
} // namespace volvelle::test
