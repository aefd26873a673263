// Lists plug-ins of any name in a file that is opened, beside a planted module in the current directory and on the PATH.
// Nothing may be loaded by the policies that leave both out.
#include <fuzz/support/Check.h>
#include <fuzz/support/InputFile.h>
#include <fuzz/support/NativeFile.h>
#include <fuzz/support/Program.h>

#include <tamber/io/tbFile.h>
#include <tamber/io/tbPlugIn.h>
#include <tamber/io/tbiFileLayout.h>

#include <cstdlib>
#include <filesystem>
#include <string_view>

using tbfuzz::check;
using tbfuzz::InputFile;
using tbfuzz::NativeFile;
using tbfuzz::Program;
using namespace std::string_view_literals;

namespace
{
using Bytes = std::vector<std::uint8_t>;

// Where the list is sound, names and release are the input's.
constexpr std::string_view KNOWN_NAMES[] = {
    "tbPlanted.dll",     "TBPLANTED.SO",           "libtbPlanted.so",   "./tbPlanted.so",
    "tbPlanted-dbg.dll", "..\\planted\\tbPlanted", TB_PLANTED_FILE,     "tbPlanted.dll\0.so"sv,
    "tbKernel.dll",      "tbPortableKernel.dll",   "file://tbPlanted.", "c:tbPlanted.dll",
};

void putInt(Bytes& data, std::uint32_t value)
{
    data.resize((data.size() + 3) / 4 * 4 + 4);
    tbiFileLayout::store(data.data() + data.size() - 4, value);
}

void putText(Bytes& data, const std::string& text)
{
    putInt(data, std::uint32_t(text.size()) + 1);
    data.insert(data.end(), text.begin(), text.end());
    data.push_back(0);
}

std::string name(Program& program)
{
    const int kind = program.byte();
    std::string text;
    if (kind < 128)
        text = KNOWN_NAMES[std::size_t(kind) % std::size(KNOWN_NAMES)];
    const std::string more = program.bytes(program.index(32));
    return text.insert(std::min(text.size(), std::size_t(kind % 16)), more);
}

Bytes soundList(Program& program)
{
    const int number = 1 + program.index(8);
    Bytes data;
    putInt(data, std::uint32_t(number));
    for (int i = 0; i < number; ++i)
    {
        for (int k = 0; k < 3; ++k)
            putText(data, "x");
        putText(data, name(program));
        for (int k = 0; k < 3; ++k)
            putInt(data, program.word());
    }
    return data;
}

void load(const InputFile& input, tbPlugIn::SEARCH_POLICY policy)
{
    const int before = tbPlugIn::getNum();
    tbPlugIn::setSearchPolicy(policy);
    tbFile file;
    check(file.open(input.path(), "r"), "a sound file opens");
    tbPlugIn::loadPlugIns(&file);
    check(tbPlugIn::getNum() == before, "nothing is loaded");
}

bool plant()
{
    const std::string folder = std::filesystem::path(TB_PLANTED_FILE).parent_path().string();
    std::filesystem::current_path(folder);
    setenv("PATH", (folder + ":.:").c_str(), 1);
    unsetenv("TAMBER_PLUGIN_PATH");
    return true;
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* bytes, std::size_t size)
{
    static const InputFile input("plugins.tb");
    [[maybe_unused]] static const bool planted = plant();
    Program program(bytes, size);
    NativeFile::Entry entry;
    if (program.byte() % 4 == 0)
        entry.data.assign(bytes, bytes + size);
    else
        entry.data = soundList(program);
    entry.size = std::uint32_t(entry.data.size());
    NativeFile file;
    file.add("tbPlugIns", entry);
    input.set(file.put());
    load(input, tbPlugIn::SEARCH_NONE);
    load(input, tbPlugIn::SEARCH_APP);
    return 0;
}
