#include "tbiDirectCalls.h"

#include <tamber/graph/tbiLocalStack.h>
#include <tamber/graph/tbiPointerSet.h>
#include <tamber/kernel/tbiLocks.h>
#include <tamber/thread/tbiLockGuard.h>

bool tbiDirectCallList::add(tbGroup* node)
{
    if (contains(node))
        return false;
    const int place = nodes.add(node);
    if (place < 0)
        return false;
    if (places.set(node, place))
        return true;
    nodes.removeLast();
    return false;
}

bool tbiDirectCallList::remove(tbGroup* node)
{
    const int place = places.find(node);
    if (place < 0)
        return false;
    places.remove(node);
    nodes[place] = nullptr;
    if (++holes * 2 > nodes.getNum())
        closeHoles();
    return true;
}

void tbiDirectCallList::closeHoles()
{
    int to = 0;
    for (tbGroup* node : nodes)
    {
        if (!node)
            continue;
        places.set(node, to);
        nodes[to++] = node;
    }
    while (nodes.getNum() > to)
        nodes.removeLast();
    holes = 0;
}

bool tbiPlayingList::add(tbEmitter* emitter)
{
    if (places.find(emitter) >= 0)
        return false;
    const int place = emitters.add(emitter);
    if (place < 0)
        return false;
    if (places.set(emitter, place))
        return true;
    emitters.removeLast();
    return false;
}

bool tbiPlayingList::remove(tbEmitter* emitter)
{
    const int place = places.find(emitter);
    if (place < 0)
        return false;
    places.remove(emitter);
    emitters.removeIndex(place);
    if (place < emitters.getNum())
        places.set(emitters[place], place);
    return true;
}

namespace
{

// Emitters in the lists of all scenes: none playing costs one load.
constinit std::atomic<int> numPlaying{0};

template <class Visit>
void forEachRoot(tbGroup* node, Visit visit)
{
    tbiLocalStack<tbGroup*> waiting;
    tbiPointerSet seen;
    waiting.push(node);
    while (!waiting.isEmpty())
    {
        tbGroup* next = waiting.pop();
        const auto above = next->getParents();
        if (above.empty())
            visit(next);
        for (tbGroup* parent : above)
            if (above.size() == 1 || seen.addUnique(parent))
                waiting.push(parent);
    }
}

template <class Visit>
void forEachScene(Visit visit)
{
    const tbiLockGuard guard(tbiLocks::type);
    for (int i = tbScene::getNum(true) - 1; i >= 0; --i)
        if (tbScene* scene = tbScene::get(i, true))
            visit(scene);
}

} // namespace

tbiSceneLists* tbiDirectCalls::makeLists(tbScene* scene)
{
    if (!scene->lists)
        scene->lists = new tbiSceneLists;
    return scene->lists;
}

void tbiDirectCalls::add(tbScene* scene, int kind, tbGroup* node)
{
    const tbiLockGuard guard(tbiLocks::type);
    tbiSceneLists* lists = makeLists(scene);
    if (lists && lists->directCalls[kind].add(node))
        ++node->directCalls;
}

void tbiDirectCalls::remove(tbScene* scene, int kind, tbGroup* node)
{
    const tbiLockGuard guard(tbiLocks::type);
    if (scene->lists && scene->lists->directCalls[kind].remove(node))
        --node->directCalls;
}

void tbiDirectCalls::removeAbove(tbGroup* parent, tbGroup* node)
{
    forEachRoot(parent,
                [node](tbGroup* root)
                {
                    if (!root->isOfType(tbScene::getClassType()))
                        return;
                    for (int kind = 0; kind < tbScene::NUM_DIRECT_CALLS; ++kind)
                        static_cast<tbScene*>(root)->removeDirectCall(tbScene::DIRECT_CALL(kind), node);
                });
}

void tbiDirectCalls::forget(tbGroup* node)
{
    forEachScene(
        [node](tbScene* scene)
        {
            for (int kind = 0; kind < tbScene::NUM_DIRECT_CALLS && node->directCalls > 0; ++kind)
                remove(scene, kind, node);
        });
}

void tbiDirectCalls::forget(tbScene* scene)
{
    const tbiLockGuard guard(tbiLocks::type);
    if (!scene->lists)
        return;
    for (tbiDirectCallList& list : scene->lists->directCalls)
        for (tbGroup* node : list.getNodes())
            if (node)
                --node->directCalls;
    numPlaying.fetch_sub(scene->lists->playing.getNum(), std::memory_order_relaxed);
}

void tbiDirectCalls::addEmitter(tbScene* scene, tbEmitter* emitter)
{
    const tbiLockGuard guard(tbiLocks::type);
    tbiSceneLists* lists = makeLists(scene);
    if (lists && lists->playing.add(emitter))
        numPlaying.fetch_add(1, std::memory_order_relaxed);
}

void tbiDirectCalls::removeEmitter(tbScene* scene, tbEmitter* emitter)
{
    const tbiLockGuard guard(tbiLocks::type);
    if (scene->lists && scene->lists->playing.remove(emitter))
        numPlaying.fetch_sub(1, std::memory_order_relaxed);
}

void tbiDirectCalls::forgetEmitter(tbEmitter* emitter)
{
    if (numPlaying.load(std::memory_order_relaxed) > 0)
        forEachScene([emitter](tbScene* scene) { removeEmitter(scene, emitter); });
}
