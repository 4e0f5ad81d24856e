#include "tests/support/ConsoleCapture.h"

#include "base/MainQueue.h"

#include <utility>

namespace volvelle::test {

ConsoleCapture::ConsoleCapture() : before(nullptr)
{
    mainQueue().drain();
    before = console().setSink(this);
}

ConsoleCapture::~ConsoleCapture()
{
    mainQueue().drain();
    console().setSink(before);
}

void ConsoleCapture::write(std::string_view line)
{
    lines.emplace_back(line);
}

std::vector<std::string> ConsoleCapture::take()
{
    mainQueue().drain();
    return std::exchange(lines, {});
}

} // namespace volvelle::test
