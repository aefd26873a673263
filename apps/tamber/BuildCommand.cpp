#include "BuildCommand.h"

#include "CommandError.h"
#include "FileOutput.h"

#include <apps/tamber/native/Text.h>

#include <CLI/CLI.hpp>

void BuildCommand::define(CLI::App& app)
{
    CLI::App& command = addTo(app, "build", "Make the native file of a text that 'tamber dump' printed");
    command.add_option("TEXT", file, "The text")->required();
    command.add_option("OUT", out, "The native file (.tb)")->required();
    command.footer(
        "OUT is replaced once the file is complete. No plug-in is loaded. docs/text-format.md describes\n"
        "the text.");
}

int BuildCommand::run()
{
    using namespace native;
    try
    {
        const auto source = openFileSource(file);
        std::string text(std::size_t(source->getLength()), '\0');
        if (!source->read(0, text.data(), text.size()))
            throw SourceError("cannot be read");
        const std::vector<unsigned char> bytes = buildText(text);
        replaceFile(out, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        return 0;
    }
    catch (const SourceError& error)
    {
        throw CommandError(file, error.what());
    }
    catch (const TextError& error)
    {
        throw CommandError(file, error.what());
    }
}
