#include "Commands.h"

#include "FileOutput.h"
#include "NativeFile.h"

#include <apps/tamber/native/Text.h>

namespace
{
// tamber build: the native file of a text.
class BuildCommand : public Command
{
public:
    void define(CommandTable& table) override
    {
        CommandRow& command = table.add("build", "Make the native file of a text that 'tamber dump' printed");
        command.add("TEXT", &file, "The text").require();
        command.add("OUT", &out, "The native file (.tb)").require();
        command.notes =
            "OUT is replaced once the file is complete. No plug-in is loaded. docs/text-format.md describes\n"
            "the text.";
    }

    int run() override
    {
        const std::string text = withNativeFile(file, [this] { return readText(); });
        try
        {
            const std::vector<unsigned char> bytes = native::buildText(text);
            replaceFile(out, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
            return 0;
        }
        catch (const native::TextError& error)
        {
            throw CommandError(file, error.what());
        }
    }

    bool needsKernel() const override { return false; }

private:
    std::string readText() const
    {
        const auto source = native::openFileSource(file);
        std::string text(std::size_t(source->getLength()), '\0');
        if (!source->read(0, text.data(), text.size()))
            throw native::SourceError("cannot be read");
        return text;
    }

    std::string file;
    std::string out;
};
} // namespace

std::unique_ptr<Command> makeBuildCommand()
{
    return std::make_unique<BuildCommand>();
}
