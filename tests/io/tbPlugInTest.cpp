#include <tamber/io/tbPlugIn.h>

#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbRef.h>
#include <tamber/platform/tbiModuleName.h>
#include <tests/support/Messages.h>

#include <gtest/gtest.h>

#include <memory>

namespace
{

class PlugInTestObject : public tbBase
{
    TB_CLASS(PlugInTestObject, tbBase)

public:
    PlugInTestObject() { initInstance(); }

protected:
    ~PlugInTestObject() override { deleteInstance(); }
};

TB_DEFINE_CLASS(PlugInTestObject, tbBase)

} // namespace

TEST(PlugIn, ModuleNamesAreTheSameOnEveryPlatform)
{
    EXPECT_EQ(tbiModuleName("c:\\plugins\\tbFooLoader-dbg.dll"), "TBFOOLOADER.DLL");
    EXPECT_EQ(tbiModuleName("/usr/lib/tamber/tbFooLoader.so"), "TBFOOLOADER.DLL");
    EXPECT_EQ(tbiModuleName("libtbKernel.so.1.2"), "TBKERNEL.DLL");
    EXPECT_EQ(tbiModuleName("tb-dbg-dbg.dll"), "TB-DBG.DLL") << "only the first goes";
    EXPECT_TRUE(tbiIsLoaderFile("TBfooLoader.SO", ".so"));
    EXPECT_FALSE(tbiIsLoaderFile("tbFooLoader-dbg.so", ".so"));
    EXPECT_FALSE(tbiIsLoaderFile("tLoader.so", ".so"));
    EXPECT_TRUE(tbiIsPlugInName("TBFOO.DLL"));
    EXPECT_FALSE(tbiIsPlugInName("TB/X.DLL"));
    EXPECT_FALSE(tbiIsPlugInName("LIBC.SO.6"));
}

TEST(PlugIn, RecordIsListedWhileItLives)
{
    const int before = tbPlugIn::getNum();
    {
        tbtest::expectMessage("Loading plug-in:   TBABSENT.DLL");
        tbPlugIn plugIn("some/tbAbsent-DBG.dll");
        EXPECT_EQ(tbPlugIn::get(before), &plugIn);
        EXPECT_EQ(tbPlugIn::find("tbabsent.dll"), &plugIn);
        EXPECT_FALSE(plugIn.isDynamic()) << "there is no such module";
        plugIn.ref();
        EXPECT_EQ(plugIn.getRefCount(), 0) << "so nothing is counted";
        EXPECT_FALSE(plugIn.unload());
        plugIn.setName("Absent");
        plugIn.setName("Absent one");
        EXPECT_STREQ(plugIn.getName(), "Absent one");
    }
    EXPECT_EQ(tbPlugIn::getNum(), before);
    EXPECT_EQ(tbPlugIn::get(before), nullptr);
    EXPECT_EQ(tbPlugIn::find("tbAbsent.dll"), nullptr);
}

TEST(PlugIn, ItsClassesGoWithItAndWithTheirLastObject)
{
    for (const bool hasObject : {false, true})
    {
        auto plugIn = std::make_unique<tbPlugIn>(nullptr);
        PlugInTestObject::registerClass(plugIn.get());
        tbRef<tbBase> object(hasObject ? new PlugInTestObject : nullptr);
        EXPECT_EQ(plugIn->getNumTypes(), hasObject ? 1 : 0);
        plugIn.reset();
        EXPECT_EQ(tbType::findType("PlugInTestObject") != nullptr, hasObject);
        object.reset();
        EXPECT_EQ(tbType::findType("PlugInTestObject"), nullptr);
    }
}

TEST(PlugIn, MissingModulesAreNamed)
{
    tbtest::expectMessage("Attempting to load plug-in: TBABSENT.DLL ");
    tbtest::expectMessage("Error loading plug-in: TBABSENT.DLL ");
    EXPECT_EQ(tbPlugIn::load("tbAbsent.dll"), nullptr);
    EXPECT_EQ(tbPlugIn::load(nullptr), nullptr);
    EXPECT_EQ(tbPlugIn::load(""), nullptr);
}
