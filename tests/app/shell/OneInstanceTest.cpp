#include "app/shell/OneInstance.h"

#include "tests/support/TemporaryFolder.h"

#include <QSysInfo>
#include <QTest>

#include <gtest/gtest.h>

#include <atomic>
#include <thread>

namespace volvelle::test {
namespace {

struct OneInstanceTest : testing::Test {
    // A second start, in a thread of its own as if it were a process; true where it is to go on.
    bool startAgain(const QStringList& files) const
    {
        std::atomic<int> result{-1};
        std::thread second(
            [&] { result = OneInstance(name).begin(files, [](const QStringList&) {}) ? 1 : 0; });
        EXPECT_TRUE(QTest::qWaitFor([&] { return result >= 0; }, 30'000));
        second.join();
        return result == 1;
    }

    OneInstance::Receive keep()
    {
        return [this](const QStringList& files) { received.append(files.join(' ')); };
    }

    TemporaryFolder folder;
    const QString name = QString::fromStdString((folder.path / "one").string());
    QStringList received;
};

TEST_F(OneInstanceTest, TakesTheFilesOfASecondStart)
{
    OneInstance first(name);
    ASSERT_TRUE(first.begin({"/own.mid"}, keep()));
    EXPECT_FALSE(startAgain({"/a.mid", "/b c.mid"}));
    EXPECT_FALSE(startAgain({}));
    EXPECT_TRUE(QTest::qWaitFor([&] { return received.size() == 2; }));
    EXPECT_EQ(received, (QStringList{"/a.mid /b c.mid", ""}));
}

TEST_F(OneInstanceTest, BeginsAfterOneThatEnded)
{
    {
        OneInstance first(name);
        ASSERT_TRUE(first.begin({}, keep()));
    }
    OneInstance second(name);
    EXPECT_TRUE(second.begin({}, keep()));
    EXPECT_FALSE(startAgain({}));
}

TEST_F(OneInstanceTest, BeginsWhereOneThatWasKilledLeftItsFiles)
{
    folder.write("one", "");
    folder.write("one.lock", "999999999\nvolvelle\n" + QSysInfo::machineHostName().toStdString() + "\n");
    OneInstance first(name);
    ASSERT_TRUE(first.begin({}, keep()));
    EXPECT_FALSE(startAgain({"/a.mid"}));
}

TEST_F(OneInstanceTest, IsOneOfTenThatStartAtOnce)
{
    std::atomic<int> done{0};
    std::atomic<int> began{0};
    std::vector<std::thread> starts;
    std::vector<std::unique_ptr<OneInstance>> instances;
    OneInstance first(name);
    ASSERT_TRUE(first.begin({}, keep()));
    for (int i = 0; i < 9; ++i) {
        starts.emplace_back([&, i] {
            OneInstance instance(name);
            began += instance.begin({QString("/%1.mid").arg(i)}, [](const QStringList&) {}) ? 1 : 0;
            ++done;
        });
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return done == 9; }, 60'000));
    for (std::thread& start : starts) {
        start.join();
    }
    EXPECT_EQ(began, 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return received.size() == 9; }));
    received.sort();
    EXPECT_EQ(received.front(), "/0.mid");
    EXPECT_EQ(received.back(), "/8.mid");
}

TEST_F(OneInstanceTest, TakesTheLockOfOneThatDiedWhileItMadeIt)
{
    folder.write("one.lock", "");
    OneInstance first(name);
    ASSERT_TRUE(first.begin({}, keep()));
    EXPECT_FALSE(startAgain({"/a.mid"}));
}

TEST_F(OneInstanceTest, LetsAnotherBeginBeforeItsLifeIsOver)
{
    OneInstance first(name);
    ASSERT_TRUE(first.begin({}, keep()));
    first.end();
    EXPECT_TRUE(startAgain({}));
}

TEST_F(OneInstanceTest, BeginsWhereNoneCanListen)
{
    OneInstance nowhere(QString::fromStdString((folder.path / "missing/one").string()));
    EXPECT_TRUE(nowhere.begin({}, keep()));
}

} // namespace
} // namespace volvelle::test
