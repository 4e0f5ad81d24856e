#include "tests/app/shell/PrivateBus.h"

#include "tests/support/ChildProcess.h"

#include <cstdlib>
#include <memory>

namespace volvelle::test {

namespace {

std::unique_ptr<ChildProcess> bus;

} // namespace

bool beginPrivateBus()
{
    bus = std::make_unique<ChildProcess>(
        std::vector<std::string>{"dbus-daemon", "--session", "--nofork", "--nopidfile", "--print-address"});
    const std::string address = bus->readLine();
    setenv("DBUS_SESSION_BUS_ADDRESS", address.c_str(), 1);
    setenv("DBUS_SYSTEM_BUS_ADDRESS", address.c_str(), 1);
    return !address.empty();
}

void endPrivateBus()
{
    bus.reset();
}

} // namespace volvelle::test
