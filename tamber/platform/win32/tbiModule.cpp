#include <tamber/platform/tbiModule.h>

#define WIN32_LEAN_AND_MEAN
#include <windows.h>

#include <algorithm>

namespace
{

constexpr DWORD LONGEST_ANSWER = 32768;

std::string withoutSeparator(std::string directory)
{
    while (directory.size() > 3 && (directory.back() == '\\' || directory.back() == '/'))
        directory.pop_back();
    return directory;
}

std::string directoryOf(const std::string& path)
{
    const std::size_t separator = path.find_last_of("/\\");
    return separator == std::string::npos ? std::string() : withoutSeparator(path.substr(0, separator + 1));
}

template <class Call>
std::string pathFrom(Call call)
{
    std::string path(LONGEST_ANSWER, '\0');
    const DWORD n = call(path.data(), LONGEST_ANSWER);
    path.resize(n < LONGEST_ANSWER ? n : 0);
    return path;
}

std::string lastErrorText()
{
    return "error " + std::to_string(GetLastError());
}

} // namespace

HINSTANCE tbiFindModule(const std::string& moduleName)
{
    if (HMODULE module = GetModuleHandleA(moduleName.c_str()))
        return module;
    const std::size_t ending = moduleName.rfind('.');
    if (ending == std::string::npos)
        return nullptr;
    return GetModuleHandleA((moduleName.substr(0, ending) + "-DBG" + moduleName.substr(ending)).c_str());
}

HINSTANCE tbiLoadModule(const char* path, std::string& error)
{
    std::string native = path;
    std::replace(native.begin(), native.end(), '/', '\\');
    DWORD mode = 0; // no box on the screen that waits for somebody
    SetThreadErrorMode(SEM_FAILCRITICALERRORS | SEM_NOOPENFILEERRORBOX, &mode);
    HMODULE module = nullptr;
    if (native.find('\\') == std::string::npos)
    {
        module = LoadLibraryA(native.c_str());
    }
    else
    {
        const std::string absolute = pathFrom(
            [&](char* text, DWORD size) { return GetFullPathNameA(native.c_str(), size, text, nullptr); });
        module = LoadLibraryExA(absolute.c_str(), nullptr,
                                LOAD_LIBRARY_SEARCH_DLL_LOAD_DIR | LOAD_LIBRARY_SEARCH_DEFAULT_DIRS);
    }
    if (!module)
        error = lastErrorText();
    SetThreadErrorMode(mode, nullptr);
    return module;
}

bool tbiFreeModule(HINSTANCE module)
{
    return FreeLibrary(module) != 0;
}

std::string tbiModulePath(HINSTANCE module)
{
    if (!module)
        return {};
    return pathFrom([&](char* text, DWORD size) { return GetModuleFileNameA(module, text, size); });
}

std::string tbiExecutableDirectory()
{
    return directoryOf(
        pathFrom([](char* text, DWORD size) { return GetModuleFileNameA(nullptr, text, size); }));
}

std::string tbiCurrentDirectory()
{
    return withoutSeparator(
        pathFrom([](char* text, DWORD size) { return GetCurrentDirectoryA(size, text); }));
}

std::string tbiLibraryDirectory()
{
    HMODULE module = nullptr;
    if (!GetModuleHandleExA(GET_MODULE_HANDLE_EX_FLAG_FROM_ADDRESS |
                                GET_MODULE_HANDLE_EX_FLAG_UNCHANGED_REFCOUNT,
                            reinterpret_cast<const char*>(&tbiLibraryDirectory), &module))
        return {};
    return directoryOf(tbiModulePath(module));
}

std::vector<tbiModuleDirectory> tbiSharedDirectories(bool withSystem)
{
    if (!withSystem)
        return {{tbiLibraryDirectory(), "library"}};
    const std::string system =
        pathFrom([](char* text, DWORD size) { return DWORD(GetSystemDirectoryA(text, size)); });
    const std::string windows =
        pathFrom([](char* text, DWORD size) { return DWORD(GetWindowsDirectoryA(text, size)); });
    return {{withoutSeparator(system), "system"}, {withoutSeparator(windows), "system"}};
}

std::vector<std::string> tbiListFiles(const std::string& directory)
{
    std::vector<std::string> names;
    WIN32_FIND_DATAA found = {};
    const HANDLE search = FindFirstFileA((directory + "\\*").c_str(), &found);
    if (search == INVALID_HANDLE_VALUE)
        return names;
    do
    {
        if ((found.dwFileAttributes & FILE_ATTRIBUTE_DIRECTORY) == 0)
            names.emplace_back(found.cFileName);
    } while (FindNextFileA(search, &found));
    FindClose(search);
    std::sort(names.begin(), names.end());
    return names;
}

const char* tbiModuleEnding()
{
    return ".dll";
}

char tbiSeparator()
{
    return '\\';
}

char tbiListSeparator()
{
    return ';';
}

bool tbiIsAbsolutePath(const std::string& path)
{
    const bool drive = path.size() > 2 && path[1] == ':' && (path[2] == '\\' || path[2] == '/');
    return drive || path.starts_with("\\\\");
}

// Rights are left to the system's own lists here.
bool tbiOthersMayWrite(const std::string&)
{
    return false;
}

std::string tbiPathKey(const std::string& path)
{
    std::string key = withoutSeparator(pathFrom(
        [&](char* text, DWORD size) { return GetFullPathNameA(path.c_str(), size, text, nullptr); }));
    CharLowerBuffA(key.data(), DWORD(key.size()));
    return key;
}
