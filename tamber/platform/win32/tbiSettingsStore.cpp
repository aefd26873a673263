#include <tamber/platform/tbiSettingsStore.h>

#include <cstring>

#include <windows.h>

namespace
{

constexpr char KEY[] = "SOFTWARE\\QRM\\Tamber";
constexpr char KEY_CLASS[] = "Tamber";

class Key
{
public:
    ~Key()
    {
        if (handle)
            RegCloseKey(handle);
    }
    bool openForReading()
    {
        return RegOpenKeyExA(HKEY_LOCAL_MACHINE, KEY, 0, KEY_READ, &handle) == ERROR_SUCCESS;
    }
    bool openForWriting()
    {
        char keyClass[sizeof KEY_CLASS];
        std::memcpy(keyClass, KEY_CLASS, sizeof keyClass);
        return RegCreateKeyExA(HKEY_LOCAL_MACHINE, KEY, 0, keyClass, REG_OPTION_NON_VOLATILE, KEY_WRITE,
                               nullptr, &handle, nullptr) == ERROR_SUCCESS;
    }
    HKEY get() const { return handle; }

private:
    HKEY handle = nullptr;
};

bool write(const char* name, DWORD type, const void* bytes, std::size_t size)
{
    Key key;
    return key.openForWriting() && RegSetValueExA(key.get(), name, 0, type, static_cast<const BYTE*>(bytes),
                                                  static_cast<DWORD>(size)) == ERROR_SUCCESS;
}

} // namespace

int tbiReadSetting(const char* name, void* bytes, std::size_t size)
{
    Key key;
    if (!key.openForReading())
        return -1;
    DWORD length = static_cast<DWORD>(size);
    DWORD type = 0;
    if (RegQueryValueExA(key.get(), name, nullptr, &type, static_cast<BYTE*>(bytes), &length) !=
        ERROR_SUCCESS)
        return -1;
    return static_cast<int>(length);
}

bool tbiWriteSettingNumber(const char* name, unsigned int value)
{
    const DWORD word = value;
    return write(name, REG_DWORD, &word, sizeof word);
}

bool tbiWriteSettingText(const char* name, const char* text)
{
    return write(name, REG_SZ, text, std::strlen(text) + 1);
}
