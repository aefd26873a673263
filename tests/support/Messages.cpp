#include <tests/support/Messages.h>

#include <tamber/kernel/tbMessage.h>

#include <algorithm>
#include <mutex>
#include <sstream>
#include <utility>

#include <gtest/gtest.h>

namespace tbtest
{
namespace
{
struct Messages
{
    std::mutex mutex;
    std::string came;
    std::vector<std::string> expected;
    std::vector<std::string> allowed;

    std::vector<std::string> takeLines()
    {
        std::istringstream text(std::exchange(came, {}));
        std::vector<std::string> lines;
        for (std::string line; std::getline(text, line);)
            lines.push_back(line);
        return lines;
    }
};

// Messages may come while the process ends, after static objects are gone.
Messages& messages()
{
    static Messages* const theMessages = new Messages;
    return *theMessages;
}

void receiveMessage(const char* text)
{
    std::lock_guard guard(messages().mutex);
    messages().came += text;
}

bool holds(const std::string& line, const std::string& part)
{
    return line.find(part) != std::string::npos;
}

class LineChecker : public testing::EmptyTestEventListener
{
    void OnTestStart(const testing::TestInfo&) override
    {
        std::lock_guard guard(messages().mutex);
        messages().came.clear();
        messages().expected.clear();
        messages().allowed.clear();
    }

    void OnTestEnd(const testing::TestInfo&) override
    {
        std::lock_guard guard(messages().mutex);
        std::vector<std::string> lines = messages().takeLines();
        for (const std::string& part : messages().expected)
        {
            const auto line = std::find_if(lines.begin(), lines.end(),
                                           [&](const std::string& came) { return holds(came, part); });
            if (line == lines.end())
                ADD_FAILURE() << "expected message did not come: " << part;
            else
                lines.erase(line);
        }
        const std::vector<std::string>& allowed = messages().allowed;
        for (const std::string& line : lines)
            if (std::none_of(allowed.begin(), allowed.end(),
                             [&](const std::string& part) { return holds(line, part); }))
                ADD_FAILURE() << "unexpected message: " << line;
    }
};
} // namespace

void watchMessages()
{
    tbSetMessageFunc(receiveMessage);
    testing::UnitTest::GetInstance()->listeners().Append(new LineChecker);
}

void expectMessage(std::string_view part, int times)
{
    std::lock_guard guard(messages().mutex);
    messages().expected.insert(messages().expected.end(), static_cast<std::size_t>(times), std::string(part));
}

void allowMessages(std::string_view part)
{
    std::lock_guard guard(messages().mutex);
    messages().allowed.emplace_back(part);
}

std::vector<std::string> takeMessages()
{
    std::lock_guard guard(messages().mutex);
    return messages().takeLines();
}
} // namespace tbtest
