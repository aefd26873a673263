#include <tamber/containers/tbArray.h>

#include <tamber/containers/tbTArray.h>
#include <tamber/io/tbFile.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbRef.h>
#include <tests/support/FileBuilder.h>
#include <tests/support/Messages.h>
#include <tests/support/TempFile.h>

#include <gtest/gtest.h>

#include <cstring>

namespace
{

// Gives every byte of an array's elements a value of its own.
void number(tbArray& array)
{
    auto* bytes = static_cast<unsigned char*>(array.getData());
    for (int i = 0; i < array.getNum() * array.getElemSize(); ++i)
        bytes[i] = static_cast<unsigned char>(i % 50 + 1);
}

bool sameElements(const tbArray& a, const tbArray& b)
{
    return a.getNum() == b.getNum() && a.getType() == b.getType() &&
           std::memcmp(a.getData(), b.getData(), std::size_t(a.getNum() * a.getElemSize())) == 0;
}

class OpenArray : public tbGrowableArray
{
public:
    OpenArray() : tbGrowableArray(tbArray::SHORT) {}
    using tbGrowableArray::setUsed;
};

} // namespace

TEST(Array, ElementsBeginAsZeroAndKnowTheirSize)
{
    const int sizes[] = {2, 3, 4, 4, 4, 8, 12, 16, 8};
    for (int type = 0; type < 12; ++type)
    {
        const tbArray array(5, tbArray::DATA_TYPE(type));
        EXPECT_EQ(array.getElemSize(), type < 9 ? sizes[type] : 0);
        EXPECT_GE(array.getSize(), std::size_t(5 * array.getElemSize()));
        EXPECT_EQ(array.getData() == nullptr, type > 8);
        for (int i = 0; i < 5 * array.getElemSize(); ++i)
            EXPECT_EQ(static_cast<const char*>(array.getData())[i], 0);
    }
    EXPECT_EQ(tbArray(0, tbArray::INT).getData(), nullptr);
    EXPECT_EQ(tbArray(-5, tbArray::INT).getData(), nullptr);
}

TEST(Array, CopiesHaveTheirOwnStorageAndNoReference)
{
    tbArray source(3, tbArray::VEC3);
    number(source);
    source.ref();
    source.enableDynamic(true);
    const tbArray copy(source);
    EXPECT_TRUE(sameElements(copy, source) && copy.isDynamic());
    EXPECT_EQ(copy.getRefCount(), 0);
    EXPECT_EQ(copy.getType(), tbArray::VEC3) << "the dynamic flag is no part of the type";

    tbArray assigned(1, tbArray::DOUBLE);
    assigned.ref();
    assigned = source;
    EXPECT_TRUE(sameElements(assigned, source));
    EXPECT_EQ(assigned.getRefCount(), 1);

    tbArena arena;
    const auto* shortLived = new (&arena) tbArray(source, &arena);
    EXPECT_TRUE(sameElements(*shortLived, source));
}

TEST(Array, ChangingTheSizeKeepsBytesAndCount)
{
    tbArray array(4, tbArray::INT);
    number(array);
    const tbArray before(array);
    array.setSize(1000);
    EXPECT_GE(array.getSize(), 1000u);
    EXPECT_TRUE(sameElements(array, before));
    array.setSize(4);
    EXPECT_EQ(array.getNum(), 4);
    EXPECT_EQ(std::memcmp(array.getData(), before.getData(), 4), 0);
    EXPECT_LE(std::size_t(tbArray(array).getNum()) * 4, array.getSize()) << "a copy holds what there is";
}

TEST(Array, FilesHoldEachArrayOnceAndWhetherItIsDynamic)
{
    const tbtest::TempDirectory directory;
    const std::string path = directory.path("arrays.tb");
    const tbRef<tbArray> still(new tbArray(5, tbArray::VEC3)), moving(new tbArray(5, tbArray::SHORT));
    moving->enableDynamic(true);
    tbFile file;
    ASSERT_TRUE(file.create(path.c_str()));
    tbEntry* list = file.newEntry(file.newTag("tbList"));
    for (const tbRef<tbArray>& array : {still, moving, still})
        array->writeRef(&file, list);
    EXPECT_EQ(file.getNumEntries(), 3);
    ASSERT_TRUE(file.write() && file.open(path.c_str(), "r") && file.readEntry(file.getEntry(0)));
    list = file.getEntry(0);
    const tbRef<tbArray> first = tbArray::readRef(&file, list), second = tbArray::readRef(&file, list);
    ASSERT_TRUE(first && second);
    EXPECT_TRUE(!first->isDynamic() && second->isDynamic());
    EXPECT_EQ(tbArray::readRef(&file, list), first.get());
    EXPECT_EQ(tbArray::readRef(&file, list), nullptr);
}

TEST(Array, DamagedArraysAreNull)
{
    tbtest::FileBuilder builder;
    builder.add("tbList", builder.record().integer(1).integer(2).integer(3).integer(4).integer(5));
    builder.add("tbArray", builder.record().word(9).integer(0));
    builder.add("tbArray", builder.record().word(7).integer(0x20000000).number(1));
    builder.add("tbArray", builder.record().word(5).integer(2).number(1).number(2).number(3));
    builder.add("tbArray", builder.record().word(8).integer(1).bytes("1234567"));
    builder.add("tbArray", builder.record().word(6).integer(-2));
    const tbtest::TempDirectory directory;
    const std::string path = directory.path("arrays.tb");
    tbtest::writeAll(path, builder.build());
    tbFile file;
    ASSERT_TRUE(file.open(path.c_str(), "r") && file.readEntry(file.getEntry(0)));
    tbtest::expectMessage("(tbArray), byte 8: ", 4);
    for (int i = 0; i < 4; ++i)
        EXPECT_EQ(tbArray::readRef(&file, file.getEntry(0)), nullptr) << i;
    const tbRef<tbArray> empty = tbArray::readRef(&file, file.getEntry(0));
    ASSERT_TRUE(empty);
    EXPECT_EQ(empty->getNum(), 0);
}

TEST(GrowableArray, FindsAmongTheUsedAndRemovalMovesOneByteForEachFollowingElement)
{
    OpenArray array;
    array.grow(0);
    EXPECT_EQ(array.getCapacity(), 1);
    array.grow(4);
    EXPECT_EQ(array.getNum(), 0);
    auto* elements = static_cast<short*>(array.getData());
    std::memcpy(elements, "\1\2\3\4\5\6\7\10", 8);
    EXPECT_EQ(array.getIndex(&elements[2]), -1) << "not in use";
    array.setUsed(4);
    EXPECT_EQ(array.getIndex(&elements[2]), 2);
    const short first = elements[0];
    array.removeElem(&first);
    EXPECT_EQ(array.getNum(), 3);
    EXPECT_EQ(std::memcmp(elements, "\3\4\5\4\5\6\7\10", 8), 0);
    array.grow(2);
    EXPECT_EQ(array.getNum(), 2);
}

TEST(TArray, KeepsWithinStorageThatWasMadeSmaller)
{
    tbTArray<int> array;
    for (int i = 0; i < 1000; ++i)
        array.add(i);
    array.setSize(4);
    const int held = array.getCapacity(), first = 0;
    EXPECT_LE(std::size_t(held) * 4, array.getSize());
    EXPECT_EQ(array.getNum(), held);
    EXPECT_EQ(tbTArray<int>(array).getNum(), held);
    EXPECT_EQ(array.add(7), held);
    array.removeElem(&first);
    EXPECT_EQ(array.getNum(), held);
}

TEST(TArray, AppendsItsOwnElements)
{
    tbTArray<double> array;
    array.add(0.5);
    for (int i = 0; i < 100; ++i)
        array.add(array[i]);
    EXPECT_EQ(array.getNum(), 101);
    EXPECT_EQ(array[100], 0.5);
    const tbTArray<double> copy = array;
    EXPECT_EQ(copy.getNum(), 101);
    EXPECT_EQ(*(copy.end() - 1), 0.5);
    EXPECT_TRUE(array.setNum(3));
    EXPECT_FALSE(array.setNum(-1));
}
