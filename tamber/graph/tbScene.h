#pragma once

#include <tamber/kernel/tbRef.h>
#include <tamber/render/tbStyle.h>
#include <tamber/volume/tbSphere.h>

class tbEmitter;
class tbEvent;
class tbLock;
class tbSemaphore;
class tbiSceneLists;

// The root of a scene graph and the owner of the frame: update() splits shared instances, renews bounds, calls the
// registered nodes and updates the changed parts of the tree.
//
// Threads share the graph through the access operations: any number of queries at a time, or one edit. The frame
// update takes no lock; the caller brackets it as an edit.
class TB_API tbScene : public tbStyle
{
    TB_CLASS(tbScene, tbStyle)

public:
    /// When the scene calls a registered node directly.
    enum DIRECT_CALL : int
    {
        DIRECT_CAMERA_BEFORE = 0,
        DIRECT_CAMERA_AFTER = 1,
        DIRECT_LISTENER_BEFORE = 2,
        DIRECT_LISTENER_AFTER = 3,
        DIRECT_COLLIDER_BEFORE = 4,
        DIRECT_COLLIDER_AFTER = 5,
        DIRECT_UPDATE_BEFORE = 6,
        DIRECT_UPDATE_AFTER = 7
    };
    static constexpr int NUM_DIRECT_CALLS = 8;

    tbScene();
    tbScene(const tbScene& other);
    tbScene& operator=(const tbScene& other);

    tbTravContext* getTravContext() const { return travContext.get(); }
    /// Triggered before and after each frame update, with the scene as initiator.
    tbEvent* getPreUpdateEvent() const { return preUpdateEvent.get(); }
    tbEvent* getPostUpdateEvent() const { return postUpdateEvent.get(); }
    /// Bounds of the whole scene, as of the last bounds pass.
    const tbSphere* getVolume() const { return &volume; }
    int getNumPlayingEmitters() const;
    /// Null outside 0..getNumPlayingEmitters() - 1. Removal moves the last emitter into the gap.
    tbEmitter* getPlayingEmitter(int i) const;

    /// The frame update.
    void update();
    /// The bounds pass alone.
    void updateFences();

    virtual void setTravContext(tbTravContext* context);
    /// Registers a node, once per kind and in this order. It is not referenced: it leaves the lists when it is
    /// detached or destroyed. Other kinds than 0..7 are ignored.
    virtual void addDirectCall(DIRECT_CALL kind, tbGroup* node);
    virtual void removeDirectCall(DIRECT_CALL kind, tbGroup* node);
    /// Waits for the last query and the current edit, and keeps others out until releaseFromMods().
    virtual void acquireForMods();
    virtual void releaseFromMods();
    /// Both: whether the access lock is free now. Open queries do not hold it, and nothing is taken.
    virtual bool availableForMods();
    /// Waits for the current edit; further queries may come in, edits wait.
    virtual void acquireForQuery();
    virtual void releaseFromQuery();
    virtual bool availableForQuery();

    using tbStyle::apply;
    using tbStyle::update;
    using tbStyle::updateFences;
    tbBase* createCopy() const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    void applyDirect(tbCollider* collider, bool before) const override;
    void applyDirect(tbListener* listener, bool before) const override;
    void applyDirect(tbCamera* camera, bool before) const override;

protected:
    ~tbScene() override;

    tbGroup* copyGroup() const override;
    tbGroup* cloneGroup() const override;
    /// Empty: a scene that is placed under another node raises no flags there.
    void addedTo(tbGroup* parent) override;
    void copy(const tbScene& other);
    void clone(const tbScene& other);

private:
    friend class tbEmitter;
    friend class tbiDirectCalls;

    void initMembers();
    void boundsPass();
    bool isAccessFree() const;
    /// An emitter stands in the list once; a stranger is ignored on removal.
    void addPlayingEmitter(tbEmitter* emitter);
    void removePlayingEmitter(tbEmitter* emitter);
    /// Takes an emitter out of the list of every scene that holds it.
    static void forgetEmitter(tbEmitter* emitter);

    int queryCount = 0;
    bool editing = false;
    bool editorWaits = false; // an editor has given up its turn until the last query ends
    tbRef<tbLock> accessLock;
    tbRef<tbSemaphore> modsSemaphore; // whose turn it is to edit
    tbRef<tbTravContext> travContext;
    tbRef<tbEvent> preUpdateEvent;
    tbRef<tbEvent> postUpdateEvent;
    tbiSceneLists* lists = nullptr; // made with the first entry of one of them
    tbSphere volume;
};
