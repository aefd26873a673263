#include <tamber/kernel/tbType.h>

#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbRef.h>
#include <tests/support/FileNode.h>
#include <tests/support/TestScene.h>

#include <gtest/gtest.h>

#include <string>
#include <vector>

using tbtest::FileNode;
using tbtest::named;

namespace
{

class TypeTestBird : public FileNode
{
    TB_CLASS(TypeTestBird, FileNode)

public:
    TypeTestBird() { initInstance(); }

protected:
    ~TypeTestBird() override { deleteInstance(); }
};

class TypeTestAbstract : public tbBase
{
    TB_CLASS(TypeTestAbstract, tbBase)

public:
    virtual void act() = 0;

protected:
    TypeTestAbstract() { initInstance(); }
    ~TypeTestAbstract() override { deleteInstance(); }
};

class TypeTestConcrete : public TypeTestAbstract
{
public:
    void act() override {}
};

TB_DEFINE_CLASS(TypeTestBird, FileNode)
TB_DEFINE_ABSTRACT_CLASS(TypeTestAbstract, tbBase)

int initCalls = 0;

tbBase* makeNothing()
{
    return nullptr;
}

void initLazy(tbPlugIn* plugIn)
{
    ++initCalls;
    new tbType(tbBase::getClassType(), "TypeTestLazy", makeNothing, nullptr, plugIn);
}

std::vector<std::string> names(tbType* type)
{
    std::vector<std::string> result;
    for (int i = 0; i < type->getNum(true); ++i)
        result.push_back(type->get(i, true)->getName());
    return result;
}

} // namespace

TEST(Type, RegisteredClassIsSetUpOnFirstLookUpWhateverItsCase)
{
    initCalls = 0;
    tbType::registerClass("TypeTestLazy", initLazy, nullptr);
    EXPECT_EQ(initCalls, 0);
    tbType* type = tbType::findType("TYPETESTLAZY");
    ASSERT_NE(type, nullptr);
    EXPECT_STREQ(type->getName(), "TypeTestLazy");
    EXPECT_EQ(tbType::findType("typetestlazy"), type);
    EXPECT_EQ(initCalls, 1);
    EXPECT_TRUE(type->deleteType());
    EXPECT_EQ(tbType::findType("TypeTestLazy"), nullptr);
}

TEST(Type, UnknownAndAbstractNamesMakeNothing)
{
    const int types = tbType::getNumTypes();
    EXPECT_EQ(tbType::createInstance("TypeTestNobody"), nullptr);
    EXPECT_EQ(tbType::createInstance(nullptr), nullptr);
    EXPECT_EQ(tbType::getNumTypes(), types);
    TypeTestAbstract::registerClass(nullptr);
    EXPECT_EQ(tbType::createInstance("TypeTestAbstract"), nullptr);
    const tbRef<TypeTestAbstract> concrete(new TypeTestConcrete); // a class without a line of its own
    EXPECT_EQ(TypeTestAbstract::get(0, false), concrete.get());
}

TEST(Type, IsSetUpThoughAnotherClassOfItsNameIsRegistered)
{
    TypeTestAbstract::getClassType()->deleteType();
    tbType::registerClass(
        "TypeTestAbstract", [](tbPlugIn*) {}, nullptr);
    const tbRef<tbBase> object(new TypeTestConcrete);
    EXPECT_EQ(TypeTestAbstract::getNum(false), 1);
}

TEST(Type, EnumeratesOwnInstancesBeforeThoseOfDerivedTypes)
{
    const tbRef<tbBase> bird1 = named("bird1", new TypeTestBird);
    const tbRef<tbBase> animal = named("animal", new FileNode);
    const tbRef<tbBase> bird2 = named("bird2", new TypeTestBird);
    tbType* type = FileNode::getClassType();
    EXPECT_EQ(type->getNum(false), 1);
    EXPECT_EQ(names(type), (std::vector<std::string>{"animal", "bird1", "bird2"}));
    EXPECT_EQ(type->get(3, true), nullptr);
    EXPECT_EQ(TypeTestBird::get(1, true), bird2.get());
}

TEST(Type, FindStepsThroughInstancesOfOneName)
{
    const tbRef<tbBase> a = named("x", new FileNode);
    const tbRef<tbBase> b = named("X", new TypeTestBird);
    const tbRef<tbBase> other = named("y", new TypeTestBird);
    EXPECT_EQ(FileNode::find("x", nullptr, true), a.get());
    EXPECT_EQ(FileNode::find("x", a.get(), true), b.get());
    EXPECT_EQ(FileNode::find("x", b.get(), true), nullptr);
    EXPECT_EQ(FileNode::find("x", other.get(), true), nullptr);
    EXPECT_EQ(FileNode::find("x", a.get(), false), nullptr);
}

TEST(Type, LivesUntilItsLastInstanceGoes)
{
    tbBase* bird = new TypeTestBird;
    bird->ref();
    EXPECT_FALSE(TypeTestBird::getClassType()->deleteType());
    EXPECT_EQ(TypeTestBird::getNum(false), 1);
    bird->unRef();
    EXPECT_EQ(TypeTestBird::getNum(false), 0);
    EXPECT_EQ(tbType::findType("TypeTestBird"), nullptr);
}

TEST(Type, HoldsNothingOfTypesThatWereItsChildrenBeforeItWasSetUpAgain)
{
    const tbRef<tbBase> first(new TypeTestBird);
    EXPECT_TRUE(FileNode::getClassType()->deleteType());
    EXPECT_FALSE(TypeTestBird::getClassType()->deleteType());
    const tbRef<tbBase> second(new TypeTestBird);
    EXPECT_EQ(TypeTestBird::getNum(false), 2);
    EXPECT_EQ(FileNode::getNum(false), 0);
}

TEST(Type, HandsItsChildrenToItsParent)
{
    auto* middle = new tbType(tbBase::getClassType(), "TypeTestMiddle", nullptr, nullptr, nullptr);
    auto* leaf = new tbType(middle, "TypeTestLeaf", nullptr, nullptr, nullptr);
    EXPECT_TRUE(leaf->isOfType(middle));
    EXPECT_TRUE(middle->deleteType());
    EXPECT_EQ(leaf->getParent(), tbBase::getClassType());
    EXPECT_TRUE(leaf->deleteType());
}
