// A loader for tests: files "*.tst", each of which becomes one object of the module's own class.
#include <tamber/io/tbLoader.h>
#include <tamber/kernel/tbBase.h>

#include <fstream>
#include <string>

namespace
{

class tbTestLoaded : public tbBase
{
    TB_CLASS(tbTestLoaded, tbBase)

public:
    tbTestLoaded() { initInstance(); }

protected:
    ~tbTestLoaded() override { deleteInstance(); }
};

TB_DEFINE_CLASS(tbTestLoaded, tbBase)

class TestLoader final : public tbLoader
{
public:
    TestLoader() : tbLoader("tbTestLoader.dll")
    {
        setName("Test loader");
        setRelease(3, 2, 1, "today");
        addExtension("other");
        addExtension("tst");
        tbTestLoaded::registerClass(this);
    }

    tbBase* import(const char* path) override
    {
        std::string line;
        std::getline(std::ifstream(path), line);
        if (line.empty())
        {
            setError(LOADER_UNKNOWN_FORMAT);
            setErrorMessage("an empty file");
            return nullptr;
        }
        auto* object = new tbTestLoaded;
        object->setName(line.c_str());
        return object;
    }

    bool exportObject(const tbBase* object, const char* path) override
    {
        std::ofstream out(path);
        out << (object->getName() ? object->getName() : "unnamed");
        return out.good();
    }
};

TestLoader loader;

} // namespace
