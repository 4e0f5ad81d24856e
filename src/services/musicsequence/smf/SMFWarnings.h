#pragma once

#include <string>
#include <vector>

namespace volvelle {

// The lines that tell what was mended: the first 20, and how many more there were.
class SMFWarnings {
public:
    static constexpr std::size_t most = 20;

    void add(std::string line);
    std::vector<std::string> take();

private:
    std::vector<std::string> lines;
    std::size_t count = 0;
};

} // namespace volvelle
