#include <apps/tamber/native/Record.h>
#include <plugins/null/tbNullCamera.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/kernel/tbType.h>

#include <gtest/gtest.h>

using namespace native;

TEST(Record, KnowsTheClassesOfTheKernelAndTheirParents)
{
    tbNullCamera::getClassType();
    for (const ClassInfo& info : knownClasses())
        EXPECT_EQ(tbType::findType(info.name) != nullptr, info.nature != ClassInfo::DATA) << info.name;
    for (int i = 0; i < tbType::getNumTypes(); ++i)
    {
        const tbType* type = tbType::getType(i);
        const std::string name = type->getName();
        if (name.rfind("tb", 0) != 0)
            continue; // a test's own
        const ClassInfo* info = findClass(name);
        ASSERT_NE(info, nullptr) << name;
        EXPECT_STREQ(info->parent, type->getParent() ? type->getParent()->getName() : nullptr) << name;
        const tbRef<tbBase> made(type->create());
        const auto nature = !type->isWritable() ? ClassInfo::SERVICE
                            : made.get()        ? ClassInfo::OBJECT
                                                : ClassInfo::ABSTRACT;
        EXPECT_EQ(info->nature, nature) << name;
    }
    EXPECT_TRUE(descendsFrom("TBMESH", "tbGroup"));
    EXPECT_FALSE(descendsFrom("tbGroup", "tbMesh"));
    EXPECT_FALSE(descendsFrom("Stranger", "Stranger2"));
}
