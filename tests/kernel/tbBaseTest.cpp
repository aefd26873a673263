#include <tamber/kernel/tbBase.h>

#include <tamber/kernel/tbRef.h>

#include <gtest/gtest.h>

#include <cstring>
#include <string>

namespace
{

std::string deletionOrder;

class BaseTestNamed : public tbBase
{
    TB_CLASS(BaseTestNamed, tbBase)

public:
    BaseTestNamed() { initInstance(); }
    explicit BaseTestNamed(const char* text) : BaseTestNamed() { setName(text); }
    BaseTestNamed(const BaseTestNamed& other) : tbBase(other) { initInstance(); }

    tbBase* createCopy() const override { return new BaseTestNamed(*this); }

    tbRef<tbBase> part;

protected:
    ~BaseTestNamed() override
    {
        deleteInstance();
        if (getName())
            deletionOrder += getName();
        if (!part)
            return;
        part.reset();
        const tbRef<tbBase> itself(this), found(find("part", nullptr, false));
    }
};

TB_DEFINE_CLASS(BaseTestNamed, tbBase)

} // namespace

TEST(Ref, MovesFromAPartOfWhatItLetsGo)
{
    struct Link
    {
        int count = 0;
        tbRef<Link> next;
        void ref() { ++count; }
        void unRef()
        {
            if (--count == 0)
                delete this;
        }
    };
    tbRef<Link> head(new Link);
    head->next = new Link;
    Link* second = head->next.get();
    head = std::move(head->next);
    EXPECT_EQ(head.get(), second);
    EXPECT_EQ(second->count, 1);
}

TEST(Base, CopiesTakeNameAndFlagsAndWithThemAreEqual)
{
    tbRef<BaseTestNamed> source = new BaseTestNamed("tree");
    source->enableDynamic(true);
    source->addAttribute(new BaseTestNamed);
    tbRef<tbBase> copy = source->createCopy();
    EXPECT_STREQ(copy->getName(), "tree");
    EXPECT_TRUE(copy->isDynamic());
    EXPECT_EQ(copy->getRefCount(), 1);
    EXPECT_EQ(copy->getAttribList(), nullptr);
    for (const char* name : {"bush", "", static_cast<const char*>(nullptr), "tree"})
    {
        copy->setName(name);
        EXPECT_EQ(*copy == *source, name && std::strcmp(name, "tree") == 0);
    }
    copy->enableDynamic(false);
    EXPECT_FALSE(*copy == *source);
    EXPECT_TRUE(*tbRef<tbBase>(new BaseTestNamed) == *tbRef<tbBase>(new BaseTestNamed));
}

TEST(Base, WhatDiesTogetherDiesInTheOrderOfNestedReleases)
{
    deletionOrder.clear();
    tbBase* root = new BaseTestNamed("r");
    for (const char* name : {"a", "b"})
    {
        tbBase* inner = new BaseTestNamed(name);
        inner->addAttribute(new BaseTestNamed(name[0] == 'a' ? "1" : "3"));
        inner->addAttribute(new BaseTestNamed(name[0] == 'a' ? "2" : "4"));
        root->addAttribute(inner);
    }
    root->unRef();
    EXPECT_EQ(deletionOrder, "rb43a21");
}

TEST(Base, DestructorsMayHoldWhatTheyFind)
{
    const int before = BaseTestNamed::getNum(false);
    auto* whole = new BaseTestNamed;
    whole->part = new BaseTestNamed("part");
    whole->unRef();
    EXPECT_EQ(BaseTestNamed::getNum(false), before);
}

TEST(Base, LongChainsOfAttributesDieOnAnOrdinaryStack)
{
    const int before = BaseTestNamed::getNum(false);
    tbBase* first = new BaseTestNamed;
    tbBase* last = first;
    for (int i = 0; i < 100000; ++i)
    {
        auto* next = new BaseTestNamed;
        last->addAttribute(next);
        last = next;
    }
    first->unRef();
    EXPECT_EQ(BaseTestNamed::getNum(false), before);
}
