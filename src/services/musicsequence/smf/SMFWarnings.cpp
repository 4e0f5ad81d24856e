#include "services/musicsequence/smf/SMFWarnings.h"

#include "base/Text.h"

#include <utility>

namespace volvelle {

void SMFWarnings::add(std::string line)
{
    ++count;
    if (lines.size() < most) {
        lines.push_back(std::move(line));
    }
}

std::vector<std::string> SMFWarnings::take()
{
    if (count > lines.size()) {
        const std::size_t more = count - lines.size();
        lines.push_back(counted(more, "more place was mended.", "more places were mended."));
    }
    count = 0;
    return std::exchange(lines, {});
}

} // namespace volvelle
