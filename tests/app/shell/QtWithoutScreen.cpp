#include "tests/app/shell/PrivateBus.h"
#include "tests/support/TemporaryFolder.h"

#include <QApplication>

#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>

namespace {

// Qt without a screen, on a bus and in folders of its own, around all tests of the program.
class QtWithoutScreen : public testing::Environment {
public:
    void SetUp() override
    {
        for (const char* variable : {"HOME", "XDG_CONFIG_HOME", "XDG_DATA_HOME", "XDG_STATE_HOME",
                                     "XDG_CACHE_HOME", "XDG_RUNTIME_DIR"}) {
            setenv(variable, home.path.c_str(), 1);
        }
        setenv("QT_QPA_PLATFORM", "offscreen", 1);
        ASSERT_TRUE(volvelle::test::beginPrivateBus());
        application = std::make_unique<QApplication>(count, arguments);
    }

    void TearDown() override
    {
        application.reset();
        volvelle::test::endPrivateBus();
    }

private:
    volvelle::test::TemporaryFolder home;
    int count = 1;
    char name[10] = "shelltest";
    char* arguments[2] = {name, nullptr};
    std::unique_ptr<QApplication> application;
};

[[maybe_unused]] const testing::Environment* const surroundings =
    testing::AddGlobalTestEnvironment(new QtWithoutScreen);

} // namespace
