#include <tests/native/Specimen.h>

#include <apps/tamber/native/Record.h>
#include <plugins/null/tbNullCamera.h>
#include <tamber/kernel/tbRef.h>

#include <set>

#include <gtest/gtest.h>

using namespace native;

namespace
{
std::vector<std::pair<std::string, std::vector<unsigned char>>> entriesOf(const std::string& bytes,
                                                                          ByteOrder& order)
{
    Findings findings;
    Image image(tbtest::sourceOf(bytes), findings);
    EXPECT_TRUE(image.hasHeader());
    order = image.getOrder();
    std::vector<std::pair<std::string, std::vector<unsigned char>>> entries;
    for (int i = 0; i < image.getNumEntries(); ++i)
    {
        std::vector<unsigned char> data;
        EXPECT_TRUE(image.readData(i, data, findings));
        entries.emplace_back(image.getTagName(i), data);
    }
    EXPECT_EQ(findings.count(Severity::ERROR), 0u);
    return entries;
}
} // namespace

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

TEST(Record, EveryByteThatTheKernelWritesBelongsToAField)
{
    for (const bool swapped : {false, true})
    {
        ByteOrder order;
        std::set<std::string> seen;
        for (const auto& [name, data] : entriesOf(tbtest::everyClassFile(swapped), order))
        {
            const Record record(name, data, order);
            EXPECT_TRUE(record.isWhole()) << name << " ends at " << record.getEnd() << " of " << data.size();
            EXPECT_EQ(record.isKnown(), name != "Unknown");
            std::uint32_t end = 0;
            for (const Field& field : record.getFields())
            {
                const std::uint32_t start = field.counted ? field.countOffset : field.offset;
                EXPECT_GE(start, end) << name << ' ' << field.name;
                EXPECT_LT(start, end + 8) << name << ' ' << field.name;
                for (std::uint32_t i = end; i < start; ++i)
                    EXPECT_EQ(data[i], 0) << name << ' ' << field.name;
                end = field.end();
            }
            seen.insert(name);
        }
        for (const ClassInfo& info : knownClasses())
        {
            const bool stored = info.nature == ClassInfo::OBJECT || info.nature == ClassInfo::DATA;
            EXPECT_EQ(seen.count(info.name), stored ? 1u : 0u) << info.name;
        }
        EXPECT_EQ(order == OWN_ORDER, !swapped);
    }
}
