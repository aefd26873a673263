// What sound costs in a scene with ten thousand emitters of which one in a hundred plays.
#include <plugins/null/tbNullListener.h>
#include <tamber/audio/tbEmitter.h>
#include <tamber/graph/tbScene.h>
#include <tamber/graph/tbTransform.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/trav/tbTravContext.h>

#include <benchmark/benchmark.h>

#include <vector>

namespace
{

constexpr int NUM = 10'000;
constexpr int WIDTH = 100;

// A group that walks into emitters visit.
class VisitedGroup : public tbGroup
{
public:
    VisitedGroup() { addTravFlags(TF_HAS_EMITTER); }
};

class Soundscape
{
public:
    // A hundred transforms with a hundred emitters, or plain groups, each. One emitter in `playEach` plays: in
    // every part of the graph, or all below as few transforms as hold them.
    explicit Soundscape(bool emitters, int playEach = 0, bool together = false)
    {
        for (int i = 0; i < WIDTH; ++i)
        {
            auto* place = new tbTransform;
            place->setXYZ(float(i), 0, 0);
            scene->addChild(place);
            for (int k = 0; k < NUM / WIDTH; ++k)
            {
                if (!emitters)
                {
                    place->addChild(new VisitedGroup);
                    continue;
                }
                auto* emitter = new tbEmitter;
                place->addChild(emitter);
                all.push_back(emitter);
                if (playEach > 0 && (together ? i : k) % playEach == 0)
                    emitter->play();
            }
        }
        scene->update();
    }

    const tbRef<tbScene> scene{new tbScene};
    std::vector<tbEmitter*> all;
};

void listen(benchmark::State& state, const Soundscape& sounds, unsigned travMask)
{
    const tbRef<tbNullListener> listener(new tbNullListener);
    if (travMask != 0)
        listener->getTravContext()->setTravMask(travMask);
    for (auto _ : state)
        listener->listen(sounds.scene.get());
    state.counters["heard"] = double(listener->getNumSounds());
    state.SetItemsProcessed(state.iterations() * NUM);
}

void onePercentPlaying(benchmark::State& state, bool together)
{
    listen(state, Soundscape(true, 100, together), 0);
}
BENCHMARK_CAPTURE(onePercentPlaying, everywhere, false);
BENCHMARK_CAPTURE(onePercentPlaying, inOnePlace, true);

// The same walk into every emitter, and over as many plain groups.
void allVisited(benchmark::State& state)
{
    listen(state, Soundscape(true, 100), tbGroup::TF_HAS_EMITTER);
}
BENCHMARK(allVisited);

void plainGroups(benchmark::State& state)
{
    listen(state, Soundscape(false), tbGroup::TF_HAS_EMITTER);
}
BENCHMARK(plainGroups);

void playAndStop(benchmark::State& state)
{
    const Soundscape sounds(true, 100);
    std::size_t i = 0;
    for (auto _ : state)
    {
        tbEmitter* emitter = sounds.all[i++ % NUM];
        emitter->play();
        emitter->stop();
    }
}
BENCHMARK(playAndStop);

// A frame in which a hundred emitters begin or end.
void frame(benchmark::State& state)
{
    const Soundscape sounds(true, 100);
    std::size_t i = 0;
    for (auto _ : state)
    {
        for (int k = 0; k < WIDTH; ++k)
        {
            tbEmitter* emitter = sounds.all[i++ * 7 % NUM];
            emitter->isPlaying() ? emitter->stop() : emitter->play();
        }
        sounds.scene->update();
    }
    state.counters["playing"] = double(sounds.scene->getNumPlayingEmitters());
}
BENCHMARK(frame);

} // namespace
