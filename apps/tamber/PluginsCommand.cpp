#include "Commands.h"

#include "Json.h"

#include <tamber/io/tbPlugInReport.h>
#include <tamber/kernel/tbVersion.h>

#include <filesystem>
#include <iostream>

namespace
{
using Directory = tbPlugInReport::Directory;
using Module = tbPlugInReport::Module;

constexpr int SOUND = 0;
constexpr int FAULTY = 1;

const char* nameOf(tbPlugIn::SEARCH_POLICY policy)
{
    constexpr const char* NAMES[] = {"all", "app", "none"};
    return NAMES[policy];
}

/// Empty for a module that was never loaded.
std::string versionOf(const Module& module)
{
    const unsigned version = module.version;
    return version == 0 ? std::string()
                        : std::to_string(tbGetMajorVersion(version)) + "." +
                              std::to_string(tbGetMinorVersion(version)) + "." +
                              std::to_string(tbGetBuildVersion(version));
}

bool isFaulty(const Module& module)
{
    return module.state == tbPlugInReport::REFUSED || module.state == tbPlugInReport::FAILED;
}

/// In other directories many a library has a name that could be a plug-in's.
bool isForPlugIns(const Directory& directory)
{
    return directory.source == "TAMBER_PLUGIN_PATH" || directory.source == "program" ||
           directory.source == "installed";
}

/// Loads what was found and nothing stands before: loaders everywhere, as the search does, and all plug-ins where none
/// but plug-ins are put. By name, so that the rules of the search hold.
void loadAll(const tbPlugInReport& report)
{
    for (const Directory& directory : report.directories)
        for (const Module& module : directory.modules)
            if (module.state == tbPlugInReport::UNLOADED ||
                (module.state == tbPlugInReport::FOUND && module.reason.empty() && isForPlugIns(directory)))
                tbPlugIn::load(module.moduleName.c_str());
}

void print(const char* label, const std::string& text)
{
    if (!text.empty())
        std::cout << "    " << label << text << '\n';
}

void print(const Module& module)
{
    const std::string file = std::filesystem::path(module.path).filename().string();
    std::cout << "  " << (file.empty() ? module.moduleName : file) << ": "
              << tbPlugInReport::getStateName(module.state)
              << (module.reason.empty() ? "" : ", " + module.reason) << '\n';
    if (!module.name.empty())
        print("name        ", module.name + (module.company.empty() ? "" : ", " + module.company));
    print("version     ", versionOf(module));
    print("SHA-256     ", module.sha256);
    std::string extensions;
    for (const std::string& extension : module.extensions)
        extensions += (extensions.empty() ? "" : " ") + extension;
    print("extensions  ", extensions);
}

void print(const Directory& directory)
{
    std::cout << directory.path << " (" << directory.source << "): ";
    if (!directory.skipped.empty())
        std::cout << "not searched, " << directory.skipped << '\n';
    else if (directory.modules.empty())
        std::cout << "no plug-in\n";
    else
        std::cout << directory.modules.size() << " found\n";
    for (const Module& module : directory.modules)
        print(module);
}

void print(const tbPlugInReport& report)
{
    std::cout << "search policy: " << nameOf(report.policy) << '\n'
              << "list of plug-ins that may be loaded: " << (report.isListed ? "yes" : "no, all may") << '\n';
    for (const Directory& directory : report.directories)
        print(directory);
    if (!report.others.empty())
        std::cout << "asked for, and in none of these directories:\n";
    for (const Module& module : report.others)
        print(module);
}

void write(Json& json, const std::vector<Module>& modules)
{
    json.beginArray();
    for (const Module& module : modules)
    {
        json.beginObject().member("module", module.moduleName).member("path", module.path);
        json.member("state", tbPlugInReport::getStateName(module.state)).member("reason", module.reason);
        json.member("name", module.name).member("company", module.company);
        json.member("version", versionOf(module)).member("sha256", module.sha256);
        json.key("extensions").beginArray();
        for (const std::string& extension : module.extensions)
            json.value(extension);
        json.endArray().endObject();
    }
    json.endArray();
}

void writeJson(const tbPlugInReport& report)
{
    Json json(std::cout);
    json.beginObject().member("policy", nameOf(report.policy)).member("allowList", report.isListed);
    json.key("directories").beginArray();
    for (const Directory& directory : report.directories)
    {
        json.beginObject().member("path", directory.path).member("source", directory.source);
        json.member("skipped", directory.skipped);
        write(json.key("modules"), directory.modules);
        json.endObject();
    }
    json.endArray();
    write(json.key("others"), report.others);
    json.endObject();
}

int codeOf(const tbPlugInReport& report)
{
    for (const Directory& directory : report.directories)
        for (const Module& module : directory.modules)
            if (isFaulty(module))
                return FAULTY;
    return SOUND;
}

// tamber plugins: where plug-ins are looked for, what lies there, and whether it can be loaded.
class PluginsCommand : public Command
{
public:
    void define(CommandTable& table) override
    {
        CommandRow& command =
            table.add("plugins", "Show where plug-ins are looked for, and load what is found");
        command.add("--json", &asJson, "As JSON");
        command.notes = "Exit code 1 when a plug-in that was found is refused or cannot be loaded.";
    }

    /// 1 when a plug-in that was found is refused or cannot be loaded.
    int run() override
    {
        loadAll(tbPlugIn::report());
        const tbPlugInReport report = tbPlugIn::report();
        if (asJson)
            writeJson(report);
        else
            print(report);
        return codeOf(report);
    }

    bool needsModels() const override { return false; }

private:
    bool asJson = false;
};
} // namespace

std::unique_ptr<Command> makePluginsCommand()
{
    return std::make_unique<PluginsCommand>();
}
