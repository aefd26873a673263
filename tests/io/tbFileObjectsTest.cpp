#include <tamber/io/tbFile.h>

#include <tamber/collide/tbCollider.h>
#include <tamber/graph/tbScene.h>

#include <tests/support/Cost.h>
#include <tests/support/FileBuilder.h>
#include <tests/support/FileNode.h>
#include <tests/support/Messages.h>
#include <tests/support/TempFile.h>

#include <gtest/gtest.h>

#include <cstring>
#include <numeric>

using tbtest::FileBuilder;
using tbtest::FileNode;
using tbtest::Record;

namespace
{

class FileObjects : public testing::Test
{
protected:
    FileObjects() : before(FileNode::getNum(false)) { FileNode::makeKnown(); }
    ~FileObjects() override
    {
        file.close();
        EXPECT_EQ(FileNode::getNum(false), before) << "every object that was made is gone";
    }

    /// The object of entry 0, after the file was closed.
    tbRef<FileNode> readBytes(const std::string& bytes)
    {
        EXPECT_TRUE(file.open(directory.write("read.tb", bytes).c_str(), "r"));
        tbRef<FileNode> root = static_cast<FileNode*>(file.readObject(0));
        file.close();
        return root;
    }
    bool save(const FileNode* root)
    {
        return file.create(path.c_str()) && root->write(&file, nullptr) && file.write();
    }

    int before;
    tbtest::TempDirectory directory;
    std::string path = directory.path("objects.tb");
    tbFile file;
};

// A node with value 1, its array in that entry, and references to these children.
std::string nodeRecord(const FileBuilder& builder, const std::vector<int>& children, int array = -1)
{
    return builder.record().object().integer(1).wide(0.5).integer(array).list(children);
}

// Entries that each refer to these others.
std::string graph(const std::vector<std::vector<int>>& children)
{
    FileBuilder builder;
    for (const std::vector<int>& each : children)
        builder.add("FileNode", nodeRecord(builder, each));
    return builder.build();
}

std::vector<int> numbersFrom(int first, int count)
{
    std::vector<int> numbers(std::size_t(count), first);
    std::iota(numbers.begin(), numbers.end(), first);
    return numbers;
}

// A group with so many children of the class `name`, and below each of them the same leaves. All children lie on the same
// bytes, and so do all leaves.
std::string crowd(const char* name, int numChildren, int numLeaves)
{
    FileBuilder builder;
    builder.gap = 0;
    const auto group = [](int first, int number)
    { return Record().object().word(1).word(1).list(numbersFrom(first, number)); };
    builder.add("tbGroup", group(1, numChildren));
    builder.add(name, group(1 + numChildren, numLeaves));
    builder.addOnSameBytes(name, numChildren - 1);
    builder.add("tbGroup", group(0, 0));
    builder.addOnSameBytes("tbGroup", numLeaves - 1);
    return builder.build();
}

// A node with an array that is so many bytes long when it is packed, and with so many colliders on the same bytes.
std::string arrayAndColliders(int packedBytes, int numColliders)
{
    constexpr int numRays = 32;
    const int numInts = packedBytes / 2 * 255 / 4;
    FileBuilder builder;
    builder.gap = 0;
    builder.add("FileNode", nodeRecord(builder, numbersFrom(2, numColliders), 1));
    builder.addPacked("tbArray", builder.record()
                                     .word(tbArray::INT)
                                     .integer(numInts)
                                     .bytes(std::string(std::size_t(numInts) * 4, 'x')));
    Record collider = builder.record().object();
    for (int i = 0; i < 11; ++i)
        collider.integer(0);
    collider.integer(numRays).bytes(std::string(28 * numRays + 4, '\0'));
    builder.add("tbCollider", collider);
    builder.addOnSameBytes("tbCollider", numColliders - 1);
    return builder.build();
}

// Groups one below the other whose names are nearly the same bytes of the file.
std::string namesInOnePlace(int levels, int nameBytes)
{
    FileBuilder builder;
    builder.gap = 0;
    // The lengths of the names, which begin the entries, then the bytes, then where the names end.
    Record lengths;
    Record data;
    std::vector<std::uint32_t> ends;
    std::string tails;
    const int begin = 4 * levels + nameBytes;
    for (int i = 0; i < levels; ++i)
    {
        const int flags = begin + int(tails.size()); // in the whole
        lengths.integer(flags - 4 * i - 4);
        Record tail = Record().word(0);
        tail.bytes(std::string(std::size_t((2 - (flags - 4 * i) % 4 + 4) % 4), '\0'));
        tails += tail.get();
        tails += Record().integer(0).word(1).word(1).integer(i + 1 < levels ? 1 : 0).integer(i + 1).get();
        ends.push_back(std::uint32_t(begin + int(tails.size())));
    }
    builder.add("tbGroup", lengths.get() + std::string(std::size_t(nameBytes), 'x') + tails);
    for (int i = 1; i < levels; ++i)
        builder.add("tbGroup", "");
    const std::uint32_t place = std::uint32_t(builder.build().size() - builder.entries[0].data.size());
    for (int i = 0; i < levels; ++i)
    {
        builder.entries[std::size_t(i)].offset = place + 4 * std::uint32_t(i);
        builder.entries[std::size_t(i)].size = ends[std::size_t(i)] - 4 * std::uint32_t(i);
    }
    return builder.build();
}

FileNode* child(const FileNode* node, std::size_t i = 0)
{
    return static_cast<FileNode*>(node->children[i].get());
}

} // namespace

TEST_F(FileObjects, GraphComesBackWithItsSharedObjectsShared)
{
    tbRef<FileNode> root = new FileNode;
    FileNode* shared = new FileNode;
    root->value = -5;
    root->ratio = 1.0 / 3;
    root->array = new tbArray(2, tbArray::INT);
    root->addAttribute(shared);
    for (int i = 0; i < 2; ++i)
    {
        root->add(new FileNode);
        child(root.get(), std::size_t(i))->add(shared);
        child(root.get(), std::size_t(i))->array = root->array;
    }
    ASSERT_TRUE(save(root.get()));
    EXPECT_EQ(file.getNumEntries(), 5);

    ASSERT_TRUE(file.open(path.c_str(), "r"));
    auto* read = static_cast<FileNode*>(file.readObject(0));
    ASSERT_TRUE(read);
    EXPECT_EQ(file.readObject(0), read);
    file.close();
    EXPECT_EQ(read->getRefCount(), 0) << "the outermost object is the program's";
    const tbRef<FileNode> copy = read;
    EXPECT_TRUE(*copy == *root);
    EXPECT_EQ(copy->value, -5);
    EXPECT_EQ(copy->ratio, 1.0 / 3);
    ASSERT_EQ(copy->children.size(), 2u);
    EXPECT_EQ(child(read, 0)->getRefCount(), 1) << "one holder, one reference";
    EXPECT_EQ(child(child(read, 0)), child(child(read, 1)));
    EXPECT_EQ((*copy->getAttribList())[0], child(child(read, 0)));
    EXPECT_EQ(child(child(read, 0))->getRefCount(), 3);
    EXPECT_EQ(copy->array, child(read, 1)->array);
    EXPECT_EQ(copy->array->getRefCount(), 3);
}

TEST_F(FileObjects, UnknownClassesAreNamedOnceAndLeftOut)
{
    FileBuilder builder;
    builder.add("FileNode", nodeRecord(builder, {1, 2, 3}));
    builder.add("tbNobodysClass", "");
    builder.add("tbNobodysClass", "");
    builder.add("FileNode", nodeRecord(builder, {}));
    tbtest::expectMessage("no plug-in supplies the class tbNobodysClass");
    const tbRef<FileNode> root = readBytes(builder.build());
    ASSERT_TRUE(root);
    EXPECT_EQ(root->children.size(), 1u);

    builder.entries.resize(1);
    for (int i = 0; i < 150; ++i)
        builder.add("tbNobodysClass" + std::to_string(i), "");
    builder.entries[0].data = nodeRecord(builder, numbersFrom(1, 150));
    builder.entries[0].size = std::uint32_t(builder.entries[0].data.size());
    tbtest::expectMessage("no plug-in supplies the class tbNobodysClass", 100);
    tbtest::expectMessage("which other classes no plug-in supplies is not listed");
    EXPECT_TRUE(readBytes(builder.build()));
}

TEST_F(FileObjects, WhatAProgramPutsIntoAnEntryIsReferredToWhenItIsAnObject)
{
    const std::string bytes = graph({{1}, {}});
    const tbRef<FileNode> own = new FileNode;
    for (const bool isObject : {true, false})
    {
        ASSERT_TRUE(file.open(directory.write("own.tb", bytes).c_str(), "r"));
        if (isObject)
            file.getEntry(1)->setHandle(own.get());
        else
            file.getEntry(1)->setHandle(&bytes);
        if (!isObject)
            tbtest::expectMessage("a reference to an entry of another kind");
        const tbRef<FileNode> root = static_cast<FileNode*>(file.readObject(0));
        file.close();
        ASSERT_TRUE(root);
        EXPECT_EQ(root->children.size(), isObject ? 1u : 0u);
        EXPECT_EQ(own->getRefCount(), isObject ? 2 : 1);
    }
}

TEST_F(FileObjects, AProgramMayReadARecordAsOftenAsItLikes)
{
    std::vector<std::vector<int>> children(101);
    children[0] = numbersFrom(1, 100);
    ASSERT_TRUE(file.open(directory.write("again.tb", graph(children)).c_str(), "r"));
    const tbRef<FileNode> node = new FileNode;
    for (int i = 0; i < 5000; ++i)
        ASSERT_TRUE(node->read(&file, file.getEntry(0)));
    EXPECT_EQ(node->children.size(), 5000u * 100u);
    EXPECT_EQ(file.getLastError(), tbFile::FILE_OK);
}

TEST_F(FileObjects, NestingHasALimitThatMayBeMoved)
{
    std::vector<std::vector<int>> chain(1200);
    for (int i = 1; i < 1200; ++i)
        chain[std::size_t(i) - 1] = {i};
    const std::string bytes = graph(chain);
    const auto depthOf = [](const tbRef<FileNode>& root)
    {
        int depth = 0;
        for (const FileNode* node = root.get(); !node->children.empty(); node = child(node))
            ++depth;
        return depth;
    };
    tbtest::expectMessage("references nest too deep");
    file.setMaxDepth(10);
    EXPECT_EQ(depthOf(readBytes(bytes)), 10);
    file.setMaxDepth(2000);
    EXPECT_EQ(depthOf(readBytes(bytes)), 1199);
}

TEST_F(FileObjects, PathsThroughTheGraphHaveALimitThatMayBeMoved)
{
    file.setMaxObjects(8);
    tbtest::expectMessage("the graph has too many paths");
    const tbRef<FileNode> root = readBytes(graph({{1, 2, 3}, {4, 4}, {4, 4}, {4}, {}}));
    ASSERT_EQ(root->children.size(), 2u) << "seven paths; the third child would make nine";
    EXPECT_EQ(child(root.get(), 0)->children.size(), 2u);
    EXPECT_EQ(child(root.get(), 1)->children.size(), 2u);
}

TEST_F(FileObjects, ObjectsTakeNoMoreMemoryThanAFileOfTheirLengthMayTake)
{
    const std::tuple<const char*, std::string, bool> cases[] = {
        {"few lists", crowd("tbGroup", 500, 500), true},
        {"lists", crowd("tbGroup", 1500, 1500), false},
        {"few scenes", crowd("tbScene", 300, 0), true},
        {"scenes", crowd("tbScene", 30000, 0), false},
        {"a packed array", arrayAndColliders(1'000'000, 0), true},
        {"colliders", arrayAndColliders(100, 20'000), false},
        {"a packed array and colliders", arrayAndColliders(1'000'000, 20'000), false},
        {"names", namesInOnePlace(600, 2'000'000), false}};
    tbtest::allowMessages("together");
    tbtest::allowMessages("what else is damaged is not listed");
    for (const auto& [name, bytes, good] : cases)
    {
        SCOPED_TRACE(name);
        tbtest::writeAll(path, bytes);
        const std::size_t memory = tbMemory::getSize();
        const tbtest::Cost cost;
        ASSERT_TRUE(file.open(path.c_str(), "r"));
        const tbRef<tbBase> root = file.readObject(0);
        EXPECT_TRUE(root);
        EXPECT_LE(cost.bytes(), tbtest::mostBytes(bytes.size()));
        EXPECT_LE(tbMemory::getSize() - memory, tbtest::mostBytes(bytes.size()));
        EXPECT_EQ(file.getLastError(), good ? tbFile::FILE_OK : tbFile::FILE_READ_ERROR);
        EXPECT_EQ(std::strstr(file.getErrorText(), "together") == nullptr, good) << file.getErrorText();
        file.close();
    }
}

TEST_F(FileObjects, HoweverManyScenesAndCollidersWereSavedComeBack)
{
    const tbRef<FileNode> root = new FileNode;
    for (int i = 0; i < 2000; ++i)
        root->add(new tbScene);
    for (int i = 0; i < 8000; ++i)
        root->add(new tbCollider);
    ASSERT_TRUE(save(root.get()));
    const tbRef<FileNode> read = readBytes(tbtest::readAll(path));
    ASSERT_TRUE(read);
    EXPECT_EQ(read->children.size(), root->children.size());
}

TEST_F(FileObjects, DeeperGraphIsNotWrittenAtAll)
{
    file.setMaxDepth(3);
    for (const int depth : {3, 4})
    {
        tbtest::writeAll(path, "old");
        const tbRef<FileNode> root = new FileNode;
        FileNode* last = root.get();
        for (int i = 0; i < depth; ++i, last = child(last))
            last->add(new FileNode);
        EXPECT_EQ(save(root.get()), depth == 3) << depth;
    }
    EXPECT_EQ(file.getLastError(), tbFile::FILE_WRITE_ERROR);
    file.close();
    EXPECT_EQ(tbtest::readAll(path), "old");
}

TEST_F(FileObjects, CyclicGraphIsWrittenOnce)
{
    tbRef<FileNode> root = new FileNode;
    root->add(new FileNode);
    child(root.get())->add(root.get());
    ASSERT_TRUE(save(root.get()));
    EXPECT_EQ(file.getNumEntries(), 2);
    child(root.get())->children.clear();
}

TEST_F(FileObjects, UnwritableObjectsAreWrittenAsNoReference)
{
    tbRef<FileNode> root = new FileNode;
    root->add(new FileNode);
    root->addAttribute(child(root.get()));
    FileNode::getClassType()->setWritable(false);
    ASSERT_TRUE(save(root.get()));
    EXPECT_EQ(file.getNumEntries(), 1);
    FileNode::getClassType()->setWritable(true);
    const tbRef<FileNode> read = readBytes(tbtest::readAll(path));
    EXPECT_EQ(read->children.size(), 0u);
    EXPECT_EQ(read->getAttribList(), nullptr);
}

TEST_F(FileObjects, ObjectsWithoutAPlaceGoWithTheFile)
{
    tbtest::writeAll(path, graph({{1}, {}}));
    ASSERT_TRUE(file.open(path.c_str(), "r"));
    tbRef<FileNode> root = static_cast<FileNode*>(file.readObject(0));
    tbRef<FileNode> kept = static_cast<FileNode*>(file.readObject(1));
    EXPECT_EQ(kept, child(root.get()));
    root->children.clear();
    EXPECT_EQ(FileNode::getNum(false), before + 2);
    file.close();
    EXPECT_EQ(kept->getRefCount(), 1);
    kept.reset();
    EXPECT_EQ(FileNode::getNum(false), before + 1);
}

TEST_F(FileObjects, ReadsItselfFromTheFirstEntryOfItsClass)
{
    tbtest::writeAll(path, graph({{1}, {}}));
    ASSERT_TRUE(file.open(path.c_str(), "r"));
    tbRef<FileNode> node = new FileNode;
    EXPECT_TRUE(node->read(&file, nullptr));
    EXPECT_EQ(node->value, 1);
    EXPECT_EQ(node->children.size(), 1u);
    ASSERT_TRUE(file.create(path.c_str()));
    EXPECT_FALSE(node->read(&file, nullptr));
}
