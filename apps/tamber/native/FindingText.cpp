#include "FindingText.h"

namespace native
{

namespace
{

constexpr const char* INTRODUCTION = R"(# What `tamber check` finds

`tamber check FILE` reads a native file strictly, without the kernel and without any plug-in, and says everything that is
wrong with it: one line for each finding, with its number, its entry, its place in the file and what was found there.

- An **error** means that something of the file cannot be read as it was written; exit code 2.
- A **warning** means that readers mend it or pass over it; exit code 1 when there is nothing worse.
- A **note** is worth knowing and changes nothing; exit code 0.

Places are bytes of the file. What lies in packed data is named by the place of the packed data and its byte in the
unpacked data. The numbers and names are stable: scripts may rely on them.

This page is printed by `tamber check --kinds`.
)";

struct Chapter
{
    int hundred;
    const char* title;
};

constexpr Chapter CHAPTERS[] = {{1, "File and header"}, {2, "Tags"},    {3, "Directory"},
                                {4, "Stored data"},     {5, "Records"}, {6, "Values of classes"},
                                {7, "The graph"}};

std::string counted(std::uint64_t number, const char* noun)
{
    return std::to_string(number) + " " + noun + (number == 1 ? "" : "s");
}

} // namespace

std::string textOf(const Finding& finding)
{
    const KindInfo& info = infoOf(finding.kind);
    std::string text =
        std::string(nameOf(info.severity)) + " " + std::to_string(int(info.kind)) + " " + info.name + ": ";
    if (finding.entry != NO_ENTRY)
        text += "entry " + std::to_string(finding.entry) + " (" +
                (finding.tag.empty() ? "no class" : finding.tag) + "), ";
    else if (!finding.tag.empty())
        text += "tag " + finding.tag + ", ";
    text += "byte " + std::to_string(finding.offset) + ": ";
    return text + (finding.detail.empty() ? info.rule : finding.detail + ". " + info.rule);
}

std::string summaryOf(const Findings& findings)
{
    return counted(findings.count(Severity::ERROR), "error") + ", " +
           counted(findings.count(Severity::WARNING), "warning") + ", " +
           counted(findings.count(Severity::NOTE), "note");
}

std::string describeKinds()
{
    std::string text = INTRODUCTION;
    for (const Chapter& chapter : CHAPTERS)
    {
        text += std::string("\n## ") + chapter.title +
                "\n\n| number | name | severity | what holds | otherwise |\n" +
                "| --- | --- | --- | --- | --- |\n";
        for (const KindInfo& info : allKinds())
            if (int(info.kind) / 100 == chapter.hundred)
                text += "| " + std::to_string(int(info.kind)) + " | " + info.name + " | " +
                        nameOf(info.severity) + " | " + info.rule + " | " + info.why + " |\n";
    }
    return text;
}

} // namespace native
