// A native file with an object of every class, an array of every type, and the list of plug-ins.
#pragma once

#include <tests/support/TempFile.h>

#include <apps/tamber/native/Record.h>
#include <plugins/null/tbNullCamera.h>
#include <portable/tbKeyFrameAction.h>
#include <portable/tbMesh.h>
#include <portable/tbPathAction.h>
#include <portable/tbTexture.h>
#include <tamber/audio/tbEmitter.h>
#include <tamber/collide/tbCollider.h>
#include <tamber/containers/tbArray.h>
#include <tamber/graph/tbAutoSwitch.h>
#include <tamber/graph/tbRangeSwitch.h>
#include <tamber/graph/tbScene.h>
#include <tamber/graph/tbTransform.h>
#include <tamber/io/tbFile.h>
#include <tamber/io/tbPlugIn.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/render/tbVertexArray.h>

#include <gtest/gtest.h>

namespace tbtest
{
inline constexpr unsigned FULL_VERTEX = tbVertexArray::VT_POSITION | tbVertexArray::VT_NORMAL |
                                        tbVertexArray::VT_COLOR | tbVertexArray::VT_TEXCOORD1 |
                                        tbVertexArray::COLOR_ABGR;

/// Gives an object what a new one of its class does not have: children, lists, texts.
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
        node->setTime(0.3f);
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
    {
        const tbRef<tbVertexArray> vertices(new tbVertexArray(3, FULL_VERTEX));
        auto* floats = static_cast<float*>(vertices->getData());
        for (std::size_t i = 0; i < vertices->getSize() / sizeof(float); ++i)
            floats[i] = float(i) * 0.1f;
        const unsigned indices[] = {2, 1, 0};
        mesh->set(tbMesh::TRIANGLES, vertices.get(), indices, 3);
    }
    if (auto* texture = dynamic_cast<tbTexture*>(object))
    {
        const unsigned char pixels[8] = {1, 2, 3, 4, 5, 6, 7, 8};
        texture->setPixels(2, 1, pixels);
        texture->setFileName("../wood.png");
    }
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

/// Arrays of every type, and an entry of a class that nobody knows.
inline void writeArrays(tbFile& file)
{
    tbEntry* entry = file.newEntry(file.newTag("Unknown"));
    std::vector<tbRef<tbArray>> arrays;
    for (int type = 0; type < tbArray::NUM_DATA_TYPES; ++type)
    {
        // They live until all are written: a file knows arrays by where they are.
        const tbRef<tbArray>& array = arrays.emplace_back(new tbArray(type + 1, tbArray::DATA_TYPE(type)));
        auto* bytes = static_cast<unsigned char*>(array->getData());
        for (int i = 0; i < array->getNum() * array->getElemSize(); ++i)
            bytes[i] = static_cast<unsigned char>(i + 40);
        array->writeRef(&file, entry);
    }
    // References would be bytes of a byte order that nobody knows.
    entry->reset();
    for (int type = 0; type < tbArray::NUM_DATA_TYPES; ++type)
        entry->writeInt(0);
    entry->writeChunk("tail", 4);
}

inline std::string everyClassFile(bool swapped = false, bool packed = false)
{
    const tbRef<tbStyle> root(new tbStyle);
    const tbRef<tbTransform> wheel(new tbTransform);
    wheel->setName("wheel");
    tbNullCamera::getClassType(); // has the module with the last of the classes loaded
    std::vector<tbRef<tbBase>> objects;
    for (const native::ClassInfo& info : native::knownClasses())
    {
        if (info.nature != native::ClassInfo::OBJECT)
            continue;
        objects.push_back(tbRef<tbBase>(tbType::createInstance(info.name)));
        tbBase* object = objects.back().get();
        EXPECT_NE(object, nullptr) << info.name;
        if (!object)
            continue;
        fill(object, int(objects.size()));
        if (auto* action = dynamic_cast<tbMotionAction*>(object))
            action->setTarget(wheel.get());
        root->addAttribute(object);
    }
    root->addChild(wheel.get());

    const TempDirectory directory;
    const std::string path = directory.path("every.tb");
    tbFile file;
    EXPECT_TRUE(file.create(path.c_str()));
    file.setByteSwapped(swapped);
    file.setCompression(packed ? tbEntry::RLE : tbEntry::NO_COMPRESSION);
    EXPECT_NE(file.writeObject(root.get()), nullptr);
    tbPlugIn::savePlugIns(&file);
    writeArrays(file);
    EXPECT_TRUE(file.write());
    file.close();
    return readAll(path);
}
} // namespace tbtest
