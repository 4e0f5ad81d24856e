#include "app/shell/OneInstance.h"

#include "tests/support/TemporaryFolder.h"

#include <QLocalServer>
#include <QLocalSocket>
#include <QLockFile>
#include <QSysInfo>
#include <QTest>

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <sys/socket.h>
#include <thread>

namespace volvelle::test {
namespace {

struct OneInstanceTest : testing::Test {
    using Start = OneInstance::Start;

    // How a second start ends, in a thread of its own as if it were a process.
    Start startAgain(const QStringList& files) const
    {
        std::atomic<bool> isDone{false};
        Start result = Start::first;
        std::thread second([&] {
            result = OneInstance(name).begin(files, [](const QStringList&) {});
            isDone = true;
        });
        EXPECT_TRUE(QTest::qWaitFor([&] { return isDone.load(); }, 30'000));
        second.join();
        return result;
    }

    // The first one in name: what it does with a message is for a test to say.
    struct Silent {
        explicit Silent(const QString& place) : lock(place + ".lock")
        {
            EXPECT_TRUE(lock.tryLock(0));
            EXPECT_TRUE(server.listen(place));
        }

        QLockFile lock;
        QLocalServer server;
    };

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
    ASSERT_EQ(first.begin({"/own.mid"}, keep()), Start::first);
    EXPECT_EQ(startAgain({"/a.mid", "/b c.mid"}), Start::handedOver);
    EXPECT_EQ(startAgain({}), Start::handedOver);
    EXPECT_TRUE(QTest::qWaitFor([&] { return received.size() == 2; }));
    EXPECT_EQ(received, (QStringList{"/a.mid /b c.mid", ""}));
}

TEST_F(OneInstanceTest, BeginsAfterOneThatEnded)
{
    {
        OneInstance first(name);
        ASSERT_EQ(first.begin({}, keep()), Start::first);
    }
    OneInstance second(name);
    EXPECT_EQ(second.begin({}, keep()), Start::first);
    EXPECT_EQ(startAgain({}), Start::handedOver);
}

TEST_F(OneInstanceTest, BeginsWhereOneThatWasKilledLeftItsFiles)
{
    folder.write("one", "");
    folder.write("one.lock", "999999999\nvolvelle\n" + QSysInfo::machineHostName().toStdString() + "\n");
    OneInstance first(name);
    ASSERT_EQ(first.begin({}, keep()), Start::first);
    EXPECT_EQ(startAgain({"/a.mid"}), Start::handedOver);
}

TEST_F(OneInstanceTest, IsOneOfTenThatStartAtOnce)
{
    std::atomic<int> done{0};
    std::atomic<int> began{0};
    std::vector<std::thread> starts;
    std::vector<std::unique_ptr<OneInstance>> instances;
    OneInstance first(name);
    ASSERT_EQ(first.begin({}, keep()), Start::first);
    for (int i = 0; i < 9; ++i) {
        starts.emplace_back([&, i] {
            OneInstance instance(name);
            const Start start = instance.begin({QString("/%1.mid").arg(i)}, [](const QStringList&) {});
            began += start != Start::handedOver ? 1 : 0;
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
    ASSERT_EQ(first.begin({}, keep()), Start::first);
    EXPECT_EQ(startAgain({"/a.mid"}), Start::handedOver);
}

TEST_F(OneInstanceTest, LetsAnotherBeginBeforeItsLifeIsOver)
{
    OneInstance first(name);
    ASSERT_EQ(first.begin({}, keep()), Start::first);
    first.end();
    EXPECT_EQ(startAgain({}), Start::first);
}

TEST_F(OneInstanceTest, TakesMoreThanACommandLineHolds)
{
    QStringList files;
    for (int i = 0; i < 5000; ++i) {
        files << "file:///home/" + QString("%D0%96").repeated(240) + QString("/%1.mid").arg(i);
    }
    QStringList taken;
    OneInstance first(name);
    ASSERT_EQ(first.begin({}, [&](const QStringList& more) { taken = more; }), Start::first);
    EXPECT_EQ(startAgain(files), Start::handedOver);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !taken.isEmpty(); }));
    EXPECT_TRUE(taken == files) << taken.size();
}

TEST_F(OneInstanceTest, TakesNamesOfAnyLettersAndNone)
{
    OneInstance first(name);
    QStringList taken;
    ASSERT_EQ(first.begin({}, [&](const QStringList& more) { taken = more; }), Start::first);
    EXPECT_EQ(startAgain({"", "Grün 𝄞", ""}), Start::handedOver);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !taken.isEmpty(); }));
    EXPECT_EQ(taken, (QStringList{"", "Grün 𝄞", ""}));
}

TEST_F(OneInstanceTest, RefusesAMessageThatIsTooLong)
{
    OneInstance first(name);
    ASSERT_EQ(first.begin({}, keep()), Start::first);
    QLocalSocket socket;
    socket.connectToServer(name);
    ASSERT_TRUE(QTest::qWaitFor([&] { return socket.state() == QLocalSocket::ConnectedState; }));
    socket.write("\x7F\xFF\xFF\xFF", 4);
    EXPECT_TRUE(QTest::qWaitFor([&] { return socket.bytesAvailable() > 0; }));
    EXPECT_EQ(socket.readAll(), "-");
    EXPECT_TRUE(QTest::qWaitFor([&] { return socket.state() == QLocalSocket::UnconnectedState; }));
    EXPECT_TRUE(received.isEmpty());
    EXPECT_EQ(startAgain({"/a.mid"}), Start::handedOver);
}

TEST_F(OneInstanceTest, IsNoSecondProgramWhereTheFirstRefuses)
{
    Silent first(name);
    QObject::connect(&first.server, &QLocalServer::newConnection, &first.server, [&] {
        QLocalSocket* const socket = first.server.nextPendingConnection();
        socket->write("-");
        socket->disconnectFromServer();
    });
    EXPECT_EQ(startAgain({"/a.mid"}), Start::refused);
}

TEST_F(OneInstanceTest, IsNoSecondProgramWhereTheFirstBreaksOff)
{
    Silent first(name);
    int asked = 0;
    QObject::connect(&first.server, &QLocalServer::newConnection, &first.server, [&] {
        ++asked;
        first.server.nextPendingConnection()->abort();
    });
    EXPECT_EQ(startAgain({"/a.mid"}), Start::refused);
    EXPECT_GT(asked, 1);
}

TEST_F(OneInstanceTest, BeginsWhereTheFirstHangs)
{
    const Silent first(name);
    EXPECT_EQ(startAgain({"/a.mid"}), Start::first);
}

TEST_F(OneInstanceTest, DropsTheFilesOfOneThatWentOnWithoutIt)
{
    OneInstance first(name);
    ASSERT_EQ(first.begin({}, keep()), Start::first);
    Start late = Start::handedOver;
    std::thread second([&] { late = OneInstance(name).begin({"/late.mid"}, [](const QStringList&) {}); });
    second.join(); // while the first one is at work
    EXPECT_EQ(late, Start::first);
    EXPECT_EQ(startAgain({"/a.mid"}), Start::handedOver);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !received.isEmpty(); }));
    EXPECT_EQ(received, QStringList{"/a.mid"});
}

TEST_F(OneInstanceTest, DropsTheFilesOfOneThatTakesNoAnswer)
{
    OneInstance first(name);
    ASSERT_EQ(first.begin({}, keep()), Start::first);
    QLocalSocket socket;
    socket.connectToServer(name);
    ASSERT_TRUE(QTest::qWaitFor([&] { return socket.state() == QLocalSocket::ConnectedState; }));
    socket.write(QByteArray("\0\0\0\7/a.mid\0", 11));
    ASSERT_TRUE(socket.flush());
    ASSERT_EQ(shutdown(static_cast<int>(socket.socketDescriptor()), SHUT_RD), 0);
    EXPECT_TRUE(QTest::qWaitFor([&] { return socket.state() == QLocalSocket::UnconnectedState; }));
    EXPECT_EQ(startAgain({"/b.mid"}), Start::handedOver);
    EXPECT_TRUE(QTest::qWaitFor([&] { return !received.isEmpty(); }));
    EXPECT_EQ(received, QStringList{"/b.mid"});
}

TEST_F(OneInstanceTest, BeginsWhereNoneCanListen)
{
    OneInstance nowhere(QString::fromStdString((folder.path / "missing/one").string()));
    EXPECT_EQ(nowhere.begin({}, keep()), Start::first);
}

TEST(OneInstanceNameTest, IsOneForAllScreensOfADisplay)
{
    const QByteArray before = qgetenv("DISPLAY");
    const QByteArray wayland = qgetenv("WAYLAND_DISPLAY");
    unsetenv("WAYLAND_DISPLAY");
    const auto nameAt = [](const char* display) {
        setenv("DISPLAY", display, 1);
        return OneInstance::usualName();
    };
    EXPECT_EQ(nameAt(":97.0"), nameAt(":97"));
    EXPECT_EQ(nameAt("far.example.com:97.1"), nameAt("far.example.com:97"));
    EXPECT_NE(nameAt(":97"), nameAt(":98"));
    EXPECT_NE(nameAt("10.0.0.1:97"), nameAt("10.0.0.2:97"));
    before.isNull() ? unsetenv("DISPLAY") : setenv("DISPLAY", before, 1);
    if (!wayland.isNull()) {
        setenv("WAYLAND_DISPLAY", wayland, 1);
    }
}

} // namespace
} // namespace volvelle::test
