#include <gtest/gtest.h>

#include <QApplication>

#include <memory>

namespace {

// Qt without a screen, around all tests of the program.
class QtOffscreen : public testing::Environment {
public:
    void SetUp() override
    {
        qputenv("QT_QPA_PLATFORM", "offscreen");
        qunsetenv("DBUS_SESSION_BUS_ADDRESS");
        // What tests change has its place before another thread reads the environment.
        for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_STATE_HOME"}) {
            qputenv(variable, "/nowhere");
        }
        application = std::make_unique<QApplication>(count, arguments);
    }

    void TearDown() override { application.reset(); }

private:
    int count = 1;
    char name[12] = "screenstest";
    char* arguments[2] = {name, nullptr};
    std::unique_ptr<QApplication> application;
};

[[maybe_unused]] const testing::Environment* const offscreen =
    testing::AddGlobalTestEnvironment(new QtOffscreen);

} // namespace
