#include <tamber/io/tbModelFiles.h>

#include <tamber/kernel/tbFilePath.h>
#include <tamber/kernel/tbMessage.h>
#include <tamber/kernel/tbiPrintable.h>
#include <tamber/platform/tbiPath.h>
#include <tamber/platform/tbiPlace.h>

#include <algorithm>
#include <atomic>
#include <cstdlib>
#include <cstring>
#include <set>
#include <string>
#include <vector>

struct tbModelFiles::State
{
    std::string model;
    std::string modelPlace;
    std::vector<std::string> roots; // as they are spelled and where they lead to
    std::vector<std::string> open;
    std::set<std::string> refused; // names that were said
    bool reopens = false;
    std::string found;
    std::string refusal;
};

namespace
{

enum ANYWHERE : int
{
    ASK_ENVIRONMENT,
    ANYWHERE_OFF,
    ANYWHERE_ON
};
constexpr std::size_t MAX_MESSAGES = 100; // of one model
constexpr const char* OUTSIDE = "it lies outside the model's directory and the search paths "
                                "(TAMBER_OPEN_ANYWHERE=1 allows it)";

constinit std::atomic<int> anywhere{ASK_ENVIRONMENT};

std::string directoryOf(const char* path)
{
    const std::string text = path;
    const std::size_t end = text.find_last_of("/\\");
    return end == std::string::npos ? "." : text.substr(0, end + 1);
}

bool isBelowAny(const std::string& place, const std::vector<std::string>& roots)
{
    return std::any_of(roots.begin(), roots.end(),
                       [&](const std::string& root) { return tbiIsPlaceBelow(place, root); });
}

} // namespace

tbModelFiles::tbModelFiles(const char* modelPath) : state(new State)
{
    state->model = modelPath ? modelPath : "";
    const auto addRoot = [this](const std::string& directory)
    {
        state->roots.push_back(tbiSpelledPlace(directory.c_str()));
        state->roots.push_back(tbiFinalPlace(directory.c_str()));
    };
    addRoot(directoryOf(state->model.c_str()));
    for (int i = 0; i < tbGetNumFilePaths(); ++i)
        addRoot(tbGetFilePath(i));
    std::erase(state->roots, std::string());
    state->modelPlace = tbiFinalPlace(state->model.c_str()); // which may be a link out
}

tbModelFiles::~tbModelFiles() = default;

bool tbModelFiles::refuse(const char* name, const char* rule)
{
    const std::string file = tbiPrintable(name, false);
    state->refusal = "\"" + file + "\"" + REFUSAL + rule;
    if (state->refused.size() < MAX_MESSAGES && state->refused.insert(file + rule).second)
        tbMessage("%s: %s\n", tbiPrintable(state->model.c_str(), false).c_str(), state->refusal.c_str());
    return false;
}

// The text is judged before any medium or machine is asked, and where it leads to after.
bool tbModelFiles::locate(const char* name)
{
    if (*name == 0)
        return false;
    const bool isFree = isOpenAnywhereEnabled();
    const std::string spelled = tbiSpelledPlace(name);
    if (spelled.empty())
        return refuse(name, "this is no place of a file");
    if (!isFree && !isBelowAny(spelled, state->roots))
        return refuse(name, OUTSIDE);
    state->found = tbiFinalPlace(name);
    if (state->found.empty())
        return false;
    if (!isFree && state->found != state->modelPlace && !isBelowAny(state->found, state->roots))
        return refuse(name, OUTSIDE);
    return tbiIsReadableFile(state->found.c_str()) || refuse(name, "it is no regular file that can be read");
}

bool tbModelFiles::exists(const char* name)
{
    return name && locate(name);
}

const char* tbModelFiles::open(const char* name)
{
    if (!name || !locate(name))
        return nullptr;
    if (!state->reopens &&
        std::find(state->open.begin(), state->open.end(), state->found) != state->open.end())
    {
        refuse(name, "it is being read already");
        return nullptr;
    }
    static_assert(MAX_OPEN == 16);
    if (state->open.size() >= std::size_t(MAX_OPEN))
    {
        refuse(name, "files nest deeper than 16");
        return nullptr;
    }
    state->open.push_back(state->found);
    return state->found.c_str();
}

void tbModelFiles::close(const char* path)
{
    const auto place = std::find(state->open.begin(), state->open.end(), path ? path : "");
    if (place != state->open.end())
        state->open.erase(place);
}

void tbModelFiles::enableReopening(bool on)
{
    state->reopens = on;
}

const char* tbModelFiles::getRefusal() const
{
    return state->refusal.empty() ? nullptr : state->refusal.c_str();
}

void tbModelFiles::enableOpenAnywhere(bool on)
{
    anywhere = on ? ANYWHERE_ON : ANYWHERE_OFF;
}

bool tbModelFiles::isOpenAnywhereEnabled()
{
    if (anywhere != ASK_ENVIRONMENT)
        return anywhere == ANYWHERE_ON;
    const char* value = std::getenv("TAMBER_OPEN_ANYWHERE");
    return value && std::strcmp(value, "1") == 0;
}
