#include "tests/support/Stops.h"

#include "base/Console.h"
#include "base/Text.h"

#include <iostream>

namespace volvelle::test {

namespace {

class ErrorSink : public ConsoleSink {
public:
    void write(std::string_view line) override { std::cerr << line << std::endl; }
};

} // namespace

std::string stopped(std::string_view message, const std::vector<std::string>& lines)
{
    std::string result = concat(message, "\n");
    for (const std::string& line : lines) {
        result += line + "\n";
    }
    return result;
}

void showLog()
{
    static ErrorSink sink;
    console().setSink(&sink);
}

} // namespace volvelle::test
