// Everything that an application needs.
#pragma once

#include <tamber/kernel/tbAllocator.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbClass.h>
#include <tamber/kernel/tbFilePath.h>
#include <tamber/kernel/tbInit.h>
#include <tamber/kernel/tbMemory.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/kernel/tbSettings.h>
#include <tamber/kernel/tbSqrt.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/kernel/tbString.h>
#include <tamber/kernel/tbTime.h>
#include <tamber/kernel/tbType.h>
#include <tamber/kernel/tbTypes.h>
#include <tamber/kernel/tbVersion.h>

#include <tamber/containers/tbArray.h>
#include <tamber/containers/tbGrowableArray.h>
#include <tamber/containers/tbIterator.h>
#include <tamber/containers/tbList.h>
#include <tamber/containers/tbStack.h>
#include <tamber/containers/tbTArray.h>

#include <tamber/thread/tbEvent.h>
#include <tamber/thread/tbFlushThread.h>
#include <tamber/thread/tbLock.h>
#include <tamber/thread/tbQueue.h>
#include <tamber/thread/tbSemaphore.h>
#include <tamber/thread/tbThread.h>
#include <tamber/thread/tbTimer.h>

#include <tamber/math/tbFloatInterpTable.h>
#include <tamber/math/tbInterpTable.h>
#include <tamber/math/tbMatrix.h>
#include <tamber/math/tbMatrixStack.h>
#include <tamber/math/tbQuat.h>
#include <tamber/math/tbQuatInterpTable.h>
#include <tamber/math/tbSpline.h>
#include <tamber/math/tbUByteVec3.h>
#include <tamber/math/tbUByteVec4.h>
#include <tamber/math/tbVec2.h>
#include <tamber/math/tbVec3.h>
#include <tamber/math/tbVec3InterpTable.h>
#include <tamber/math/tbVec4.h>
#include <tamber/math/tbVec4InterpTable.h>

#include <tamber/volume/tbBox.h>
#include <tamber/volume/tbFrustum.h>
#include <tamber/volume/tbPlane.h>
#include <tamber/volume/tbRay.h>
#include <tamber/volume/tbSphere.h>
#include <tamber/volume/tbVolume.h>

#include <tamber/graph/tbAutoSwitch.h>
#include <tamber/graph/tbBillboard.h>
#include <tamber/graph/tbGroup.h>
#include <tamber/graph/tbGroupType.h>
#include <tamber/graph/tbModel.h>
#include <tamber/graph/tbNodeList.h>
#include <tamber/graph/tbRangeSwitch.h>
#include <tamber/graph/tbScene.h>
#include <tamber/graph/tbSwitch.h>
#include <tamber/graph/tbTransform.h>

#include <tamber/render/tbGeometry.h>
#include <tamber/render/tbStyle.h>
#include <tamber/render/tbVertexArray.h>

#include <tamber/trav/tbAudioTrait.h>
#include <tamber/trav/tbAudioTraitType.h>
#include <tamber/trav/tbCull.h>
#include <tamber/trav/tbPrune.h>
#include <tamber/trav/tbSort.h>
#include <tamber/trav/tbTrait.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTraitType.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbTravPath.h>
#include <tamber/trav/tbTravStack.h>
#include <tamber/trav/tbTravTrait.h>
#include <tamber/trav/tbTravTraitType.h>
#include <tamber/trav/tbTraverser.h>
#include <tamber/trav/tbVisualTrait.h>
#include <tamber/trav/tbVisualTraitType.h>

#include <tamber/display/tbCamera.h>
#include <tamber/display/tbKeyboard.h>
#include <tamber/display/tbMouse.h>
#include <tamber/display/tbRenderContext.h>
#include <tamber/display/tbWindow.h>

#include <tamber/collide/tbBoxFence.h>
#include <tamber/collide/tbCollider.h>
#include <tamber/collide/tbColliderMask.h>
#include <tamber/collide/tbColliderTarget.h>
#include <tamber/collide/tbFence.h>
#include <tamber/collide/tbHit.h>
#include <tamber/collide/tbSphereFence.h>

#include <tamber/audio/tbAudioLevelScale.h>
#include <tamber/audio/tbAudioPriorityScale.h>
#include <tamber/audio/tbAudioScale.h>
#include <tamber/audio/tbEmitter.h>
#include <tamber/audio/tbListener.h>

#include <tamber/action/tbAction.h>
#include <tamber/action/tbActionNode.h>
#include <tamber/action/tbTransition.h>

#include <tamber/io/tbEntry.h>
#include <tamber/io/tbFile.h>
#include <tamber/io/tbImport.h>
#include <tamber/io/tbImportProcess.h>
#include <tamber/io/tbLoader.h>
#include <tamber/io/tbModelFiles.h>
#include <tamber/io/tbNewFiles.h>
#include <tamber/io/tbPlugIn.h>
#include <tamber/io/tbPlugInReport.h>
