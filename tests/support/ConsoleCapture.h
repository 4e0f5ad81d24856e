#pragma once

#include "base/Console.h"

#include <string>
#include <vector>

namespace volvelle::test {

// Takes the console for its lifetime and keeps every line. One at a time.
class ConsoleCapture : public ConsoleSink {
public:
    ConsoleCapture();
    ~ConsoleCapture() override;
    ConsoleCapture(const ConsoleCapture&) = delete;
    ConsoleCapture& operator=(const ConsoleCapture&) = delete;

    void write(std::string_view line) override;

    // Drains the main queue, and gives all lines since construction or the last take.
    std::vector<std::string> take();

private:
    ConsoleSink* before;
    std::vector<std::string> lines;
};

} // namespace volvelle::test
