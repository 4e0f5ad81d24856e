#include "app/circle/GraphicsContext.h"
#include "app/screens/CirclePainter.h"
#include "app/screens/DiscPainter.h"

#include <benchmark/benchmark.h>

#include <QGuiApplication>

#include <random>

namespace {

using namespace volvelle;

constexpr double beats = 256.0;

struct Notes : MIDICircleViewDelegate {
    std::vector<std::shared_ptr<AUMIDIEventEx>> events;

    explicit Notes(int count)
    {
        std::mt19937 draws(1);
        for (int i = 0; i < count; ++i) {
            const std::vector<std::uint8_t> bytes{static_cast<std::uint8_t>(0x90 + draws() % 7),
                                                  static_cast<std::uint8_t>(30 + draws() % 70),
                                                  static_cast<std::uint8_t>(40 + draws() % 88)};
            events.push_back(std::make_shared<AUMIDIEventEx>(bytes));
            events.back()->beats = beats * i / count;
            events.back()->duration = static_cast<double>(1 + draws() % 8) / 4.0;
        }
    }

    std::vector<std::shared_ptr<AUMIDIEventEx>> getEvents() override { return events; }

    double getBeatCount() override { return beats; }
};

// Frames of a playing circle, 30 a second at 120 beats a minute. Arguments: notes, pixels of the side.
struct Playing {
    explicit Playing(const benchmark::State& state)
        : notes(static_cast<int>(state.range(0))),
          side(static_cast<int>(state.range(1))),
          image(side, side, QImage::Format_ARGB32_Premultiplied),
          frame{0.0, 0.0, side * 1.0, side * 1.0}
    {
        image.fill(Qt::black);
        circle.makeColors();
        circle.delegate = &notes;
    }

    void advance()
    {
        circle.currentBeat += 2.0 / 30.0;
        if (circle.currentBeat >= beats) {
            circle.currentBeat = 0.0;
        }
    }

    Notes notes;
    int side;
    QImage image;
    CGRect frame;
    MIDICircleViewBase circle;
};

void naive(benchmark::State& state)
{
    Playing playing(state);
    for (auto _ : state) {
        GraphicsContext context;
        const GraphicsContext::Current current(context);
        playing.circle.drawSymbolMain(playing.frame);
        QPainter painter(&playing.image);
        CirclePainter::paint(painter, context.drawing);
        playing.advance();
    }
}

void cached(benchmark::State& state)
{
    Playing playing(state);
    CirclePainter kept;
    {
        QPainter painter(&playing.image);
        kept.paint(painter, playing.circle, playing.frame, ResizingBehavior::fitInside);
    }
    for (auto _ : state) {
        QPainter painter(&playing.image);
        kept.paint(painter, playing.circle, playing.frame, ResizingBehavior::fitInside);
        playing.advance();
    }
}

// The disc below, and the circle on it.
void disc(benchmark::State& state)
{
    Playing playing(state);
    DiscContent content;
    content.beats = beats;
    content.isPlaying = true;
    for (int bar = 0; bar < 64; bar += 4) {
        content.chords.push_back({bar * 4.0, "Am7"});
    }
    CirclePainter kept;
    DiscPainter below;
    {
        QPainter painter(&playing.image);
        kept.paint(painter, playing.circle, DiscPainter::canvas(content, playing.side),
                   ResizingBehavior::fitInside);
    }
    for (auto _ : state) {
        QPainter painter(&playing.image);
        content.position = playing.circle.currentBeat;
        below.paint(painter, content, playing.side, Theme::dark);
        kept.paint(painter, playing.circle, DiscPainter::canvas(content, playing.side),
                   ResizingBehavior::fitInside);
        playing.advance();
    }
}

void sizes(benchmark::internal::Benchmark* suite)
{
    suite->ArgNames({"notes", "side"})->Unit(benchmark::kMillisecond);
    for (const int side : {800, 1600}) {
        for (const int notes : {200, 2'000, 10'000}) {
            suite->Args({notes, side});
        }
    }
}

BENCHMARK(naive)->Apply(sizes);
BENCHMARK(cached)->Apply(sizes);
BENCHMARK(disc)->Apply(sizes);

} // namespace

int main(int argc, char** argv)
{
    qputenv("QT_QPA_PLATFORM", "offscreen");
    const QGuiApplication application(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
}
