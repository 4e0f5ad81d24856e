#include "tests/app/screens/ScreensFixture.h"

#include <QSignalSpy>

namespace volvelle::test {
namespace {

struct ThumbnailsTest : Screens {
    Thumbnails::Key keyOf(const std::string& name) const
    {
        Thumbnails::Key key{folder / name, 1};
        key.size = static_cast<std::int64_t>(std::filesystem::file_size(key.file));
        key.side = 64;
        return key;
    }

    // Asks until it is there.
    static Thumbnails::Thumbnail wait(Thumbnails& of, const Thumbnails::Key& key)
    {
        EXPECT_TRUE(QTest::qWaitFor([&] { return of.find(key).has_value(); }, 30'000));
        return of.find(key).value_or(Thumbnails::Thumbnail());
    }

    std::size_t kept() const
    {
        const std::filesystem::directory_iterator files(home.path / "tiles");
        return static_cast<std::size_t>(std::distance(begin(files), end(files)));
    }
};

TEST_F(ThumbnailsTest, AreMadeOnceAndKept)
{
    writeIdea("Slow tide.mid");
    const auto key = keyOf("Slow tide.mid");
    QSignalSpy made(&thumbnails, &Thumbnails::made);
    EXPECT_FALSE(thumbnails.find(key).has_value());
    const auto first = wait(thumbnails, key);
    EXPECT_EQ(made.count(), 1);
    EXPECT_EQ(first.notes, 3);
    EXPECT_EQ(first.disc.width(), 64);
    EXPECT_EQ(kept(), 1U);
    std::filesystem::remove(key.file);
    Thumbnails later(home.path / "tiles");
    const auto second = wait(later, key);
    EXPECT_EQ(second.notes, 3);
    EXPECT_EQ(second.disc.convertToFormat(QImage::Format_ARGB32),
              first.disc.convertToFormat(QImage::Format_ARGB32));
}

TEST_F(ThumbnailsTest, AreMadeAnewForAnotherSizeAndTheme)
{
    writeIdea("Slow tide.mid");
    const auto key = keyOf("Slow tide.mid");
    std::vector<Thumbnails::Key> others(3, key);
    others[0].side = 65;
    others[1].ratio = 2.0;
    others[2].theme = Theme::light;
    for (const auto& other : others) {
        EXPECT_NE(other.name(), key.name());
    }
    EXPECT_EQ(wait(thumbnails, others[1]).disc.width(), 128);
}

TEST_F(ThumbnailsTest, TakeThePlaceOfThoseOfAnOlderState)
{
    writeIdea("Slow tide.mid");
    const auto key = keyOf("Slow tide.mid");
    EXPECT_EQ(wait(thumbnails, key).notes, 3);
    home.write("Documents/Volvelle/Slow tide.mid", "none");
    std::vector<Thumbnails::Key> later(3, key);
    later[0].modified = 2;
    later[1].nanoseconds = 1;
    later[2].size = 4;
    for (const auto& other : later) {
        EXPECT_EQ(wait(thumbnails, other).notes, -1);
        Thumbnails anew(home.path / "tiles");
        EXPECT_EQ(wait(anew, other).notes, -1);
    }
    EXPECT_EQ(kept(), 1U);
}

TEST_F(ThumbnailsTest, TheOldestGoWhereTooManyAreKept)
{
    const std::string large(30 << 20, 'x');
    const auto now = std::filesystem::file_time_type::clock::now();
    for (int age = 0; age < 4; ++age) {
        const auto file = home.write("tiles/" + std::to_string(age) + ".png", large);
        std::filesystem::last_write_time(file, now - std::chrono::hours(age + 1));
    }
    home.write("tiles/foreign.txt", "");
    Thumbnails anew(home.path / "tiles");
    EXPECT_TRUE(QTest::qWaitFor([&] { return kept() == 3; }, 10'000));
    EXPECT_TRUE(std::filesystem::exists(home.path / "tiles/0.png"));
    EXPECT_TRUE(std::filesystem::exists(home.path / "tiles/1.png"));
    EXPECT_TRUE(std::filesystem::exists(home.path / "tiles/foreign.txt"));
}

TEST_F(ThumbnailsTest, TellNoNumberOfAFileThatIsNone)
{
    home.write("Documents/Volvelle/Bad.mid", "none");
    EXPECT_EQ(wait(thumbnails, keyOf("Bad.mid")).notes, -1);
}

TEST_F(ThumbnailsTest, ShowNoNotesOfALargeFile)
{
    writeIdea("Slow tide.mid");
    auto key = keyOf("Slow tide.mid");
    key.size = 2 << 20;
    EXPECT_EQ(wait(thumbnails, key).notes, 3);
    ++key.size;
    const auto none = wait(thumbnails, key);
    EXPECT_EQ(none.notes, -1);
    EXPECT_EQ(none.disc.width(), 64);
}

TEST_F(ThumbnailsTest, ReplaceADamagedPicture)
{
    writeIdea("Slow tide.mid");
    const auto key = keyOf("Slow tide.mid");
    home.write(std::filesystem::path("tiles") / key.name().toStdString(), "damaged");
    EXPECT_EQ(wait(thumbnails, key).notes, 3);
}

TEST_F(ThumbnailsTest, ComeAlsoWhereNothingCanBeKept)
{
    writeIdea("Slow tide.mid");
    Thumbnails nowhere(std::filesystem::path{});
    EXPECT_EQ(wait(nowhere, keyOf("Slow tide.mid")).notes, 3);
    Thumbnails onAFile(home.write("file", "") / "tiles");
    EXPECT_EQ(wait(onAFile, keyOf("Slow tide.mid")).notes, 3);
}

// Of one track and as many notes as a file may hold.
std::string largestFile()
{
    std::string events("\0\x90\x3C\x64", 4);
    while (events.size() < (2U << 20) - 60) {
        events.append("\1\x3C\0\1\x3C\x64", 6);
    }
    events.append("\0\xFF\x2F\0", 4);
    std::string file("MThd\0\0\0\6\0\0\0\1\0\x60MTrk", 18);
    for (int shift = 24; shift >= 0; shift -= 8) {
        file += static_cast<char>(events.size() >> shift);
    }
    return file + events;
}

TEST_F(ThumbnailsTest, AreGivenUpInTheEnd)
{
    home.write("Documents/Volvelle/Large.mid", largestFile());
    const auto key = keyOf("Large.mid");
    {
        Thumbnails shortLived(home.path / "tiles");
        EXPECT_FALSE(shortLived.find(key).has_value());
    }
    EXPECT_EQ(kept(), 0U);
}

TEST_F(ThumbnailsTest, AllComeWhereAScreenAsksForMany)
{
    std::vector<Thumbnails::Key> keys;
    for (int i = 0; i < 150; ++i) {
        const std::string name = "Idea " + std::to_string(i) + ".mid";
        writeIdea(name);
        keys.push_back(keyOf(name));
    }
    QSignalSpy made(&thumbnails, &Thumbnails::made);
    for (const auto& key : keys) {
        thumbnails.find(key);
    }
    EXPECT_TRUE(QTest::qWaitFor([&] { return made.count() == 150; }, 60'000)) << made.count();
}

} // namespace
} // namespace volvelle::test
