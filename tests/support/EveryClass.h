// An object of every class that files hold, and graphs of them. The classes are those that the program knows.
#pragma once

#include <apps/tamber/native/Record.h>
#include <portable/tbKeyFrameAction.h>
#include <portable/tbMesh.h>
#include <portable/tbPathAction.h>
#include <portable/tbTexture.h>
#include <tamber/action/tbActionNode.h>
#include <tamber/audio/tbEmitter.h>
#include <tamber/collide/tbCollider.h>
#include <tamber/graph/tbAutoSwitch.h>
#include <tamber/graph/tbScene.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/render/tbVertexArray.h>
#include <tamber/trav/tbAudioTrait.h>
#include <tamber/trav/tbTravTrait.h>
#include <tamber/trav/tbVisualTrait.h>

#include <string>
#include <vector>

namespace tbtest
{
/// A triangle around the origin, in the plane of X and Z.
inline void setTriangle(tbMesh* mesh, unsigned vertexType)
{
    constexpr float corners[3][3] = {{-1, 0, -1}, {1, 0, -1}, {0, 0, 1}};
    const tbRef<tbVertexArray> vertices(new tbVertexArray(3, vertexType));
    auto* floats = static_cast<float*>(vertices->getData());
    const auto numFloats = std::size_t(vertices->getVertexSize()) / sizeof(float);
    for (std::size_t i = 0; i < 3 * numFloats; ++i)
        floats[i] = i % numFloats < 3 ? corners[i / numFloats][i % numFloats] : float(i) * 0.1f;
    const unsigned indices[] = {2, 1, 0};
    mesh->set(tbMesh::TRIANGLES, vertices.get(), indices, 3);
}

/// Gives an object what a new one of its class does not have: children, lists, texts. Nothing in it moves.
inline void fill(tbBase* object, int number)
{
    object->setName((std::string(object->getType()->getName()) + "\n\"" + std::to_string(number)).c_str());
    if (auto* node = dynamic_cast<tbSwitch*>(object))
    {
        node->addChild(new tbGroup);
        node->addChild(new tbGroup);
        node->selectChild(1);
    }
    if (auto* node = dynamic_cast<tbAutoSwitch*>(object))
    {
        node->setTime(0.3f);
        node->pause();
    }
    if (auto* node = dynamic_cast<tbTransform*>(object))
    {
        tbMatrix matrix;
        matrix.makeXYZ(1.5f, -0.1f, 1e-20f);
        node->setMatrix(matrix);
    }
    if (auto* emitter = dynamic_cast<tbEmitter*>(object))
        emitter->setWaveName("a\tb.wav");
    if (auto* collider = dynamic_cast<tbCollider*>(object))
        collider->addRay(tbRay(tbVec3(0, 0, 0), tbVec3(1, 2, 3)));
    if (auto* mesh = dynamic_cast<tbMesh*>(object))
        setTriangle(mesh, tbVertexArray::VT_POSITION | tbVertexArray::VT_NORMAL | tbVertexArray::VT_COLOR |
                              tbVertexArray::VT_TEXCOORD1 | tbVertexArray::COLOR_ABGR);
    if (auto* texture = dynamic_cast<tbTexture*>(object))
    {
        const unsigned char pixels[8] = {1, 2, 3, 4, 5, 6, 7, 8};
        texture->setPixels(2, 1, pixels);
        texture->setFileName("../wood.png");
    }
    if (auto* action = dynamic_cast<tbMotionAction*>(object))
        action->pause(true);
    if (auto* action = dynamic_cast<tbPathAction*>(object))
    {
        tbSpline spline;
        spline.addPoint(tbVec3(0, 1, 2));
        spline.addPoint(tbVec3(3, 4, 5));
        action->setSpline(spline);
    }
    if (auto* action = dynamic_cast<tbKeyFrameAction*>(object))
    {
        action->getPositions().addKey(0.5f, tbVec3(1, 2, 3));
        action->getRotations().addKey(0.5f, tbQuat(0, 0, 0, 1));
    }
}

inline std::vector<tbRef<tbBase>> makeEveryObject()
{
    std::vector<tbRef<tbBase>> objects;
    for (const native::ClassInfo& info : native::knownClasses())
        if (info.nature == native::ClassInfo::OBJECT)
            objects.emplace_back(tbType::createInstance(info.name));
    for (std::size_t i = 0; i < objects.size(); ++i)
        fill(objects[i].get(), int(i));
    return objects;
}

/// A node below a transform, both named, with something to draw below it.
inline void place(tbGroup* parent, tbGroup* node, int number)
{
    auto* transform = new tbTransform;
    transform->setName((std::string("above ") + node->getType()->getName()).c_str());
    transform->setXYZ(0, float(number) * 0.5f, 0);
    node->setName(node->getType()->getName());
    parent->addChild(transform);
    transform->addChild(node);
    if (node->isOfType(tbGeometry::getClassType()) || node->isOfType(tbActionNode::getClassType()))
        return;
    auto* mesh = new tbMesh;
    setTriangle(mesh, tbVertexArray::VT_POSITION);
    node->addChild(mesh);
}

/// Below the scene every node; in a style every trait; the rest as attributes.
inline tbRef<tbScene> makeEveryClass()
{
    tbRef<tbScene> scene(new tbScene);
    auto* style = new tbStyle;
    scene->addChild(style);
    int number = 0;
    for (const tbRef<tbBase>& object : makeEveryObject())
    {
        ++number;
        if (object->getType() == tbScene::getClassType() || object->getType() == tbBase::getClassType())
            continue;
        if (auto* node = dynamic_cast<tbGroup*>(object.get()))
            place(style, node, number);
        else if (auto* trav = dynamic_cast<tbTravTrait*>(object.get()))
            style->addTrait(trav);
        else if (auto* visual = dynamic_cast<tbVisualTrait*>(object.get()))
            style->addTrait(visual);
        else if (auto* audio = dynamic_cast<tbAudioTrait*>(object.get()))
            style->addTrait(audio);
        else
            scene->addAttribute(object.get());
    }
    return scene;
}
} // namespace tbtest
