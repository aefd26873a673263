// Which edges come out of a file: what each node lists, once and in that order, whatever the nodes do meanwhile.
#include <tamber/graph/tbGroup.h>

#include <tamber/io/tbFile.h>
#include <tamber/kernel/tbRef.h>

#include <tests/support/FileBuilder.h>
#include <tests/support/Messages.h>
#include <tests/support/TempFile.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <ctime>
#include <map>
#include <random>
#include <set>
#include <vector>

using tbtest::FileBuilder;
using tbtest::Record;

namespace
{

using Lists = std::vector<std::vector<int>>;

// A node that edits the graph whenever it comes under a parent.
class GroupFileTestRestless : public tbGroup
{
    TB_CLASS(GroupFileTestRestless, tbGroup)

public:
    enum HABIT
    {
        JOINS_AGAIN,   // comes under the same parent once more
        ADDS_NOTHING,  // lets the parent add null
        LEAVES_FIRST,  // leaves its first parent
        DRIVES_OUT,    // takes the parent's first child away from it
        INSERTS_FIRST, // puts a new node before the parent's children
        SWAPS_FIRST    // puts a new node in the place of the parent's first child
    };

    GroupFileTestRestless() { initInstance(); }

    static inline HABIT habit = JOINS_AGAIN;

protected:
    ~GroupFileTestRestless() override { deleteInstance(); }

    void addedTo(tbGroup* parent) override
    {
        tbGroup::addedTo(parent);
        switch (habit)
        {
        case JOINS_AGAIN:
            joined = parent->addChild(this) || joined;
            break;
        case ADDS_NOTHING:
            joined = parent->addChild(nullptr) || joined;
            break;
        case LEAVES_FIRST:
            if (getNumParents() > 1)
                getParent(0)->removeChild(this);
            break;
        case SWAPS_FIRST:
        case DRIVES_OUT:
            if (parent->getNumChildren() > 1)
                parent->removeChild(parent->getChild(0));
            if (habit == DRIVES_OUT)
                break;
            [[fallthrough]];
        case INSERTS_FIRST:
            parent->insertChild(0, new tbGroup);
            break;
        }
        EXPECT_FALSE(joined);
    }

private:
    bool joined = false;
};

TB_DEFINE_NODE_CLASS(GroupFileTestRestless, tbGroup)

class GroupFile : public testing::Test
{
protected:
    GroupFile() { GroupFileTestRestless::getClassType(); }

    /// The root of a file whose entries are nodes with these children, one in `restless` of them restless.
    tbRef<tbGroup> readLists(const Lists& lists, std::size_t restless, bool packed = false,
                             bool otherOrder = false)
    {
        FileBuilder builder(otherOrder);
        for (std::size_t i = 0; i < lists.size(); ++i)
        {
            const std::vector<int>& list = lists[i];
            const char* className = restless > 0 && i % restless == 0 ? "GroupFileTestRestless" : "tbGroup";
            Record record = builder.record().object().word(1).word(1).integer(int(list.size()));
            for (const int child : list)
                record.integer(child);
            packed ? builder.addPacked(className, record) : builder.add(className, record);
        }
        tbtest::writeAll(path, builder.build());
        tbFile file;
        EXPECT_TRUE(file.open(path.c_str(), "r"));
        tbRef<tbGroup> root = static_cast<tbGroup*>(file.readObject(0));
        return root;
    }

    tbtest::TempDirectory directory;
    std::string path = directory.path("lists.tb");
};

// Each node's children, and its parents in the order in which it came under them.
struct Edges
{
    Lists children;
    Lists parents;

    explicit Edges(const Lists& lists) : children(lists.size()), parents(lists.size()), isRead(lists.size())
    {
        read(lists, 0);
    }

    void read(const Lists& lists, int node)
    {
        isRead[std::size_t(node)] = true;
        for (const int child : lists[std::size_t(node)])
        {
            if (!isRead[std::size_t(child)])
                read(lists, child);
            std::vector<int>& known = children[std::size_t(node)];
            if (std::find(known.begin(), known.end(), child) != known.end())
                continue;
            known.push_back(child);
            parents[std::size_t(child)].push_back(node);
        }
    }

    std::vector<bool> isRead;
};

// Lists of nodes of the levels below: long and short ones, many nodes more than once, here and there a list twice.
Lists randomLists(unsigned seed)
{
    constexpr std::size_t LEVELS = 4;
    std::mt19937 random(seed);
    const auto below = [&random](std::size_t limit) { return std::size_t(random() % limit); };
    const std::size_t width = 1 + below(25);
    Lists lists(1 + LEVELS * width);
    for (std::size_t node = 0; node < lists.size() - width; ++node)
    {
        const std::size_t first = 1 + (node + width - 1) / width * width;
        const std::size_t length = below(3) == 0 ? below(4) : below(50);
        for (std::size_t i = 0; i < length; ++i)
            lists[node].push_back(int(first + below(lists.size() - first)));
        if (below(8) == 0)
            std::copy_n(std::vector<int>(lists[node]).begin(), length, std::back_inserter(lists[node]));
    }
    return lists;
}

// The lowest time of processor, of a few times, for a file of nodes with many children, amid which each has one of
// `className` that has children itself.
double secondsToRead(const std::string& path, const char* className)
{
    constexpr int WIDTH = 1000;
    FileBuilder builder;
    const auto group = [&builder](int first, int number, int amid = -1)
    {
        Record record = builder.record().object().word(1).word(1).integer(number);
        for (int i = 0; i < number; ++i)
            record.integer(amid >= 0 && i == number / 2 ? amid : first + i);
        return record;
    };
    builder.add("tbGroup", group(1, WIDTH));
    for (int i = 0; i < WIDTH; ++i)
        builder.add("tbGroup", group(1 + 2 * WIDTH, WIDTH, 1 + WIDTH + i));
    for (int i = 0; i < WIDTH; ++i)
        builder.add(className, group(1 + 2 * WIDTH, 2).integer(77)); // states of which none is there
    for (int i = 0; i < WIDTH; ++i)
        builder.add("tbGroup", group(0, 0));
    tbtest::writeAll(path, builder.build());
    double lowest = 1e9;
    for (int i = 0; i < 3; ++i)
    {
        const std::clock_t begun = std::clock();
        tbFile file;
        EXPECT_TRUE(file.open(path.c_str(), "r"));
        const tbRef<tbBase> root(file.readObject(0));
        EXPECT_TRUE(root);
        lowest = std::min(lowest, double(std::clock() - begun));
    }
    return lowest / CLOCKS_PER_SEC;
}

std::map<const tbGroup*, int> numberNodes(tbGroup* root, const Edges& edges)
{
    std::map<const tbGroup*, int> numbers;
    std::vector<std::pair<tbGroup*, int>> waiting{{root, 0}};
    while (!waiting.empty())
    {
        const auto [node, number] = waiting.back();
        waiting.pop_back();
        if (!numbers.emplace(node, number).second)
            continue;
        const std::vector<int>& children = edges.children[std::size_t(number)];
        for (std::size_t i = 0; i < children.size() && int(i) < node->getNumChildren(); ++i)
            waiting.emplace_back(node->getChild(int(i)), children[i]);
    }
    return numbers;
}

std::vector<int> numbersOf(std::span<tbGroup* const> nodes, const std::map<const tbGroup*, int>& numbers)
{
    std::vector<int> found;
    for (const tbGroup* node : nodes)
        found.push_back(numbers.at(node));
    return found;
}

} // namespace

TEST_F(GroupFile, EveryListComesBackWithoutItsRepetitions)
{
    for (unsigned seed = 0; seed < 60; ++seed)
    {
        const Lists lists = randomLists(seed);
        const Edges expected(lists);
        const tbRef<tbGroup> root = readLists(lists, 0, seed % 3 == 1, seed % 2 == 1);
        ASSERT_TRUE(root);
        const auto numbers = numberNodes(root.get(), expected);
        for (const auto& [node, number] : numbers)
        {
            EXPECT_EQ(numbersOf(node->getChildren(), numbers), expected.children[std::size_t(number)])
                << seed;
            EXPECT_EQ(numbersOf(node->getParents(), numbers), expected.parents[std::size_t(number)]) << seed;
            EXPECT_EQ(node->getRefCount(), node->getNumParents() + (number == 0 ? 1 : 0)) << seed;
        }
    }
}

TEST_F(GroupFile, NodesThatFailAmidAListDoNotMakeItSearch)
{
    tbtest::allowMessages();
    const double failing = secondsToRead(path, "tbSwitch");
    EXPECT_LT(failing, 2.5 * secondsToRead(path, "tbGroup"));
}

TEST_F(GroupFile, NodesMayEditTheirParentsWhileTheyAreRead)
{
    const Lists lists{{1, 2, 3, 2, 1}, {2, 3, 4}, {3, 4, 3}, {4}, {}};
    tbRef<tbGroup> root;
    const Edges expected(lists);
    for (const auto habit : {GroupFileTestRestless::JOINS_AGAIN, GroupFileTestRestless::ADDS_NOTHING})
    {
        GroupFileTestRestless::habit = habit;
        root = readLists(lists, 1);
        ASSERT_TRUE(root);
        const auto numbers = numberNodes(root.get(), expected);
        ASSERT_EQ(numbers.size(), lists.size());
        for (const auto& [node, number] : numbers)
            EXPECT_EQ(numbersOf(node->getChildren(), numbers), expected.children[std::size_t(number)]);
    }

    // Whoever leaves its parents one after another ends under the last that lists it.
    GroupFileTestRestless::habit = GroupFileTestRestless::LEAVES_FIRST;
    root = readLists(lists, 1);
    ASSERT_TRUE(root);
    int numEdges = 0;
    for (tbGroup* node : {root.get(), root->getChild(0), root->getChild(1), root->getChild(2)})
    {
        numEdges += node->getNumChildren();
        for (const tbGroup* child : node->getChildren())
        {
            EXPECT_EQ(child->getNumParents(), 1);
            EXPECT_EQ(child->getRefCount(), 1);
        }
    }
    EXPECT_EQ(numEdges, 4);
}

TEST_F(GroupFile, NoEdgeIsDoubledWhereNodesEditOtherEdges)
{
    for (unsigned seed = 0; seed < 300; ++seed)
    {
        GroupFileTestRestless::habit =
            GroupFileTestRestless::HABIT(GroupFileTestRestless::DRIVES_OUT + int(seed % 3));
        const tbRef<tbGroup> root = readLists(randomLists(seed), 3 + seed % 5);
        ASSERT_TRUE(root);
        std::vector<tbGroup*> nodes{root.get()};
        for (std::size_t i = 0; i < nodes.size(); ++i)
        {
            std::set<const tbGroup*> seen;
            for (tbGroup* child : nodes[i]->getChildren())
            {
                EXPECT_TRUE(seen.insert(child).second) << seed;
                EXPECT_EQ(std::ranges::count(child->getParents(), nodes[i]), 1) << seed;
                if (std::ranges::find(nodes, child) == nodes.end())
                    nodes.push_back(child);
            }
            EXPECT_EQ(nodes[i]->getRefCount(), nodes[i]->getNumParents() + (i == 0 ? 1 : 0)) << seed;
        }
    }
}

TEST_F(GroupFile, WhoWasDrivenOutComesBackWhenItIsListedAgain)
{
    GroupFileTestRestless::habit = GroupFileTestRestless::SWAPS_FIRST;
    const tbRef<tbGroup> root = readLists({{1, 4, 2, 1, 3, 1}, {}, {1}, {4}, {}}, 3);
    ASSERT_TRUE(root);
    ASSERT_EQ(root->getNumChildren(), 5); // new, 4, 2, 3, 1
    EXPECT_EQ(root->getChild(2)->getChild(0), root->getChild(4));
}
