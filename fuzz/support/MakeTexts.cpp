// make_texts FOLDER FILE...: writes the text of each native file into the folder, for the target that takes texts.
#include <apps/tamber/native/Text.h>

#include <cstdio>
#include <filesystem>
#include <fstream>
#include <span>

int main(int argc, char** argv)
{
    const std::span arguments(argv, std::size_t(argc));
    if (arguments.size() < 2)
        return 1;
    const std::filesystem::path folder = arguments[1];
    std::filesystem::create_directories(folder);
    for (const char* name : arguments.subspan(2))
    {
        native::Findings findings;
        native::Image image(native::openFileSource(name), findings);
        std::ofstream out(folder / (std::filesystem::path(name).stem().string() + ".txt"), std::ios::binary);
        if (image.hasHeader() && !(out << native::dumpText(image)))
        {
            std::fprintf(stderr, "make_texts: the text of %s cannot be written\n", name);
            return 1;
        }
    }
    return 0;
}
