#include "Commands.h"

#include "ModelFile.h"
#include "Table.h"

#include <tamber/graph/tbGroup.h>

#include <filesystem>
#include <iostream>

namespace
{
// tamber convert: a model of one format becomes a file of another, or of the native one written in another way.
class ConvertCommand : public Command
{
public:
    void define(CommandTable& table) override
    {
        CommandRow& command =
            table.add("convert", "Write a model in another format, or natively in another way");
        command.add("IN", &source, "A model of any format that a loader reads, or a native file (.tb)")
            .require();
        command
            .add("OUT", &target, "The file to write, in the format of its extension; .tb is the native one")
            .require();
        command.add("--compress", &options.compress, "Pack runs of equal bytes (native files only)");
        command.add("--swap", &options.swap,
                    "Write in the byte order that this machine does not have (native files only)");
        command.notes =
            "OUT is written beside its place and put there when it is complete: after a failure, what stood\n"
            "there stands there still. IN and OUT may be the same native file.";
    }

    int run() override
    {
        checkConvertTarget(target, options);
        const tbRef<tbGroup> model = loadModel(source);
        saveModel(*model, target, options);
        std::cout << target << ": " << formatCount(static_cast<long long>(std::filesystem::file_size(target)))
                  << " bytes\n";
        return 0;
    }

private:
    std::string source;
    std::string target;
    NativeOptions options;
};
} // namespace

std::unique_ptr<Command> makeConvertCommand()
{
    return std::make_unique<ConvertCommand>();
}
