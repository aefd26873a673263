#include "tbScene.h"

#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/kernel/tbTime.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/thread/tbEvent.h>
#include <tamber/thread/tbLock.h>
#include <tamber/thread/tbSemaphore.h>
#include <tamber/thread/tbThread.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbiScopes.h>

#include "tbiDirectCalls.h"
#include "tbiPropagation.h"

TB_DEFINE_NODE_CLASS(tbScene, tbStyle)

namespace
{

// Calls every node that stands in the list, as it was when the calls began, unless it has left the list since.
template <class Call>
void callDirectly(tbiSceneLists* lists, tbScene::DIRECT_CALL kind, Call call)
{
    if (!lists)
        return;
    tbiDirectCallList& list = lists->directCalls[kind];
    const tbiNodeSnapshot registered(list.getNodes());
    for (tbGroup* node : registered)
        if (list.contains(node))
            call(node);
}

bool isDirectCall(int kind)
{
    return kind >= 0 && kind < tbScene::NUM_DIRECT_CALLS;
}

} // namespace

tbScene::tbScene()
{
    initInstance();
    initMembers();
}

tbScene::tbScene(const tbScene& other) : tbStyle(other)
{
    initInstance();
    initMembers();
}

void tbScene::initMembers()
{
    accessLock = new tbLock;
    modsSemaphore = new tbSemaphore(1, 1);
    preUpdateEvent = new tbEvent;
    postUpdateEvent = new tbEvent;
    travContext = new tbTravContext;
    if (!travContext)
        return;
    travContext->setScene(this);
    travContext->setTraitStack(new tbTraitStack(tbTraitStack::ALL_STACKS, false));
}

tbScene::~tbScene()
{
    deleteInstance();
    tbiDirectCalls::forget(this);
    delete lists;
    lists = nullptr;
    if (travContext && travContext->getScene() == this)
        travContext->setScene(nullptr);
}

// Registrations, access and the context stay this scene's own.
tbScene& tbScene::operator=(const tbScene& other)
{
    tbStyle::operator=(other);
    return *this;
}

void tbScene::copy(const tbScene& other)
{
    tbStyle::copy(other);
}

void tbScene::clone(const tbScene& other)
{
    tbStyle::clone(other);
}

tbBase* tbScene::createCopy() const
{
    return tbiCopyOf(*this);
}

tbGroup* tbScene::copyGroup() const
{
    return makeLike(this, &tbScene::copy);
}

tbGroup* tbScene::cloneGroup() const
{
    return makeLike(this, &tbScene::clone);
}

tbEntry* tbScene::read(tbFile* file, tbEntry* entry)
{
    return tbStyle::read(file, entry);
}

tbEntry* tbScene::write(tbFile* file, tbEntry* entry) const
{
    return tbStyle::write(file, entry);
}

void tbScene::addedTo(tbGroup*) {}

void tbScene::setTravContext(tbTravContext* context)
{
    travContext = context;
}

void tbScene::boundsPass()
{
    if (!anyTravFlags(TF_FENCE))
        return;
    volume.makeEmpty();
    if (const tbiVolumeScope bounds(travContext.get(), &volume); bounds)
        tbGroup::updateFences(travContext.get());
}

void tbScene::updateFences()
{
    if (!travContext)
        return;
    const tbiMemoryWatch memory;
    travContext->reset();
    boundsPass();
    if (memory.ranOut())
        tbiPropagation::raiseAll(this, TF_FENCE);
}

void tbScene::update()
{
    const tbiKeep keepThis(this);
    const tbRef<tbTravContext> context = travContext;
    if (!context)
        return;
    const double start = tbGetTime();
    const tbiMemoryWatch memory;
    if (tbInAppThread())
        if (tbThread* appThread = tbGetAppThread())
            appThread->processQueue(false);
    if (anyTravFlags(TF_SHARED))
        updateSharedInstances();
    updateFences();
    context->reset();
    context->setScene(this);
    {
        const tbiVolumeScope bounds(context.get(), &volume);
        tbEvent::trigger(preUpdateEvent.get(), this);
        callDirectly(lists, DIRECT_UPDATE_BEFORE, [this](tbGroup* node) { node->updateDirect(this, true); });
        if (anyTravFlags(TF_ANY_UPDATE))
            tbStyle::update(context.get());
        callDirectly(lists, DIRECT_UPDATE_AFTER, [this](tbGroup* node) { node->updateDirect(this, false); });
        tbEvent::trigger(postUpdateEvent.get(), this);
    }
    // Nodes that were passed over, or could not register themselves, have their turn in the next frame.
    if (memory.ranOut())
        tbiPropagation::raiseAll(this, TF_UPDATE | TF_FENCE);
    if (tbStats* stats = context->getStats())
        stats->addFrame(tbGetTime() - start);
}

void tbScene::applyDirect(tbCamera* camera, bool before) const
{
    callDirectly(lists, before ? DIRECT_CAMERA_BEFORE : DIRECT_CAMERA_AFTER,
                 [=](const tbGroup* node) { node->applyDirect(camera, before); });
}

void tbScene::applyDirect(tbListener* listener, bool before) const
{
    callDirectly(lists, before ? DIRECT_LISTENER_BEFORE : DIRECT_LISTENER_AFTER,
                 [=](const tbGroup* node) { node->applyDirect(listener, before); });
}

void tbScene::applyDirect(tbCollider* collider, bool before) const
{
    callDirectly(lists, before ? DIRECT_COLLIDER_BEFORE : DIRECT_COLLIDER_AFTER,
                 [=](const tbGroup* node) { node->applyDirect(collider, before); });
}

void tbScene::addDirectCall(DIRECT_CALL kind, tbGroup* node)
{
    if (isDirectCall(kind) && node)
        tbiDirectCalls::add(this, kind, node);
}

void tbScene::removeDirectCall(DIRECT_CALL kind, tbGroup* node)
{
    if (isDirectCall(kind) && node)
        tbiDirectCalls::remove(this, kind, node);
}

int tbScene::getNumPlayingEmitters() const
{
    return lists ? lists->playing.getNum() : 0;
}

tbEmitter* tbScene::getPlayingEmitter(int i) const
{
    return i >= 0 && i < getNumPlayingEmitters() ? lists->playing[i] : nullptr;
}

void tbScene::addPlayingEmitter(tbEmitter* emitter)
{
    tbiDirectCalls::addEmitter(this, emitter);
}

void tbScene::removePlayingEmitter(tbEmitter* emitter)
{
    tbiDirectCalls::removeEmitter(this, emitter);
}

void tbScene::forgetEmitter(tbEmitter* emitter)
{
    tbiDirectCalls::forgetEmitter(emitter);
}
