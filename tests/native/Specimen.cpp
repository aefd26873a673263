#include <tests/native/Specimen.h>

#include <tests/support/EveryClass.h>
#include <tests/support/TempFile.h>

#include <apps/tamber/native/Check.h>
#include <plugins/null/tbNullCamera.h>
#include <portable/tbMaterial.h>
#include <tamber/collide/tbBoxFence.h>
#include <tamber/collide/tbSphereFence.h>
#include <tamber/containers/tbArray.h>
#include <tamber/graph/tbModel.h>
#include <tamber/graph/tbRangeSwitch.h>
#include <tamber/io/tbFile.h>
#include <tamber/io/tbLoader.h>
#include <tamber/io/tbPlugIn.h>

#include <algorithm>
#include <bit>

#include <gtest/gtest.h>

using namespace native;

namespace tbtest
{
namespace
{
template <class Node>
Node* addTo(tbGroup* parent, const char* name)
{
    auto* node = new Node;
    node->setName(name);
    parent->addChild(node);
    return node;
}

tbTransform* addTransform(tbGroup* parent, const char* name)
{
    auto* node = addTo<tbTransform>(parent, name);
    node->setXYZ(1, 2, 3);
    return node;
}

template <class Switch>
Switch* addSwitch(tbGroup* parent, const char* name)
{
    auto* node = addTo<Switch>(parent, name);
    addTo<tbGroup>(node, "first");
    addTo<tbGroup>(node, "second");
    return node;
}

void addTraits(tbStyle* style, bool withImage)
{
    style->addTrait(new tbMaterial);
    auto* texture = new tbTexture;
    texture->setFileName("wood.png");
    const unsigned char pixels[8] = {1, 2, 3, 4, 5, 6, 7, 8};
    if (withImage)
        texture->setPixels(2, 1, pixels);
    style->addTrait(texture);
}

void addActions(tbGroup* parent, tbTransform* target)
{
    auto* path = addTo<tbPathAction>(parent, "path");
    path->setTarget(target);
    auto* keys = addTo<tbKeyFrameAction>(parent, "keys");
    tbSpline way;
    for (int i = 0; i < 4; ++i)
        way.addPoint(tbVec3(float(i), 0, 0));
    path->setSpline(way);
    for (const float time : {0.5f, 1.5f})
        keys->getPositions().addKey(time, tbVec3(1, 2, 3));
}

std::string writeSpecimen()
{
    const tbRef<tbScene> scene(new tbScene);
    addTraits(scene.get(), false);
    auto* car = addTransform(scene.get(), "ab"); // an odd name, behind which there is padding
    setTriangle(addTo<tbMesh>(car, "mesh"), tbVertexArray::VT_POSITION);
    addTo<tbModel>(scene.get(), "model");
    addTraits(addTo<tbStyle>(scene.get(), "style"), true);
    addSwitch<tbSwitch>(scene.get(), "switch");
    addSwitch<tbRangeSwitch>(scene.get(), "ranges");
    addSwitch<tbAutoSwitch>(scene.get(), "auto")->setTime(0.3f);
    addTo<tbSphereFence>(scene.get(), "ball");
    addTo<tbBoxFence>(scene.get(), "box");
    addTo<tbEmitter>(scene.get(), "horn")->setWaveName("horn.wav");
    addActions(addTransform(scene.get(), "track"), car);
    const tbRef<tbCollider> collider(new tbCollider);
    collider->addRay(tbRay(tbVec3(0, 0, 0), tbVec3(1, 2, 3)));
    scene->addAttribute(collider.get());

    const TempDirectory directory;
    const std::string path = directory.path("specimen.tb");
    EXPECT_TRUE(tbLoader::exportFile(scene.get(), path.c_str()));
    return readAll(path);
}

/// Arrays of every type, and an entry of a class that nobody knows.
void writeArrays(tbFile& file)
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
} // namespace

const std::string& specimenFile()
{
    static const std::string bytes = writeSpecimen();
    return bytes;
}

std::string everyClassFile(bool swapped, bool packed)
{
    const tbRef<tbStyle> root(new tbStyle);
    const tbRef<tbTransform> wheel(new tbTransform);
    wheel->setName("wheel");
    tbNullCamera::getClassType(); // has the module with the last of the classes loaded
    for (const tbRef<tbBase>& object : makeEveryObject())
    {
        if (auto* action = dynamic_cast<tbMotionAction*>(object.get()))
            action->setTarget(wheel.get());
        root->addAttribute(object.get());
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

std::unique_ptr<ImageSource> sourceOf(const std::string& bytes)
{
    return makeMemorySource({bytes.begin(), bytes.end()});
}

Image imageOf(const std::string& bytes)
{
    Findings ignored;
    return Image(sourceOf(bytes), ignored);
}

std::set<int> findingsOf(std::unique_ptr<ImageSource> source)
{
    Findings findings;
    Image image(std::move(source), findings);
    checkImage(image, findings);
    std::set<int> numbers;
    for (const KindInfo& info : allKinds())
        if (findings.count(info.kind) > 0)
            numbers.insert(int(info.kind));
    return numbers;
}

std::set<int> findingsOf(const std::string& bytes)
{
    return findingsOf(sourceOf(bytes));
}

void Specimen::setWord(std::size_t offset, std::uint32_t value)
{
    unsigned char word[4];
    storeWord(word, value, OWN_ORDER);
    bytes.replace(offset, 4, reinterpret_cast<const char*>(word), 4);
}

void Specimen::setRecord(int entry, unsigned field, std::uint32_t value)
{
    setWord(std::size_t(imageOf(bytes).getRecordOffset(entry)) + field, value);
}

std::uint32_t Specimen::getRecord(int entry, unsigned field) const
{
    const std::size_t offset = std::size_t(imageOf(bytes).getRecordOffset(entry)) + field;
    return loadWord<std::uint32_t>(reinterpret_cast<const unsigned char*>(bytes.data()) + offset, OWN_ORDER);
}

int Specimen::numEntries() const
{
    return imageOf(bytes).getNumEntries();
}

int Specimen::find(const char* className, int nth) const
{
    const Image image = imageOf(bytes);
    for (int i = 0; i < image.getNumEntries(); ++i)
        if (image.getTagName(i) == className && nth-- == 0)
            return i;
    ADD_FAILURE() << "no entry of " << className;
    return 0;
}

std::size_t Specimen::tagPlace(const char* className) const
{
    const Image image = imageOf(bytes);
    return std::size_t(image.getTagOffset(int(image.getEntries()[std::size_t(find(className))].tag)));
}

void Specimen::renameTag(const char* className, const char* newName)
{
    std::string field = newName;
    field.resize(layout::TAG_NAME_SIZE);
    bytes.replace(tagPlace(className) + layout::TAG_NAME, field.size(), field);
}

std::vector<Field> Specimen::fieldsOf(int entry) const
{
    Findings findings;
    Image image = imageOf(bytes);
    std::vector<unsigned char> data;
    EXPECT_TRUE(image.readData(entry, data, findings)) << entry;
    const auto fields = Record(image.getTagName(entry), data, image.getOrder(entry)).getFields();
    return {fields.begin(), fields.end()};
}

Field Specimen::locate(const char* className, const char* name, int nth) const
{
    const int entry = find(className, nth);
    for (Field field : fieldsOf(entry))
    {
        if (std::string_view(field.name) != name)
            continue;
        field.offset += getRecord(entry, layout::RECORD_OFFSET);
        field.countOffset += getRecord(entry, layout::RECORD_OFFSET);
        return field;
    }
    ADD_FAILURE() << className << " has no " << name;
    return {};
}

std::size_t Specimen::place(const char* className, const char* name, int i, int nth) const
{
    const Field field = locate(className, name, nth);
    return field.offset + std::size_t(i) * field.width;
}

std::size_t Specimen::countPlace(const char* className, const char* name) const
{
    return locate(className, name).countOffset;
}

void Specimen::setValue(const char* className, const char* field, std::uint32_t value, int i)
{
    const std::size_t offset = place(className, field, i);
    const int width = locate(className, field).width;
    unsigned char word[4];
    storeWord(word, value, OWN_ORDER);
    const bool little = OWN_ORDER == ByteOrder::LITTLE;
    for (int byte = 0; byte < std::min(width, 4); ++byte)
        setByte(offset + std::size_t(byte), word[little ? byte : 4 - width + byte]);
}

void Specimen::setNumber(const char* className, const char* field, float value, int i)
{
    setWord(place(className, field, i), std::bit_cast<std::uint32_t>(value));
}

void Specimen::setCount(const char* className, const char* field, std::uint32_t value)
{
    setWord(countPlace(className, field), value);
}

std::string Specimen::lastStored() const
{
    return bytes.substr(getRecord(last(), layout::RECORD_OFFSET));
}

void Specimen::setLastStored(const std::string& stored, std::uint32_t size, std::uint32_t compression)
{
    bytes.replace(getRecord(last(), layout::RECORD_OFFSET), std::string::npos, stored);
    setRecord(last(), layout::RECORD_DATA_SIZE, size);
    setRecord(last(), layout::RECORD_COMPRESSION, compression);
}
} // namespace tbtest
