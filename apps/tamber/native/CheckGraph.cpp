// The graph that the entries make, walked as readers walk it and without recursion.
#include "CheckState.h"

#include <utility>

namespace native
{

namespace
{

constexpr std::size_t MOST_DEPTH = 1024;
constexpr std::uint64_t MOST_PATHS = std::uint64_t{1} << 24;
constexpr std::uint64_t REFERENCE_WORK = 320; // bytes that could be read instead
constexpr std::uint64_t REFERENCE_COST = 64;  // bytes that count for an edge, as it is held at both ends
constexpr std::uint64_t OBJECT_COST = 1344;   // bytes that count for any object
constexpr std::uint64_t SCENE_COST = 6144;    // and for what a scene takes beyond that
constexpr std::uint64_t RAY_COST = 416;       // and for each ray of a collider
constexpr std::uint64_t FIRST_LENGTH = std::uint64_t{64} << 10; // of a file, and its own
constexpr std::uint64_t HEAVY_LENGTH = 112;                     // of it for each scene and collider
constexpr std::uint16_t HAS_GEOMETRY = 0x0200;
constexpr std::uint16_t HAS_EMITTER = 0x0400;

class GraphCheck
{
public:
    explicit GraphCheck(CheckState& checkState)
        : state(checkState),
          places(checkState.facts.size()),
          paths(checkState.facts.size()),
          contents(checkState.facts.size()),
          holdsScene(checkState.facts.size())
    {
    }

    void run()
    {
        if (state.facts.empty())
            return;
        checkRoot();
        visitFrom(0);
        reportUnreachable();
    }

private:
    enum Place : unsigned char
    {
        UNSEEN,
        OPEN, // on the path from the root to where the walk is
        DONE
    };
    struct Step
    {
        int entry;
        std::uint32_t nextEdge = 0;
    };

    void add(Kind kind, int entry, std::string detail = {})
    {
        state.findings.add(state.image.makeFinding(
            kind, entry, state.image.getEntries()[std::size_t(entry)].offset, std::move(detail)));
    }

    void checkRoot()
    {
        const ClassInfo* info = state.facts[0].info;
        if (!info || info->nature != ClassInfo::OBJECT)
            state.findings.add(state.image.makeFinding(Kind::ROOT_CLASS, 0,
                                                       state.image.getRecordOffset(0) + layout::RECORD_TAG));
    }

    void visitFrom(int root)
    {
        enter(root);
        while (!steps.empty())
        {
            Step& step = steps.back();
            const EntryFacts& facts = state.facts[std::size_t(step.entry)];
            if (step.nextEdge == facts.numEdges)
            {
                leave();
                continue;
            }
            const Edge edge = state.edges[facts.firstEdge + step.nextEdge++];
            switch (places[std::size_t(edge.getTarget())])
            {
            case UNSEEN:
                enter(edge.getTarget());
                break;
            case OPEN:
                reportCycle(step.entry, edge);
                break;
            case DONE:
                if (openScenes > 0 && holdsScene[std::size_t(edge.getTarget())])
                    reportSceneInside(edge.getTarget());
                takeUp(step.entry, edge.getTarget(), edge.getRole());
                break;
            }
        }
    }

    void reportCycle(int entry, Edge edge)
    {
        const Kind kind = edge.getRole() == Edge::TARGET ? Kind::TARGET_ABOVE : Kind::CYCLE;
        if (!state.findings.countOnly(kind))
            add(kind, entry, "with entry " + std::to_string(edge.getTarget()));
    }

    void reportSceneInside(int entry)
    {
        if (!state.findings.countOnly(Kind::SCENE_INSIDE))
            add(Kind::SCENE_INSIDE, entry);
    }

    void enter(int entry)
    {
        const auto place = std::size_t(entry);
        const ClassInfo* info = state.facts[place].info;
        places[place] = OPEN;
        hidesReferences = hidesReferences || !info || !state.facts[place].readable;
        paths[place] = 1;
        contents[place] = std::uint16_t((isOf(info, geometry) ? HAS_GEOMETRY : 0) |
                                        (isOf(info, emitter) ? HAS_EMITTER : 0));
        if (steps.size() == MOST_DEPTH + 1 && isObject(info) && !std::exchange(depthReported, true))
            add(Kind::TOO_DEEP, entry);
        holdsScene[place] = isOf(info, scene);
        if (holdsScene[place] && openScenes++ > 0)
            reportSceneInside(entry);
        if (isOf(info, scene))
            spend(entry, SCENE_COST, SCENE_COST, "with what scenes take");
        if (isOf(info, scene) || isOf(info, collider))
            spendLength(entry);
        if (info && state.facts[place].readable)
            spend(entry, 0, OBJECT_COST + RAY_COST * state.facts[place].numRays, "with what objects take");
        if (state.facts[place].readable && !state.image.beginReading(entry))
            reportBudget(entry, "with what is read inside of each other");
        steps.push_back({entry});
    }

    void spend(int entry, std::uint64_t work, std::uint64_t bytes, const char* what)
    {
        if (!state.image.spendOnMade(work, bytes))
            reportBudget(entry, what);
    }

    void spendLength(int entry)
    {
        if (HEAVY_LENGTH > lengthLeft)
            reportBudget(entry, "with their number of scenes and colliders");
        else
            lengthLeft -= HEAVY_LENGTH;
    }

    void reportBudget(int entry, const char* what)
    {
        if (!std::exchange(budgetReported, true))
            add(Kind::BUDGET, entry, what);
    }

    // Data lies below objects, but does not nest.
    static bool isObject(const ClassInfo* info) { return !info || info->nature != ClassInfo::DATA; }

    void leave()
    {
        const int entry = steps.back().entry;
        const auto place = std::size_t(entry);
        places[place] = DONE;
        openScenes -= isOf(state.facts[place].info, scene) ? 1 : 0;
        steps.pop_back();
        if (state.facts[place].readable)
            state.image.endReading(entry);
        checkContents(entry);
        if (steps.empty())
            return;
        const Step& above = steps.back();
        const Edge edge = state.edges[state.facts[std::size_t(above.entry)].firstEdge + above.nextEdge - 1];
        takeUp(above.entry, entry, edge.getRole());
    }

    /// What lies below `entry` counts for the object above it, too.
    void takeUp(int above, int entry, Edge::Role role)
    {
        const auto to = std::size_t(above);
        const auto from = std::size_t(entry);
        if (role == Edge::CHILD)
            contents[to] = std::uint16_t(contents[to] | contents[from]);
        if (role == Edge::DATA)
            return;
        holdsScene[to] = holdsScene[to] || holdsScene[from];
        spend(above, REFERENCE_WORK, REFERENCE_COST, "with the edges that its references make");
        const std::uint64_t sum = std::uint64_t(paths[to]) + paths[from];
        if (sum <= MOST_PATHS)
            paths[to] = std::uint32_t(sum);
        else if (!std::exchange(pathsReported, true))
            add(Kind::TOO_MANY_PATHS, above);
    }

    void checkContents(int entry)
    {
        const EntryFacts& facts = state.facts[std::size_t(entry)];
        const unsigned missing = contents[std::size_t(entry)] & ~unsigned(facts.travFlags);
        if (facts.readable && missing != 0 && isOf(facts.info, group))
            add(Kind::CONTENT_FLAGS, entry,
                (missing & HAS_GEOMETRY) != 0 ? "geometry lies below" : "an emitter lies below");
    }

    void reportUnreachable()
    {
        if (state.edgesFull || hidesReferences)
            return;
        for (std::size_t i = 0; i < places.size(); ++i)
            if (places[i] == UNSEEN && state.image.getTagName(int(i)) != "tbPlugIns")
                add(Kind::UNREACHABLE, int(i));
    }

    CheckState& state;
    std::vector<Place> places;           // by entry, as the rest
    std::vector<std::uint32_t> paths;    // objects below and with it, one for each path
    std::vector<std::uint16_t> contents; // content flags that it must have
    std::vector<bool> holdsScene;        // it is one, or one is below it
    std::vector<Step> steps;
    bool depthReported = false;
    bool pathsReported = false;
    bool budgetReported = false;
    bool hidesReferences = false; // what lies below an object could not be told
    int openScenes = 0;
    std::uint64_t lengthLeft = FIRST_LENGTH + state.image.getLength(); // of the file
    const ClassInfo* scene = findClass("tbScene");
    const ClassInfo* collider = findClass("tbCollider");
    const ClassInfo* group = findClass("tbGroup");
    const ClassInfo* geometry = findClass("tbGeometry");
    const ClassInfo* emitter = findClass("tbEmitter");
};

} // namespace

void checkGraph(CheckState& state)
{
    GraphCheck(state).run();
}

} // namespace native
