#include "services/audiograph/graph/AVAudioUnitEffect.h"
#include "tests/services/audiograph/Studio.h"
#include "tests/support/RealtimeGuard.h"

#include <array>
#include <condition_variable>
#include <cstdio>
#include <cstdlib>
#include <fcntl.h>
#include <mutex>
#include <new>
#include <pthread.h>
#include <semaphore.h>
#include <shared_mutex>
#include <sys/ioctl.h>
#include <sys/mman.h>
#include <termios.h>
#include <time.h>
#include <unistd.h>

namespace volvelle::test {

namespace {

void renderGuarded(AVAudioEngine& engine, int blocks)
{
    std::array<float, 777> left{};
    std::array<float, 777> right{};
    const RealtimeGuard guard;
    for (int i = 0; i < blocks; ++i) {
        engine.render(left.data(), right.data(), 1 + i * 131 % 777);
    }
}

Song busySong()
{
    Song song;
    song.tempo(0.0, 100.0).tempo(3.0, 180.0);
    for (int i = 0; i < 400; ++i) {
        song.note(i * 0.05, i % 16, 30 + i % 70, 100, 0.3).message(i * 0.05, 0xB0 | i % 16, 7, i % 128);
    }
    return song.exclusive(1.0, {0xF0, 1, 2, 3, 4, 0xF7});
}

TEST(Realtime, TheGuardStopsAnAllocationAndALock)
{
    if (!RealtimeGuard::isEffective()) {
        GTEST_SKIP() << "the sanitizers have allocators of their own";
    }
    EXPECT_DEATH(
        {
            const RealtimeGuard guard;
            std::vector<int> numbers(100);
            numbers[1] = rand();
            if (numbers[1] == -1) {
                std::abort();
            }
        },
        "malloc on a guarded thread");
    EXPECT_DEATH(
        {
            std::mutex mutex;
            const RealtimeGuard guard;
            const std::lock_guard lock(mutex);
        },
        "lock on a guarded thread");
}

struct Trapped {
    const char* name;
    void (*call)();
};

// Volatile, so that nothing is left out as useless.
std::mutex someMutex;
std::shared_mutex someSharedMutex;
std::condition_variable someCondition;
void* volatile somewhere = nullptr;
char someText[8] = "text\n";
pthread_mutex_t plainMutex = PTHREAD_MUTEX_INITIALIZER;
pthread_cond_t plainCondition = PTHREAD_COND_INITIALIZER;
sem_t someSemaphore{};
const timespec noTime{};
termios someSettings{};

const std::vector<Trapped> trappedCalls{
    Trapped{"aligned_alloc", [] { somewhere = ::operator new(64, std::align_val_t(64)); }},
    Trapped{"posix_memalign",
            [] {
                void* memory = nullptr;
                somewhere = posix_memalign(&memory, 64, 64) == 0 ? memory : nullptr;
            }},
    Trapped{"calloc", [] { somewhere = calloc(100, 3); }},
    Trapped{"realloc", [] { somewhere = realloc(somewhere, 300); }},
    Trapped{"pthread_mutex_trylock", [] { somewhere = someMutex.try_lock() ? &someMutex : nullptr; }},
    Trapped{"pthread_rwlock_wrlock", [] { someSharedMutex.lock(); }},
    Trapped{"pthread_rwlock_rdlock", [] { someSharedMutex.lock_shared(); }},
    Trapped{"pthread_rwlock_trywrlock",
            [] { somewhere = someSharedMutex.try_lock() ? &someMutex : nullptr; }},
    Trapped{"pthread_rwlock_tryrdlock",
            [] { somewhere = someSharedMutex.try_lock_shared() ? &someMutex : nullptr; }},
    Trapped{"pthread_cond_broadcast", [] { someCondition.notify_all(); }},
    Trapped{"pthread_cond_signal", [] { someCondition.notify_one(); }},
    Trapped{"pthread_cond_wait", [] { pthread_cond_wait(&plainCondition, &plainMutex); }},
    Trapped{"pthread_cond_timedwait", [] { pthread_cond_timedwait(&plainCondition, &plainMutex, &noTime); }},
    Trapped{"pthread_cond_clockwait",
            [] { pthread_cond_clockwait(&plainCondition, &plainMutex, CLOCK_MONOTONIC, &noTime); }},
    Trapped{"pthread_mutex_timedlock", [] { pthread_mutex_timedlock(&plainMutex, &noTime); }},
    Trapped{"pthread_mutex_clocklock",
            [] { pthread_mutex_clocklock(&plainMutex, CLOCK_MONOTONIC, &noTime); }},
    Trapped{"sem_wait", [] { sem_wait(&someSemaphore); }},
    Trapped{"sem_timedwait", [] { sem_timedwait(&someSemaphore, &noTime); }},
    Trapped{"nanosleep", [] { nanosleep(&noTime, nullptr); }},
    Trapped{"clock_nanosleep", [] { clock_nanosleep(CLOCK_MONOTONIC, 0, &noTime, nullptr); }},
    Trapped{"mmap", [] { somewhere = mmap(nullptr, 4096, PROT_READ, MAP_PRIVATE | MAP_ANONYMOUS, -1, 0); }},
    Trapped{"munmap", [] { somewhere = someText + munmap(someText, 0); }},
    Trapped{"tcgetattr", [] { somewhere = someText + tcgetattr(0, &someSettings); }},
    Trapped{"ioctl", [] { somewhere = someText + ioctl(0, TIOCGWINSZ, someText); }},
    Trapped{"openat", [] { somewhere = someText + openat(AT_FDCWD, "/dev/null", O_RDONLY); }},
    Trapped{"pread", [] { somewhere = someText + pread(0, someText, 0, 0); }},
    Trapped{"close", [] { somewhere = someText + close(-1); }},
    Trapped{"fread", [] { somewhere = someText + std::fread(someText, 1, 0, stdin); }},
    Trapped{"fopen", [] { somewhere = std::fopen("/dev/null", "r"); }},
    Trapped{"open", [] { somewhere = someText + open("/dev/null", O_RDONLY); }},
    Trapped{"read", [] { somewhere = someText + read(0, someText, 0); }},
    Trapped{"write", [] { somewhere = someText + write(1, someText, 0); }},
    Trapped{"fwrite", [] { std::fwrite(someText, 1, 5, stdout); }},
    Trapped{"fputs", [] { std::fputs(someText, stdout); }}};

TEST(Realtime, TheGuardStopsEachCallThatMayWait)
{
    if (!RealtimeGuard::isEffective()) {
        GTEST_SKIP() << "the sanitizers have allocators of their own";
    }
    for (const Trapped& trapped : trappedCalls) {
        EXPECT_DEATH(
            {
                const RealtimeGuard guard;
                trapped.call();
            },
            std::string("^") + trapped.name + "(64)? on a guarded thread");
    }
}

TEST(Realtime, RenderingAllocatesNothingAndTakesNoLock)
{
    Studio studio;
    const auto& mixer = studio.engine->mainMixerNode();
    const auto limiter = AVAudioUnitEffect::make(limiterComponent);
    const auto slow = nodeOf<SineUnit>(440.0, 0.9, 44100.0);
    const auto fast = nodeOf<SineUnit>(440.0, 0.9, 96000.0);
    const std::vector<std::shared_ptr<AVAudioNode>> nodes{limiter, slow, fast};
    for (const auto& node : nodes) {
        ASSERT_EQ(studio.engine->attachNode(node), noErr);
    }
    ASSERT_EQ(studio.engine->connect(slow, mixer, 0, 1), noErr);
    ASSERT_EQ(studio.engine->connect(fast, mixer, 0, 2), noErr);
    ASSERT_EQ(studio.engine->connect(mixer, limiter, 0, 0), noErr);
    ASSERT_EQ(studio.engine->connect(limiter, studio.engine->outputNode(), 0, 0), noErr);
    studio.load(busySong());
    studio.start();
    renderGuarded(*studio.engine, 300);
    studio.sequencer->setCurrentPositionInBeats(4.0);
    studio.sequencer->setRate(3.0F);
    renderGuarded(*studio.engine, 100);
    studio.load(busySong());
    ASSERT_EQ(studio.engine->disconnectNodeOutput(fast), noErr);
    renderGuarded(*studio.engine, 100);
    EXPECT_EQ(MusicDeviceMIDIEvent(studio.recorder, 0x90, 60, 100, 0), noErr);
    studio.sequencer->stop();
    renderGuarded(*studio.engine, 10);
    studio.start(2.0);
    renderGuarded(*studio.engine, 10);
    studio.sequencer.reset();
    renderGuarded(*studio.engine, 10);
    EXPECT_EQ(studio.recorder->sounding(), 1); // the one from outside
}

} // namespace

} // namespace volvelle::test
