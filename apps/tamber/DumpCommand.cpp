#include "DumpCommand.h"

#include "CommandError.h"
#include "FileOutput.h"

#include <apps/tamber/native/Text.h>

#include <CLI/CLI.hpp>

#include <iostream>

void DumpCommand::define(CLI::App& app)
{
    CLI::App& command = addTo(app, "dump", "Print a native file as text, for people and version control");
    command.add_option("FILE", file, "A native file (.tb)")->required();
    command.add_option("--out", out, "Write the text there")->type_name("TEXT");
    command.footer(
        "'tamber build' makes the same file of the text again, byte for byte, also of a damaged one.\n"
        "No plug-in is loaded. docs/text-format.md describes the text.");
}

int DumpCommand::run()
{
    using namespace native;
    try
    {
        Findings findings;
        Image image(openFileSource(file), findings);
        if (!image.hasHeader())
            throw CommandError(file, "is no native file");
        const std::string text = dumpText(image);
        if (out.empty())
            std::cout << text;
        else
            replaceFile(out, text);
        return 0;
    }
    catch (const SourceError& error)
    {
        throw CommandError(file, error.what());
    }
}
