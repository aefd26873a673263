#include "Commands.h"

#include "Json.h"
#include "ModelFile.h"
#include "NativeFile.h"

#include <apps/tamber/native/Diff.h>
#include <apps/tamber/native/FindingText.h>
#include <tamber/graph/tbGroup.h>

#include <filesystem>
#include <iostream>
#include <optional>
#include <random>
#include <string>
#include <system_error>

namespace
{
using namespace native;

constexpr const char* NATIVE_EXTENSION = ".tb";
constexpr double MOST_DIFFERENCES = 1e9;

enum DiffOutcome : int
{
    EQUAL = 0,
    DIFFERENT = 1
};

// A file of its own in the system's directory for such files, gone with it.
class TemporaryFile
{
public:
    TemporaryFile()
    {
        std::random_device random;
        const auto directory = std::filesystem::temp_directory_path();
        do
            path = directory / ("tamber" + std::to_string(random()) + NATIVE_EXTENSION);
        while (std::filesystem::exists(path));
    }
    TemporaryFile(const TemporaryFile&) = delete;
    TemporaryFile& operator=(const TemporaryFile&) = delete;
    ~TemporaryFile()
    {
        std::error_code ignored;
        std::filesystem::remove(path, ignored);
    }

    std::filesystem::path path;
};

// One of the two as a native file.
class Operand
{
public:
    explicit Operand(const std::string& path)
    {
        std::string source = path;
        if (isForeignFile(path))
        {
            source = imported.emplace().path.string();
            saveModel(*loadModel(path), source);
        }
        Findings findings;
        withNativeFile(path, [&] { image.emplace(openFileSource(source), findings); });
        if (findings.count(Severity::ERROR) > 0)
            throw CommandError(path, textOf(findings.getKept().front()));
        if (image->getNumEntries() == 0)
            throw CommandError(path, "holds nothing");
    }

    Image& getImage() { return *image; }

private:
    std::optional<TemporaryFile> imported;
    std::optional<Image> image; // closed before its file goes
};

std::string lineOf(const Difference& difference)
{
    const std::string separator = difference.path.empty() || difference.field.empty() ? "" : " ";
    const std::string place = difference.path + separator + difference.field + ": ";
    switch (difference.kind)
    {
    case Difference::VALUE:
    case Difference::UNREADABLE:
    case Difference::MISSING:
        return place + difference.a + " -> " + difference.b;
    case Difference::COUNT:
        return place + difference.a + " of them -> " + difference.b;
    case Difference::CLASS:
        return place + "class " + difference.a + " -> " + difference.b;
    case Difference::SHARING:
        return place + "shared otherwise: " + difference.a + " -> " + difference.b;
    case Difference::MORE:
        return place + difference.a + " more differ";
    }
    return place;
}

void printText(const DiffResult& result)
{
    for (const Difference& difference : result.listed)
        std::cout << lineOf(difference) << '\n';
    if (result.count > result.listed.size())
        std::cout << "and " << result.count - result.listed.size() << " more\n";
    for (const std::string& note : result.notes)
        std::cout << "note: " << note << '\n';
    if (result.count == 0)
        std::cout << "equal\n";
}

void printJson(const std::string& a, const std::string& b, const DiffOptions& options,
               const DiffResult& result)
{
    Json out(std::cout);
    out.beginObject();
    out.member("a", a).member("b", b).member("tolerance", options.tolerance);
    out.member("equal", result.count == 0).member("differences", result.count);
    out.key("listed").beginArray();
    for (const Difference& difference : result.listed)
    {
        out.beginObject();
        out.member("kind", nameOf(difference.kind));
        out.member("path", difference.path).member("field", difference.field);
        out.member("a", difference.a).member("b", difference.b);
        out.endObject();
    }
    out.endArray();
    out.key("notes").beginArray();
    for (const std::string& note : result.notes)
        out.value(note);
    out.endArray().endObject();
}

// tamber diff: what differs between two files or models.
class DiffCommand : public Command
{
public:
    void define(CommandTable& table) override
    {
        CommandRow& command =
            table.add("diff", "Say what differs between two files or models, object by object");
        const char* help = "A native file (.tb), or a model of any format that a loader reads";
        command.add("A", &fileA, help).require();
        command.add("B", &fileB, help).require();
        command
            .add("--tolerance", &options.tolerance,
                 "Numbers that differ by no more, or by no more times the larger, are the same")
            .limitToNotNegative();
        command.add("--limit", &options.limit, "How many differences to list; all are counted")
            .limitQuietly(0, MOST_DIFFERENCES);
        command.add("--json", &json, "Print JSON instead of text");
        command.notes =
            "Byte order, packing, versions and the order of entries are no differences. Exit code 0 for "
            "equal ones,\n"
            "1 for different ones, 2 when either cannot be read. docs/text-format.md says more.";
    }

    /// 0 when they are equal, 1 when they differ.
    int run() override
    {
        Operand a(fileA);
        Operand b(fileB);
        const DiffResult result = withNativeFile(fileA + ", " + fileB, [&]
                                                 { return diffImages(a.getImage(), b.getImage(), options); });
        if (json)
            printJson(fileA, fileB, options, result);
        else
            printText(result);
        return result.count == 0 ? EQUAL : DIFFERENT;
    }

    int getFailureCode() const override { return 2; }
    std::vector<std::pair<int, std::string>> getExitCodes() const override
    {
        return {{0, "They are equal."},
                {1, "They differ."},
                {2, "One of them cannot be read; or the command line was wrong."}};
    }
    /// For models of foreign formats.
    bool needsKernel() const override { return isForeignFile(fileA) || isForeignFile(fileB); }

private:
    std::string fileA;
    std::string fileB;
    native::DiffOptions options;
    bool json = false;
};
} // namespace

std::unique_ptr<Command> makeDiffCommand()
{
    return std::make_unique<DiffCommand>();
}
