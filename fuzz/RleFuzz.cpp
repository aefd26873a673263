// Packs and unpacks any bytes, beside a decoder in its plainest form.
#include <fuzz/support/Check.h>

#include <tamber/io/tbiRle.h>
#include <tamber/io/tbiUnpacker.h>

#include <algorithm>
#include <cstdint>
#include <memory>
#include <vector>

using tbfuzz::check;
using Bytes = std::vector<unsigned char>;

namespace
{
// False when the bytes end before the pairs do.
bool decode(const Bytes& packed, Bytes& data)
{
    for (std::size_t i = 0; i < packed.size(); i += 2)
    {
        if (packed[i] == 0)
            return true;
        if (i + 1 < packed.size())
            data.insert(data.end(), packed[i], packed[i + 1]);
    }
    return false;
}

int numRuns(const Bytes& data)
{
    int num = 0;
    for (std::size_t i = 0; i < data.size(); ++num)
    {
        std::size_t end = i;
        while (end < data.size() && data[end] == data[i] && end - i < 255)
            ++end;
        i = end;
    }
    return num;
}

void unpackAny(const Bytes& packed)
{
    Bytes expected;
    const bool whole = decode(packed, expected);
    const long long size = tbiRle::unpackedSize(packed.data(), int(packed.size()));
    check(size == (whole ? (long long)expected.size() : -1), "the unpacked size is what the pairs say");
    if (size < 0)
        return;
    const auto data = std::make_unique<unsigned char[]>(expected.size());
    tbiRle::unpack(packed.data(), data.get());
    check(std::equal(expected.begin(), expected.end(), data.get()), "what is unpacked is what the pairs say");

    auto* copy = static_cast<unsigned char*>(tbMemory::malloc(packed.size()));
    std::copy(packed.begin(), packed.end(), copy);
    tbiUnpacker unpacker(copy);
    expected.resize(expected.size() + 9); // zeros
    // Forward in steps that the bytes say, and back to the start now and then.
    std::size_t place = 0;
    for (std::size_t i = 0; i < packed.size() && place < expected.size(); ++i)
    {
        const std::size_t number = std::min<std::size_t>(packed[i], expected.size() - place);
        const auto part = std::make_unique<unsigned char[]>(number);
        unpacker.read(int(place), part.get(), int(number));
        check(std::equal(part.get(), part.get() + number, expected.begin() + std::ptrdiff_t(place)),
              "so is each part of it");
        place = packed[i] % 16 == 15 ? packed[i] / 16 : place + number + packed[i] % 3;
    }
}

void packAny(const Bytes& data)
{
    const auto packed = std::make_unique<unsigned char[]>(data.size());
    const int length = tbiRle::pack(data.data(), int(data.size()), packed.get());
    const int wanted = 2 * numRuns(data) + 1;
    const bool pays = int(data.size()) >= tbiRle::SHORTEST && wanted < int(data.size());
    check(length == (pays ? wanted : 0), "data is packed when and only when that is shorter");
    if (!pays)
        return;
    const Bytes result(packed.get(), packed.get() + length);
    Bytes back;
    check(decode(result, back) && back == data, "what is packed unpacks to the same");
    check(tbiRle::unpackedSize(result.data(), length) == (long long)data.size(), "and to the same size");
}
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    const Bytes bytes(data, data + size);
    unpackAny(bytes);
    packAny(bytes);
    return 0;
}
