// Settings in a text file of lines name=value, where a value is a number 0x1234abcd or a text in quotes with \\, \"
// and \n escaped. Names compare without case. The file is replaced as a whole, so that a crash never loses it.
#include <tamber/platform/tbiSettingsStore.h>

#include <tamber/kernel/tbiMemoryWatch.h>
#include <tamber/platform/tbiFile.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <string>
#include <vector>

#include <strings.h>

namespace
{

namespace fs = std::filesystem;

fs::path settingsFile()
{
    if (const char* named = std::getenv("TAMBER_SETTINGS"); named && *named)
        return named;
    if (const char* config = std::getenv("XDG_CONFIG_HOME"); config && *config)
        return fs::path(config) / "tamber" / "settings.ini";
    if (const char* home = std::getenv("HOME"); home && *home)
        return fs::path(home) / ".config" / "tamber" / "settings.ini";
    return {};
}

// False when there is a file that cannot be read whole, which must then not be replaced.
bool readLines(const fs::path& file, std::vector<std::string>& lines)
{
    std::error_code error;
    const fs::file_status status = fs::status(file, error);
    if (!fs::is_regular_file(status))
        return status.type() == fs::file_type::not_found;
    std::ifstream in(file);
    for (std::string line; std::getline(in, line);)
        lines.push_back(line);
    return in.eof() && !in.bad();
}

bool isLineOf(const std::string& line, const char* name)
{
    const std::size_t equals = line.find('=');
    return equals != std::string::npos && equals == std::strlen(name) &&
           strncasecmp(line.c_str(), name, equals) == 0;
}

bool isWritableName(const char* name)
{
    return name && *name && !std::strpbrk(name, "=\r\n");
}

std::string quote(const char* text)
{
    std::string quoted = "\"";
    for (; *text; ++text)
    {
        if (*text == '\n')
            quoted += "\\n";
        else if (*text == '\\' || *text == '"')
            (quoted += '\\') += *text;
        else
            quoted += *text;
    }
    return quoted + '"';
}

std::string unquote(const std::string& value)
{
    std::string text;
    for (std::size_t i = 1; i < value.size() && value[i] != '"'; ++i)
    {
        if (value[i] == '\\' && i + 1 < value.size())
            text += value[++i] == 'n' ? '\n' : value[i];
        else
            text += value[i];
    }
    return text;
}

bool replaceFile(const fs::path& file, const std::vector<std::string>& lines)
{
    std::string content;
    for (const std::string& line : lines)
        (content += line) += '\n';
    tbiReplacement replacement;
    if (!tbiBeginReplacement(replacement, file.c_str()))
        return false;
    if (tbiWriteFile(replacement.descriptor, content.data(), content.size(), 0))
        return tbiFinishReplacement(replacement, std::int64_t(content.size()));
    tbiAbandonReplacement(replacement);
    return false;
}

bool writeValue(const char* name, const std::string& value)
{
    const fs::path file = settingsFile();
    std::error_code error;
    if (file.empty() || !isWritableName(name))
        return false;
    if (file.has_parent_path())
        fs::create_directories(file.parent_path(), error);
    std::vector<std::string> lines;
    if (!readLines(file, lines))
        return false;
    const std::string line = std::string(name) + '=' + value;
    bool found = false;
    for (std::string& old : lines)
    {
        if (!found && isLineOf(old, name))
        {
            old = line;
            found = true;
        }
    }
    if (!found)
        lines.push_back(line);
    return replaceFile(file, lines);
}

int readValue(const char* name, void* bytes, std::size_t size)
{
    std::vector<std::string> lines;
    readLines(settingsFile(), lines);
    for (const std::string& line : lines)
    {
        if (!isLineOf(line, name))
            continue;
        const std::string value = line.substr(line.find('=') + 1);
        if (!value.empty() && value[0] == '"')
        {
            const std::string text = unquote(value);
            if (text.size() + 1 > size)
                return -1;
            std::memcpy(bytes, text.c_str(), text.size() + 1);
            return int(text.size() + 1);
        }
        char* end = nullptr;
        const auto number = std::uint32_t(std::strtoul(value.c_str(), &end, 0));
        if (end == value.c_str() || sizeof number > size)
            return -1;
        std::memcpy(bytes, &number, sizeof number);
        return int(sizeof number);
    }
    return -1;
}

} // namespace

int tbiReadSetting(const char* name, void* bytes, std::size_t size)
{
    return name ? tbiWithoutThrow(-1, [=] { return readValue(name, bytes, size); }) : -1;
}

bool tbiWriteSettingNumber(const char* name, unsigned int value)
{
    char text[16];
    std::snprintf(text, sizeof text, "0x%08x", value);
    return tbiWithoutThrow(false, [&] { return writeValue(name, text); });
}

bool tbiWriteSettingText(const char* name, const char* text)
{
    return text && tbiWithoutThrow(false, [=] { return writeValue(name, quote(text)); });
}
