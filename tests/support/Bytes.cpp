#include "tests/support/Bytes.h"

#include <cctype>
#include <cstdlib>

namespace volvelle::test {

Bytes hex(std::string_view digits)
{
    Bytes bytes;
    bool isText = false;
    for (std::size_t i = 0; i < digits.size(); ++i) {
        const char c = digits[i];
        if (c == '"') {
            isText = !isText;
        } else if (isText) {
            bytes.push_back(static_cast<std::uint8_t>(c));
        } else if (std::isxdigit(static_cast<unsigned char>(c)) != 0) {
            const std::string pair(digits.substr(i++, 2));
            bytes.push_back(static_cast<std::uint8_t>(std::strtoul(pair.c_str(), nullptr, 16)));
        }
    }
    return bytes;
}

} // namespace volvelle::test
