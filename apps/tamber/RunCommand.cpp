#include "Commands.h"

#include "FrameLoop.h"
#include "MemoryReport.h"
#include "ModelFile.h"
#include "Table.h"

#include <tamber/graph/tbGroup.h>

#include <iostream>

namespace
{
void addRow(Table& table, const char* name, const Samples& samples, std::string (*format)(double))
{
    table.addRow({name, format(samples.min()), format(samples.median()), format(samples.percentile(0.99))});
}

std::string formatWhole(double value)
{
    return formatCount(static_cast<long long>(value));
}

void printFrames(const FrameResults& results)
{
    Table table({"per frame", "min", "median", "p99"});
    addRow(table, "update ms", results.update, formatMilliseconds);
    addRow(table, "bounds ms", results.bounds, formatMilliseconds);
    addRow(table, "cull ms", results.cull, formatMilliseconds);
    addRow(table, "nodes visited", results.visited, formatWhole);
    addRow(table, "nodes culled", results.culled, formatWhole);
    addRow(table, "meshes drawn", results.drawn, formatWhole);
    addRow(table, "triangles", results.triangles, formatWhole);
    table.print(std::cout);
}

// tamber run: a model goes through a number of frames, and what they cost is printed.
class RunCommand : public Command
{
public:
    void define(CommandTable& table) override
    {
        CommandRow& command = table.add("run", "Run a model through a number of frames and print their cost");
        command.add("MODEL", &model, "A model of any format that a loader reads, or a native file (.tb)")
            .require();
        command.add("--frames", &options.frames, "Number of frames").nameValue("N").limit(1, 1000000);
        command.add("--orbit", &options.orbit, "Move the camera once round the model");
        command.add("--spin", &options.spin, "Turn the model once on itself");
        command.add("--save", &saveFile, "Save the model natively before the frames run").nameValue("FILE");
        command.notes = "Each frame edits the scene, updates it, renews bounds and walks it with a camera "
                        "that culls and\n"
                        "counts but draws nothing. 'nodes culled' counts the transforms found out of sight, "
                        "each with all\n"
                        "that it holds.";
    }

    int run() override
    {
        if (!saveFile.empty())
            checkSaveTarget(saveFile);
        const tbRef<tbGroup> root = loadModel(model);
        if (!saveFile.empty())
            saveModel(*root, saveFile);
        const FrameResults results = runFrames(*root, options);

        std::cout << model << ": " << formatCount(options.frames) << " frames"
                  << (options.orbit ? ", the camera orbits" : "") << (options.spin ? ", the model spins" : "")
                  << "\nfirst update " << formatMilliseconds(results.firstUpdate) << " ms\n\n";
        printFrames(results);
        std::cout << '\n';
        printMemory(std::cout);
        return 0;
    }

private:
    std::string model;
    std::string saveFile;
    FrameOptions options;
};
} // namespace

std::unique_ptr<Command> makeRunCommand()
{
    return std::make_unique<RunCommand>();
}
