// Graphs that hold an object of every class that files may hold.
#pragma once

#include <portable/tbKeyFrameAction.h>
#include <portable/tbMesh.h>
#include <portable/tbPathAction.h>
#include <tamber/action/tbActionNode.h>
#include <tamber/graph/tbScene.h>
#include <tamber/graph/tbTransform.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/render/tbStyle.h>
#include <tamber/render/tbVertexArray.h>
#include <tamber/trav/tbAudioTrait.h>
#include <tamber/trav/tbTravTrait.h>
#include <tamber/trav/tbVisualTrait.h>

#include <cstring>
#include <string>

namespace tbtest
{
inline tbMesh* makeTriangle(float y)
{
    const float corners[9] = {-1, y, -1, 1, y, -1, 0, y, 1};
    auto* vertices = new tbVertexArray(3, tbVertexArray::VT_POSITION);
    std::memcpy(vertices->getData(), corners, sizeof corners);
    auto* mesh = new tbMesh;
    const unsigned indices[3] = {0, 1, 2};
    mesh->set(tbMesh::TRIANGLES, vertices, indices, 3);
    return mesh;
}

/// A node below a transform, both named.
inline void place(tbGroup* parent, tbGroup* node, int number)
{
    auto* transform = new tbTransform;
    transform->setName((std::string("above ") + node->getType()->getName()).c_str());
    transform->setXYZ(0, float(number) * 0.5f, 0);
    node->setName(node->getType()->getName());
    parent->addChild(transform);
    transform->addChild(node);
    if (!node->isOfType(tbGeometry::getClassType()) && !node->isOfType(tbActionNode::getClassType()))
        node->addChild(makeTriangle(1));
}

inline void addTrait(tbStyle* style, tbBase* trait)
{
    if (auto* trav = dynamic_cast<tbTravTrait*>(trait))
        style->addTrait(trav);
    else if (auto* visual = dynamic_cast<tbVisualTrait*>(trait))
        style->addTrait(visual);
    else if (auto* audio = dynamic_cast<tbAudioTrait*>(trait))
        style->addTrait(audio);
}

/// Below the scene every node class with something to draw; in a style every trait; the rest as attributes.
inline tbRef<tbScene> makeEveryClass()
{
    tbMesh::getClassType();
    tbPathAction::getClassType();
    tbKeyFrameAction::getClassType();
    for (const char* name : {"tbAudioLevelScale",
                             "tbAudioPriorityScale",
                             "tbColliderMask",
                             "tbColliderTarget",
                             "tbCull",
                             "tbSort",
                             "tbPrune",
                             "tbTransition",
                             "tbSphereFence",
                             "tbBoxFence",
                             "tbStyle",
                             "tbEmitter",
                             "tbSwitch",
                             "tbRangeSwitch",
                             "tbBillboard",
                             "tbAutoSwitch",
                             "tbModel",
                             "tbCollider",
                             "tbMaterial",
                             "tbTexture",
                             "tbBlend",
                             "tbFaceCull"})
        tbType::findType(name);

    tbRef<tbScene> scene(new tbScene);
    auto* style = new tbStyle;
    scene->addChild(style);
    for (int i = 0; i < tbType::getNumTypes(); ++i)
    {
        const tbType* type = tbType::getType(i);
        if (!type->isWritable() || type == tbScene::getClassType() || type == tbBase::getClassType())
            continue;
        const tbRef<tbBase> object(type->create());
        if (auto* node = dynamic_cast<tbGroup*>(object.get()))
            place(style, node, i);
        else if (dynamic_cast<tbTrait*>(object.get()))
            addTrait(style, object.get());
        else if (object)
            scene->addAttribute(object.get());
        if (auto* motion = dynamic_cast<tbMotionAction*>(object.get()))
            motion->pause(true); // so that every frame gives the same
        if (auto* path = dynamic_cast<tbPathAction*>(object.get()))
        {
            tbSpline spline(tbSpline::LINEAR);
            spline.addPoint(tbVec3(0, 0, 0));
            spline.addPoint(tbVec3(0, 1, 0));
            path->setSpline(spline);
        }
        if (auto* keys = dynamic_cast<tbKeyFrameAction*>(object.get()))
        {
            keys->getPositions().addKey(0, tbVec3(0, 0, 0));
            keys->getPositions().addKey(1, tbVec3(0, 1, 0));
        }
    }
    return scene;
}
} // namespace tbtest
