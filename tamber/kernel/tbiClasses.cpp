// The inventory of the kernel: every class that follows the class pattern.
#include <tamber/kernel/tbiClasses.h>

#include <tamber/action/tbAction.h>
#include <tamber/action/tbActionNode.h>
#include <tamber/action/tbTransition.h>
#include <tamber/audio/tbAudioLevelScale.h>
#include <tamber/audio/tbAudioPriorityScale.h>
#include <tamber/audio/tbEmitter.h>
#include <tamber/audio/tbListener.h>
#include <tamber/collide/tbBoxFence.h>
#include <tamber/collide/tbCollider.h>
#include <tamber/collide/tbColliderMask.h>
#include <tamber/collide/tbColliderTarget.h>
#include <tamber/collide/tbFence.h>
#include <tamber/collide/tbSphereFence.h>
#include <tamber/display/tbCamera.h>
#include <tamber/display/tbKeyboard.h>
#include <tamber/display/tbMouse.h>
#include <tamber/display/tbWindow.h>
#include <tamber/graph/tbAutoSwitch.h>
#include <tamber/graph/tbBillboard.h>
#include <tamber/graph/tbGroup.h>
#include <tamber/graph/tbModel.h>
#include <tamber/graph/tbRangeSwitch.h>
#include <tamber/graph/tbScene.h>
#include <tamber/graph/tbSwitch.h>
#include <tamber/graph/tbTransform.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/render/tbGeometry.h>
#include <tamber/render/tbStyle.h>
#include <tamber/thread/tbEvent.h>
#include <tamber/thread/tbFlushThread.h>
#include <tamber/thread/tbQueue.h>
#include <tamber/thread/tbSemaphore.h>
#include <tamber/thread/tbThread.h>
#include <tamber/trav/tbAudioTrait.h>
#include <tamber/trav/tbCull.h>
#include <tamber/trav/tbPrune.h>
#include <tamber/trav/tbSort.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravTrait.h>
#include <tamber/trav/tbTraverser.h>
#include <tamber/trav/tbVisualTrait.h>

namespace
{

using ClassFunc = void (*)(tbPlugIn*);

constexpr ClassFunc initAtLoad[] = {
    tbQueue::initClass,  tbEvent::initClass,  tbThread::initClass,     tbSemaphore::initClass,
    tbWindow::initClass, tbCamera::initClass, tbTraitStack::initClass,
};

// Parents before children within each family; traits are numbered in the order in which they are first used.
constexpr ClassFunc registerAtLoad[] = {
    tbAction::registerClass,       tbFlushThread::registerClass,     tbListener::registerClass,
    tbTrait::registerClass,        tbTravTrait::registerClass,       tbVisualTrait::registerClass,
    tbAudioTrait::registerClass,   tbAudioLevelScale::registerClass, tbAudioPriorityScale::registerClass,
    tbColliderMask::registerClass, tbColliderTarget::registerClass,  tbCull::registerClass,
    tbSort::registerClass,         tbPrune::registerClass,           tbTransition::registerClass,
    tbGroup::registerClass,        tbTransform::registerClass,       tbFence::registerClass,
    tbSphereFence::registerClass,  tbBoxFence::registerClass,        tbStyle::registerClass,
    tbEmitter::registerClass,      tbGeometry::registerClass,        tbScene::registerClass,
    tbSwitch::registerClass,       tbRangeSwitch::registerClass,     tbBillboard::registerClass,
    tbAutoSwitch::registerClass,   tbActionNode::registerClass,      tbModel::registerClass,
    tbMouse::registerClass,        tbKeyboard::registerClass,        tbCollider::registerClass,
    tbStats::registerClass,        tbTraverser::registerClass,
};

} // namespace

void tbiInitClasses(tbPlugIn* kernel)
{
    for (const ClassFunc initClass : initAtLoad)
        initClass(kernel);
}

void tbiRegisterClasses(tbPlugIn* kernel)
{
    for (const ClassFunc registerClass : registerAtLoad)
        registerClass(kernel);
}
