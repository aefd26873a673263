#include "Commands.h"

#include "Json.h"
#include "ModelFile.h"
#include "ModelTree.h"
#include "NativeFile.h"
#include "Table.h"

#include <apps/tamber/native/FindingText.h>
#include <apps/tamber/native/Info.h>
#include <tamber/graph/tbGroup.h>

#include <algorithm>
#include <iostream>

namespace
{
using namespace native;

const char* nameOf(ByteOrder order)
{
    return order == ByteOrder::LITTLE ? "little endian" : "big endian";
}

std::string formatRelease(const PlugInInfo& plugIn)
{
    return std::to_string(plugIn.release[0]) + "." + std::to_string(plugIn.release[1]) + "." +
           std::to_string(plugIn.release[2]);
}

std::string formatCount(std::uint64_t value)
{
    return ::formatCount(static_cast<long long>(value));
}

void printText(const std::string& file, const FileInfo& info)
{
    std::cout << file << ": native file\n"
              << "length      " << formatCount(info.length) << " bytes\n"
              << "byte order  " << nameOf(info.order);
    if (info.swappedEntries > 0)
        std::cout << ", " << formatCount(info.swappedEntries) << " entries in the other";
    std::cout << "\nversion     " << versionText(info.version) << "\nentries     "
              << formatCount(info.numEntries) << ", " << formatCount(info.bytes)
              << " bytes of data\ntags        " << formatCount(info.tags.size()) << "\n\n";

    Table tags({"class", "entries", "bytes", "packed"});
    for (const TagInfo& tag : info.tags)
        tags.addRow({tag.name, formatCount(tag.entries), formatCount(tag.bytes), formatCount(tag.packed)});
    tags.print(std::cout);
    if (info.plugIns.empty())
        return;
    std::cout << '\n';
    Table plugIns({"plug-in", "release", "name", "company", "date"});
    for (const PlugInInfo& plugIn : info.plugIns)
        plugIns.addRow({plugIn.module.empty() ? "(the library itself)" : plugIn.module, formatRelease(plugIn),
                        plugIn.name, plugIn.company, plugIn.date});
    plugIns.print(std::cout);
}

void printJson(const std::string& file, const FileInfo& info)
{
    Json out(std::cout);
    out.beginObject();
    out.member("file", file).member("format", "native").member("length", info.length);
    out.member("byteOrder", info.order == ByteOrder::LITTLE ? "little" : "big");
    out.member("version", versionText(info.version));
    out.member("entries", info.numEntries).member("swappedEntries", info.swappedEntries);
    out.member("bytes", info.bytes);
    out.key("tags").beginArray();
    for (const TagInfo& tag : info.tags)
    {
        out.beginObject().member("class", tag.name).member("entries", tag.entries);
        out.member("bytes", tag.bytes).member("packed", tag.packed).endObject();
    }
    out.endArray().key("plugIns").beginArray();
    for (const PlugInInfo& plugIn : info.plugIns)
    {
        out.beginObject().member("module", plugIn.module).member("release", formatRelease(plugIn));
        out.member("name", plugIn.name).member("company", plugIn.company).member("date", plugIn.date);
        out.endObject();
    }
    out.endArray().endObject();
}

// tamber info: what a native file holds, from its tables alone, or the tree of any model.
class InfoCommand : public Command
{
public:
    void define(CommandTable& table) override
    {
        CommandRow& command = table.add("info", "Show what a native file or a model holds");
        command.add("FILE", &file, "A native file (.tb), or a model of any format that a loader reads")
            .require();
        command.add("--tree", &tree, "Read the model and show its nodes");
        command.add("--json", &json, "Print JSON instead of text");
        command.add("--depth", &limits.depth, "How many levels of the tree to show").limit(0, 1024);
        command.add("--lines", &limits.nodes, "How many nodes of the tree to show").limit(0, 100000000);
        command.notes = "Of a native file only the tables are read, unless --tree is given. Other models are "
                        "read, and summed\n"
                        "up unless --tree is given.";
    }

    int run() override { return needsKernel() ? showModel() : showFile(); }

    /// The tables of a native file are read without it.
    bool needsKernel() const override { return tree || isForeignFile(file); }

private:
    int showFile() const
    {
        return withNativeFile(file,
                              [this]
                              {
                                  Findings findings;
                                  Image image(openFileSource(file), findings);
                                  if (image.hasHeader())
                                      print(collectInfo(image, findings));
                                  if (!image.hasHeader() || findings.count(Severity::ERROR) > 0)
                                      throw CommandError(file, textOf(findings.getKept().front()));
                                  return 0;
                              });
    }

    void print(const FileInfo& info) const
    {
        if (json)
            printJson(file, info);
        else
            printText(file, info);
    }

    int showModel() const
    {
        const tbRef<tbGroup> root = loadModel(file);
        TreeLimits shown = limits;
        if (!tree)
            shown.nodes = 0;
        if (json)
            printTreeJson(std::cout, file, *root, shown);
        else
            printTree(std::cout, file, *root, shown);
        return 0;
    }

    std::string file;
    TreeLimits limits;
    bool tree = false;
    bool json = false;
};
} // namespace

std::unique_ptr<Command> makeInfoCommand()
{
    return std::make_unique<InfoCommand>();
}
