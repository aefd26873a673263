#include "Commands.h"

#include "Json.h"
#include "NativeFile.h"

#include <apps/tamber/native/Check.h>
#include <apps/tamber/native/FindingText.h>

#include <iostream>

namespace
{
using namespace native;

constexpr double MOST_FINDINGS = 1e9;

enum CheckOutcome : int
{
    SOUND = 0,
    WARNINGS = 1,
    ERRORS = 2
};

CheckOutcome resultOf(const Findings& findings)
{
    return findings.count(Severity::ERROR) > 0     ? ERRORS
           : findings.count(Severity::WARNING) > 0 ? WARNINGS
                                                   : SOUND;
}

void printText(const std::string& file, const Findings& findings)
{
    for (const Finding& finding : findings.getKept())
        std::cout << file << ": " << textOf(finding) << '\n';
    if (findings.count() == 0)
    {
        std::cout << file << ": sound\n";
        return;
    }
    std::cout << file << ": " << summaryOf(findings);
    if (findings.getKept().size() < findings.count())
        std::cout << "; the first " << findings.getKept().size() << " are listed";
    std::cout << '\n';
}

void printFinding(Json& out, const Finding& finding)
{
    const KindInfo& info = infoOf(finding.kind);
    out.beginObject();
    out.member("number", int(info.kind)).member("name", info.name).member("severity", nameOf(info.severity));
    out.key("entry");
    if (finding.entry == NO_ENTRY)
        out.null();
    else
        out.value(finding.entry);
    out.member("tag", finding.tag).member("offset", finding.offset);
    out.member("rule", info.rule).member("detail", finding.detail);
    out.endObject();
}

void printJson(const std::string& file, const Findings& findings)
{
    Json out(std::cout);
    out.beginObject();
    out.member("file", file).member("sound", findings.count() == 0);
    out.member("errors", findings.count(Severity::ERROR));
    out.member("warnings", findings.count(Severity::WARNING));
    out.member("notes", findings.count(Severity::NOTE));
    out.key("findings").beginArray();
    for (const Finding& finding : findings.getKept())
        printFinding(out, finding);
    out.endArray().endObject();
}

// tamber check: everything that is wrong with a native file.
class CheckCommand : public Command
{
public:
    void define(CommandTable& table) override
    {
        CommandRow& command = table.add("check", "Say everything that is wrong with a native file");
        command.add("FILE", &file, "A native file (.tb)");
        command.addHidden("--kinds", &kinds, "Print the document that explains every finding");
        command.add("--limit", &limit, "How many findings to list; all are counted")
            .limitQuietly(0, MOST_FINDINGS);
        command.add("--json", &json, "Print JSON instead of text");
        command.notes =
            "Reads strictly, loads no plug-in and starts no kernel. Exit code 0 for a sound file, 1 "
            "for one with\n"
            "warnings only, 2 for one with errors.";
    }

    /// 0 for a sound file, 1 when there are warnings and nothing worse, 2 for errors.
    int run() override
    {
        if (kinds != file.empty())
            throw CommandError("FILE", kinds ? "cannot stand beside --kinds" : "is required");
        if (kinds)
        {
            std::cout << describeKinds();
            return SOUND;
        }
        return withNativeFile(file, [this] { return check(); });
    }

    int getFailureCode() const override { return 2; }
    std::vector<std::pair<int, std::string>> getExitCodes() const override
    {
        return {{0, "The file is sound."},
                {1, "It has warnings."},
                {2, "It has errors or cannot be read; or the command line was wrong."}};
    }
    bool needsKernel() const override { return false; }

private:
    CheckOutcome check() const
    {
        Findings findings(limit);
        Image image(openFileSource(file), findings);
        checkImage(image, findings);
        if (json)
            printJson(file, findings);
        else
            printText(file, findings);
        return resultOf(findings);
    }

    std::string file;
    std::size_t limit = Findings::DEFAULT_LIMIT;
    bool json = false;
    bool kinds = false;
};
} // namespace

std::unique_ptr<Command> makeCheckCommand()
{
    return std::make_unique<CheckCommand>();
}
