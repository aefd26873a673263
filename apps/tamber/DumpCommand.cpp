#include "Commands.h"

#include "FileOutput.h"
#include "NativeFile.h"

#include <apps/tamber/native/FindingText.h>
#include <apps/tamber/native/Text.h>

#include <iostream>

namespace
{
// tamber dump: a native file as text.
class DumpCommand : public Command
{
public:
    void define(CommandTable& table) override
    {
        CommandRow& command =
            table.add("dump", "Print a native file as text, for people and version control");
        command.add("FILE", &file, "A native file (.tb)").require();
        command.add("--out", &out, "Write the text there");
        command.notes =
            "'tamber build' makes the same file of the text again, byte for byte, also of a damaged one.\n"
            "No plug-in is loaded. docs/text-format.md describes the text.";
    }

    int run() override
    {
        const std::string text = withNativeFile(file, [this] { return dump(); });
        if (out.empty())
            std::cout << text;
        else
            replaceFile(out, text);
        return 0;
    }

    bool needsKernel() const override { return false; }

private:
    std::string dump() const
    {
        using namespace native;
        Findings findings;
        Image image(openFileSource(file), findings);
        if (!image.hasHeader())
            throw CommandError(file, textOf(findings.getKept().front()));
        return dumpText(image);
    }

    std::string file;
    std::string out;
};
} // namespace

std::unique_ptr<Command> makeDumpCommand()
{
    return std::make_unique<DumpCommand>();
}
