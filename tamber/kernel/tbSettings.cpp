#include <tamber/kernel/tbSettings.h>

#include <tamber/kernel/tbMessage.h>
#include <tamber/platform/tbiSettingsStore.h>

#include <bit>
#include <cstring>

namespace
{

constexpr std::size_t TEXT_SIZE = 256;

// Whatever the stored type is, its first four bytes count.
bool readWord(const char* name, std::uint32_t& word)
{
    std::uint32_t bytes = 0;
    if (!name || tbiReadSetting(name, &bytes, sizeof bytes) < 0)
        return false;
    word = bytes;
    return true;
}

bool reportWrite(const char* name, bool written)
{
    if (!written)
        tbMessage("Cannot write key <%s> to the registry.\n", name ? name : "");
    return written;
}

} // namespace

bool tbReadRegistry(const char* name, int& value)
{
    std::uint32_t word = 0;
    if (!readWord(name, word))
        return false;
    value = std::bit_cast<int>(word);
    return true;
}

bool tbReadRegistry(const char* name, float& value)
{
    std::uint32_t word = 0;
    if (!readWord(name, word))
    {
        // The readers of numbers and texts stay silent: programs probe with them.
        tbMessage("Cannot read key <%s> from the registry.\n", name ? name : "");
        return false;
    }
    value = std::bit_cast<float>(word);
    return true;
}

bool tbReadRegistry(const char* name, char* text)
{
    char bytes[TEXT_SIZE] = {};
    if (!name || !text)
        return false;
    const int length = tbiReadSetting(name, bytes, sizeof bytes);
    if (length < 0)
        return false;
    bytes[TEXT_SIZE - 1] = 0;
    std::memcpy(text, bytes, std::strlen(bytes) + 1);
    return true;
}

bool tbWriteRegistry(const char* name, int value)
{
    return reportWrite(name, name && tbiWriteSettingNumber(name, std::bit_cast<std::uint32_t>(value)));
}

bool tbWriteRegistry(const char* name, float value)
{
    return reportWrite(name, name && tbiWriteSettingNumber(name, std::bit_cast<std::uint32_t>(value)));
}

bool tbWriteRegistry(const char* name, const char* text)
{
    return reportWrite(name, name && text && tbiWriteSettingText(name, text));
}
