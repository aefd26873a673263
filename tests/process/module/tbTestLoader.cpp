// A loader for tests: files "*.tst", each of which becomes one object of the module's own class, but for those that
// have the loader misbehave.
#include <tamber/io/tbLoader.h>
#include <tamber/kernel/tbBase.h>

#include <tamber/kernel/tbMessage.h>

#include <chrono>
#include <cstdlib>
#include <fstream>
#include <string>
#include <thread>
#include <vector>

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

void misbehave(const std::string& how)
{
    static std::vector<std::string> blocks;
    if (how == "crash")
        std::abort();
    if (how == "leave")
        std::_Exit(5);
    while (how == "eat")
        blocks.emplace_back(std::size_t{1} << 24, 'x');
    if (how == "ask")
        blocks.emplace_back(std::size_t{1} << (8 * sizeof(void*) - 2), 'x');
    for (volatile unsigned turns = 0; how == "spin";)
        turns = turns + 1;
    if (how == "sleep")
        std::this_thread::sleep_for(std::chrono::minutes(5));
    if (how == "speak")
        tbMessage("the loader speaks\n");
}

class TestLoader final : public tbLoader
{
public:
    TestLoader() : tbLoader("tbTestLoader.dll")
    {
        setName("Test loader");
        setRelease(3, 2, 1, "today");
        addExtension("other");
        addExtension("tst");
        addExportExtension("tst");
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
        misbehave(line);
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
