// Which edges come out of a file: what each node lists, once and in that order, whatever the nodes do meanwhile.
#include <tamber/graph/tbGroup.h>

#include <tamber/io/tbFile.h>
#include <tamber/kernel/tbRef.h>

#include <tests/support/Cost.h>
#include <tests/support/FileBuilder.h>
#include <tests/support/Messages.h>
#include <tests/support/TempFile.h>

#include <gtest/gtest.h>

#include <algorithm>
#include <map>
#include <numeric>
#include <random>
#include <set>
#include <vector>

using tbtest::FileBuilder;
using tbtest::Record;

namespace
{

using Lists = std::vector<std::vector<int>>;

using Habit = void (*)(tbGroup* node, tbGroup* parent);

// A node that does what the test says whenever it comes under a parent.
class GroupFileTestRestless : public tbGroup
{
    TB_CLASS(GroupFileTestRestless, tbGroup)

public:
    GroupFileTestRestless() { initInstance(); }

    static inline Habit habit = nullptr;

protected:
    ~GroupFileTestRestless() override { deleteInstance(); }

    void addedTo(tbGroup* parent) override
    {
        tbGroup::addedTo(parent);
        habit(this, parent);
    }
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
            const char* className = restless > 0 && i % restless == 0 ? "GroupFileTestRestless" : "tbGroup";
            Record record = builder.record().object().word(1).word(1).integer(int(lists[i].size()));
            for (const int child : lists[i])
                record.integer(child);
            packed ? builder.addPacked(className, record) : builder.add(className, record);
        }
        tbtest::writeAll(path, builder.build());
        tbFile file;
        EXPECT_TRUE(file.open(path.c_str(), "r"));
        return tbRef<tbGroup>(static_cast<tbGroup*>(file.readObject(0)));
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
    const int width = tbtest::isCostMeasured() ? 1000 : 50;
    FileBuilder builder;
    const auto group = [&builder](int first, int number, int amid = -1)
    {
        Record record = builder.record().object().word(1).word(1).integer(number);
        for (int i = 0; i < number; ++i)
            record.integer(amid >= 0 && i == number / 2 ? amid : first + i);
        return record;
    };
    builder.add("tbGroup", group(1, width));
    for (int i = 0; i < width; ++i)
        builder.add("tbGroup", group(1 + 2 * width, width, 1 + width + i));
    for (int i = 0; i < width; ++i)
        builder.add(className, group(1 + 2 * width, 2).integer(77)); // states of which none is there
    for (int i = 0; i < width; ++i)
        builder.add("tbGroup", group(0, 0));
    tbtest::writeAll(path, builder.build());
    double lowest = 1e9;
    for (int i = 0; i < 3; ++i)
    {
        const tbtest::Cost cost;
        tbFile file;
        EXPECT_TRUE(file.open(path.c_str(), "r"));
        const tbRef<tbBase> root(file.readObject(0));
        EXPECT_TRUE(root);
        lowest = std::min(lowest, cost.seconds());
    }
    return lowest;
}

// Gives the nodes from `node` on the numbers of their entries.
void numberNodes(tbGroup* node, int number, const Edges& edges, std::map<const tbGroup*, int>& numbers)
{
    if (!numbers.emplace(node, number).second)
        return;
    const std::vector<int>& children = edges.children[std::size_t(number)];
    for (int i = 0; i < std::min(int(children.size()), node->getNumChildren()); ++i)
        numberNodes(node->getChild(i), children[std::size_t(i)], edges, numbers);
}

void expectEdges(tbGroup* root, const Edges& edges)
{
    ASSERT_TRUE(root);
    std::map<const tbGroup*, int> numbers;
    numberNodes(root, 0, edges, numbers);
    const auto numbersOf = [&](std::span<tbGroup* const> nodes)
    {
        std::vector<int> found;
        for (const tbGroup* node : nodes)
            found.push_back(numbers.at(node));
        return found;
    };
    EXPECT_EQ(int(numbers.size()), std::ranges::count(edges.isRead, true));
    for (const auto& [node, number] : numbers)
    {
        EXPECT_EQ(numbersOf(node->getChildren()), edges.children[std::size_t(number)]);
        EXPECT_EQ(numbersOf(node->getParents()), edges.parents[std::size_t(number)]);
        EXPECT_EQ(node->getRefCount(), node->getNumParents() + (number == 0 ? 1 : 0));
    }
}

const Habit addNothing = [](tbGroup*, tbGroup* parent) { EXPECT_FALSE(parent->addChild(nullptr)); };
const Habit joinAgain = [](tbGroup* node, tbGroup* parent) { EXPECT_FALSE(parent->addChild(node)); };
const Habit leaveFirst = [](tbGroup* node, tbGroup*)
{
    if (node->getNumParents() > 1)
        node->getParent(0)->removeChild(node);
};
const Habit driveOutFirst = [](tbGroup*, tbGroup* parent)
{
    if (parent->getNumChildren() > 1)
        parent->removeChild(parent->getChild(0));
};
const Habit insertFirst = [](tbGroup*, tbGroup* parent) { parent->insertChild(0, new tbGroup); };
const Habit swapFirst = [](tbGroup* node, tbGroup* parent)
{
    driveOutFirst(node, parent);
    insertFirst(node, parent);
};

} // namespace

TEST_F(GroupFile, EveryListComesBackWithoutItsRepetitions)
{
    for (unsigned seed = 0; seed < 60; ++seed)
    {
        SCOPED_TRACE(seed);
        GroupFileTestRestless::habit = seed % 2 == 0 ? addNothing : joinAgain;
        const Lists lists = randomLists(seed);
        const std::size_t restless = seed % 5 == 0 ? 1 : 0;
        expectEdges(readLists(lists, restless, seed % 3 == 1, seed % 4 > 1).get(), Edges(lists));
    }
}

TEST_F(GroupFile, NodesThatFailAmidAListDoNotMakeItSearch)
{
    tbtest::allowMessages();
    const double failing = secondsToRead(path, "tbSwitch");
    EXPECT_LE(failing, 2.5 * secondsToRead(path, "tbGroup"));
}

TEST_F(GroupFile, LongListsTakeTheirTimeWhateverReadsThem)
{
    tbtest::allowMessages(); // what follows the children of a switch is missing
    for (const char* className : {"tbGroup", "tbSwitch", "tbAutoSwitch", "tbRangeSwitch"})
    {
        const int number = tbtest::isCostMeasured() ? 200'000 : 2'000;
        FileBuilder builder;
        builder.gap = 0;
        std::vector<int> children(std::size_t(number), 0);
        std::iota(children.begin(), children.end(), 1);
        builder.add(className, builder.record().object().word(1).word(1).list(children));
        for (int i = 0; i < number; ++i)
            builder.add("tbGroup", builder.record().object().word(1).word(1).integer(0));
        const std::string bytes = builder.build();
        tbtest::writeAll(path, bytes);
        const tbtest::Cost cost;
        tbFile file;
        ASSERT_TRUE(file.open(path.c_str(), "r"));
        const tbRef<tbBase> root(file.readObject(0));
        EXPECT_LT(cost.seconds(), tbtest::mostSeconds(bytes.size())) << className;
    }
}

TEST_F(GroupFile, NoEdgeIsDoubledWhereNodesEditOtherEdges)
{
    for (unsigned seed = 0; seed < 300; ++seed)
    {
        const Habit habits[] = {driveOutFirst, insertFirst, swapFirst, leaveFirst};
        GroupFileTestRestless::habit = habits[seed % 4];
        const tbRef<tbGroup> root = readLists(randomLists(seed), 3 + seed % 5);
        ASSERT_TRUE(root);
        std::vector<tbGroup*> nodes{root.get()};
        for (std::size_t i = 0; i < nodes.size(); ++i)
        {
            std::set<const tbGroup*> seen;
            for (tbGroup* child : nodes[i]->getChildren())
            {
                EXPECT_TRUE(seen.insert(child).second) << seed;
                const bool leaves = seed % 4 == 3 && child->isOfType(GroupFileTestRestless::getClassType());
                EXPECT_TRUE(!leaves || child->getNumParents() == 1) << seed;
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
    GroupFileTestRestless::habit = swapFirst;
    const tbRef<tbGroup> root = readLists({{1, 4, 2, 1, 3, 1}, {}, {1}, {4}, {}}, 3);
    ASSERT_TRUE(root);
    ASSERT_EQ(root->getNumChildren(), 5); // new, 4, 2, 3, 1
    EXPECT_EQ(root->getChild(2)->getChild(0), root->getChild(4));
}
