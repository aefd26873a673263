// A plug-in that shows that its code has run: it adds its name to the file that TAMBER_PLANTED names. Where
// TAMBER_PLANTED_SWAP names a file, that one takes the place of TAMBER_PLANTED_TARGET at this moment.
#include <tamber/io/tbLoader.h>

#include <cstdlib>
#include <filesystem>
#include <fstream>

namespace
{

class Planted final : public tbLoader
{
public:
    Planted() : tbLoader(PLANTED_NAME ".dll")
    {
        setName("Planted");
        setRelease(1, 2, 3, "today");
        addExtension(PLANTED_NAME);
        if (const char* file = std::getenv("TAMBER_PLANTED"))
            std::ofstream(file, std::ios::app | std::ios::binary) << PLANTED_NAME << '\n';
        const char* swap = std::getenv("TAMBER_PLANTED_SWAP");
        const char* target = std::getenv("TAMBER_PLANTED_TARGET");
        std::error_code ignored;
        if (swap && target)
            std::filesystem::rename(swap, target, ignored);
    }

    tbBase* import(const char*) override { return nullptr; }
};

Planted planted;

} // namespace
