#include "tests/services/documents/DocumentFixture.h"

#include <csignal>
#include <random>
#include <sys/wait.h>
#include <unistd.h>

namespace volvelle::test {

namespace {

using SuddenEnds = Documents;

// Saves the two texts in turn, and writes a byte to the pipe before each save.
[[noreturn]] void saveForever(const std::filesystem::path& file, const std::string& one,
                              const std::string& other, int outlet)
{
    const auto document = std::make_shared<PlainDocument>(file);
    document->open();
    for (bool isOne = true; write(outlet, "s", 1) == 1; isOne = !isOne) {
        document->words = isOne ? one : other;
        document->save();
    }
    _exit(0);
}

TEST_F(SuddenEnds, AProcessThatIsKilledWhileItSavesLeavesTheOldOrTheNewFileWhole)
{
    const std::string one(150'000, 'a');
    const std::string other(90'000, 'b');
    folder.write("a.mid", one);
    std::mt19937 engine(7);
    for (int round = 0; round < 200; ++round) {
        int ends[2] = {-1, -1};
        ASSERT_EQ(pipe(ends), 0);
        const pid_t child = fork();
        if (child == 0) {
            close(ends[0]);
            saveForever(file, one, other, ends[1]);
        }
        ASSERT_GT(child, 0);
        close(ends[1]);
        char step = 0;
        for (auto steps = 1 + engine() % 3; steps > 0; --steps) {
            ASSERT_EQ(read(ends[0], &step, 1), 1);
        }
        for (auto turns = engine() % 40'000; turns > 0; --turns) {
            getppid();
        }
        kill(child, SIGKILL);
        waitpid(child, nullptr, 0);
        close(ends[0]);
        const std::string left = contentOf(file);
        for (const std::string& name : folder.names()) {
            if (name != "a.mid") {
                std::filesystem::remove(folder.path / name);
            }
        }
        ASSERT_TRUE(left == one || left == other) << "round " << round << ": " << left.size() << " bytes";
    }
}

} // namespace

} // namespace volvelle::test
