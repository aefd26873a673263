// Takes any bytes as a text and as a file: what a text builds, and any file that has a header, comes back from its own
// text byte for byte.
#include <fuzz/support/Check.h>

#include <apps/tamber/native/Text.h>

#include <cstdint>

using tbfuzz::check;
using Bytes = std::vector<unsigned char>;

namespace
{
constexpr std::size_t LONGEST = 1 << 20; // of a file that is dumped: a text may say that it is long

void dumpAndBuild(const Bytes& bytes)
{
    native::Findings findings;
    native::Image image(native::makeMemorySource(bytes), findings);
    if (image.hasHeader())
        check(native::buildText(native::dumpText(image)) == bytes, "a file's text builds the same file");
}

void buildAny(std::string_view text)
{
    Bytes bytes;
    try
    {
        bytes = native::buildText(text);
    }
    catch (const native::TextError& error)
    {
        check(*error.what() != 0, "a text that is refused has its reason");
        return;
    }
    if (bytes.size() <= LONGEST)
        dumpAndBuild(bytes);
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    dumpAndBuild(Bytes(data, data + size));
    buildAny({reinterpret_cast<const char*>(data), size});
    return 0;
}
