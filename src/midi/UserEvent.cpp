#include "midi/UserEvent.h"

#include "base/Checked.h"
#include "base/Console.h"
#include "base/Text.h"

#include <utility>

namespace volvelle {

std::string UserEvent::toHex() const
{
    std::string result;
    for (const std::uint8_t byte : data) {
        result += hexadecimal(byte, ' ') + " ";
    }
    return result;
}

std::string UserEvent::toText() const
{
    return latinText(data);
}

std::vector<std::uint8_t> UserEvent::getData() const
{
    return data;
}

void UserEvent::setData(std::uint32_t /*len*/, std::vector<std::uint8_t> dat)
{
    if (data.empty()) {
        data = std::move(dat);
    } else {
        data.insert(data.end(), dat.begin(), dat.end());
    }
    length = checkedCast<std::uint32_t>(data.size());
}

int UserEvent::getLength() const
{
    return checkedCast<int>(data.size());
}

void UserEvent::dumpout() const
{
    EventNode::dumpout();
    dumpPayload();
}

void UserEvent::replaceData(std::vector<std::uint8_t> bytes)
{
    data = std::move(bytes);
    length = checkedCast<std::uint32_t>(data.size());
}

bool UserEvent::holds(std::size_t count, std::string_view message) const
{
    if (data.size() < count) {
        safeprint(std::string(message));
        return false;
    }
    return true;
}

void UserEvent::dumpPayload() const
{
    safeprint("\t\tlength: ", length, ".");
    safeprint("\t\tdata: ", data, ".");
    safeprint("\t\thexadecimal: ", toHex(), ".");
    safeprint("\t\tverbose: ", toText(), ".");
}

} // namespace volvelle
