#pragma once

#include <tamber/graph/tbScene.h>
#include <tamber/graph/tbiPointerMap.h>

// An ordered list of nodes that a scene calls directly; it knows at once whether it holds a node. A removal leaves a
// hole, and holes are closed when they are as many as the nodes.
class tbiDirectCallList
{
public:
    bool contains(const tbGroup* node) const { return places.find(node) >= 0; }
    /// False when the node is there already, and when memory is out.
    bool add(tbGroup* node);
    /// False for a stranger.
    bool remove(tbGroup* node);
    /// All nodes in order, and nulls.
    std::span<tbGroup* const> getNodes() const { return {nodes.begin(), std::size_t(nodes.getNum())}; }

private:
    void closeHoles();

    tbTList<tbGroup*> nodes;
    tbiPointerMap places;
    int holes = 0;
};

// The emitters that play in a scene. A removal moves the last one into the gap.
class tbiPlayingList
{
public:
    int getNum() const { return emitters.getNum(); }
    tbEmitter* operator[](int i) const { return emitters[i]; }
    /// False when the emitter is there already.
    bool add(tbEmitter* emitter);
    /// False for a stranger.
    bool remove(tbEmitter* emitter);

private:
    tbTList<tbEmitter*> emitters;
    tbiPointerMap places;
};

// The lists of one scene. Nodes and emitters are not referenced.
class tbiSceneLists : public tbAllocated<tbiSceneLists>
{
public:
    tbiDirectCallList directCalls[tbScene::NUM_DIRECT_CALLS];
    tbiPlayingList playing;
};

// The lists of all scenes together. A node knows in how many it stands, so that one in none costs nothing. They change
// under the type lock, because a dying node or emitter looks for itself in the lists of every scene.
class tbiDirectCalls
{
public:
    static void add(tbScene* scene, int kind, tbGroup* node);
    static void remove(tbScene* scene, int kind, tbGroup* node);
    /// Takes the node out of the lists of every scene at the root above `parent`.
    static void removeAbove(tbGroup* parent, tbGroup* node);
    /// Takes a dying node out of the lists of all scenes.
    static void forget(tbGroup* node);
    /// A dying scene: its nodes do not count its lists any more.
    static void forget(tbScene* scene);

    static void addEmitter(tbScene* scene, tbEmitter* emitter);
    static void removeEmitter(tbScene* scene, tbEmitter* emitter);
    static void forgetEmitter(tbEmitter* emitter);

private:
    /// Null when memory is out.
    static tbiSceneLists* makeLists(tbScene* scene);
};
