#include <tests/support/Messages.h>

#include <tamber/kernel/tbMessage.h>

#include <algorithm>
#include <mutex>
#include <utility>

#include <gtest/gtest.h>

namespace tbtest
{
namespace
{
struct Lines
{
    std::mutex mutex;
    std::string unfinished;
    std::vector<std::string> came;
    std::vector<std::string> expected;
    std::vector<std::string> allowed;

    void clear()
    {
        unfinished.clear();
        came.clear();
        expected.clear();
        allowed.clear();
    }

    void receive(std::string_view text)
    {
        for (char c : text)
        {
            if (c == '\n')
                came.push_back(std::exchange(unfinished, {}));
            else
                unfinished += c;
        }
    }

    void finishLine()
    {
        if (!unfinished.empty())
            came.push_back(std::exchange(unfinished, {}));
    }
};

// Messages may come while the process ends, after static objects are gone.
Lines& lines()
{
    static Lines* const theLines = new Lines;
    return *theLines;
}

void receiveMessage(const char* text)
{
    std::lock_guard guard(lines().mutex);
    lines().receive(text);
}

bool holds(const std::string& line, const std::string& part)
{
    return line.find(part) != std::string::npos;
}

class LineChecker : public testing::EmptyTestEventListener
{
    void OnTestStart(const testing::TestInfo&) override
    {
        std::lock_guard guard(lines().mutex);
        lines().clear();
    }

    void OnTestEnd(const testing::TestInfo&) override
    {
        std::lock_guard guard(lines().mutex);
        Lines& all = lines();
        all.finishLine();
        for (const std::string& part : all.expected)
        {
            auto line = std::find_if(all.came.begin(), all.came.end(),
                                     [&](const std::string& came) { return holds(came, part); });
            if (line == all.came.end())
                ADD_FAILURE() << "expected message did not come: " << part;
            else
                all.came.erase(line);
        }
        for (const std::string& line : all.came)
        {
            if (std::none_of(all.allowed.begin(), all.allowed.end(),
                             [&](const std::string& part) { return holds(line, part); }))
                ADD_FAILURE() << "unexpected message: " << line;
        }
        all.clear();
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
    std::lock_guard guard(lines().mutex);
    lines().expected.insert(lines().expected.end(), static_cast<std::size_t>(times), std::string(part));
}

void allowMessages(std::string_view part)
{
    std::lock_guard guard(lines().mutex);
    lines().allowed.emplace_back(part);
}

std::vector<std::string> takeMessages()
{
    std::lock_guard guard(lines().mutex);
    lines().finishLine();
    return std::exchange(lines().came, {});
}
} // namespace tbtest
