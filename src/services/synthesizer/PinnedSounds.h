#pragma once

#include <bitset>
#include <cstddef>

// Private to the library.
namespace volvelle {

// A sound of a bank as it stands in the file: 128 is the bank of drums.
struct BankSound {
    int bank = 0;
    int program = 0;
};

// The sounds whose samples are in memory for as long as their synthesizer lives. [render]
class PinnedSounds {
public:
    static constexpr int banks = 129;
    static constexpr int programs = 128;

    void add(const BankSound& sound) { set.set(place(sound)); }

    bool holds(const BankSound& sound) const { return set.test(place(sound)); }

private:
    static std::size_t place(const BankSound& sound)
    {
        return static_cast<std::size_t>(sound.bank) * programs + static_cast<std::size_t>(sound.program);
    }

    std::bitset<static_cast<std::size_t>(banks) * programs> set;
};

} // namespace volvelle
