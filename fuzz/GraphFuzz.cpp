// Plays the input as edits on a graph and on the plain model of the tests, and beside that on names, attributes, node
// flags and copies.
#include <fuzz/support/Check.h>
#include <fuzz/support/LiveObjects.h>
#include <fuzz/support/Program.h>

#include <tests/graph/GraphEdits.h>

#include <cstring>

using tbfuzz::check;
using tbfuzz::Program;
using tbtest::GraphPair;

namespace
{
constexpr int NUM_NODES = 9;
constexpr int NUM_ATTRIBUTES = 4;

// What a node has besides its place in the graph.
struct Belongings
{
    std::string name;
    bool named = false;
    std::vector<tbBase*> attributes;
    tbGroup::NODE_FLAGS splitting = tbGroup::NODE_CLONE;
};

// The graph as the tree of all paths.
std::string unfolded(const tbGroup* node)
{
    std::string text = std::string("(") + node->getType()->getName() + ' ' +
                       (node->getName() ? node->getName() : "") + ' ' + std::to_string(node->getNodeFlags());
    for (const tbGroup* child : node->getChildren())
        text += unfolded(child);
    return text + ')';
}

class Player
{
public:
    explicit Player(Program& input)
        : program(input),
          graphs(tbtest::makeNodes(NUM_NODES)),
          belongings(NUM_NODES),
          edits(graphs, [this](std::size_t count) { return std::size_t(program.index(int(count))); })
    {
        for (int i = 0; i < NUM_ATTRIBUTES; ++i)
            attributes.emplace_back(new tbBase);
    }

    void run()
    {
        while (!program.hasEnded())
        {
            const int operation = program.byte();
            if (operation < 192)
                check(edits.step(), "a node and the model answer the same");
            else
                change(operation % 8);
            const std::string found = tbtest::difference(graphs);
            check(found.empty(), ("a node is as the model says: " + found).c_str());
            checkBelongings();
        }
        split();
    }

private:
    void change(int operation)
    {
        const std::size_t i = std::size_t(program.index(NUM_NODES));
        tbGroup* node = graphs.real[i].get();
        Belongings& own = belongings[i];
        switch (operation)
        {
        case 0:
        case 1:
            own.name = program.bytes(program.index(20)).c_str();
            own.named = true;
            return node->setName(own.name.c_str());
        case 2:
            own.name.clear();
            own.named = false;
            return node->setName(nullptr);
        case 3:
        case 4:
            own.attributes.push_back(attributes[std::size_t(program.index(NUM_ATTRIBUTES))].get());
            return node->addAttribute(own.attributes.back());
        case 5:
            own.splitting = tbGroup::NODE_FLAGS(program.index(3));
            return node->setNodeFlags(own.splitting);
        case 6:
            return checkCopy(node, node->makeCopy());
        default:
            return checkCopy(node, node->makeClone());
        }
    }
    static void checkCopy(const tbGroup* node, tbGroup* made)
    {
        const tbRef<tbGroup> copy(made);
        check(copy && copy->getRefCount() == 1 && copy->getNumParents() == 0, "a copy is the caller's alone");
        check(unfolded(copy.get()) == unfolded(node), "a copy is as its original");
        check(tbtest::numWithSeveralParents(copy.get()) == 0, "a copy shares nothing");
    }
    void checkBelongings() const
    {
        std::size_t numHeld = 0;
        for (std::size_t i = 0; i < belongings.size(); ++i)
        {
            const tbGroup& node = *graphs.real[i];
            const Belongings& own = belongings[i];
            check((node.getName() != nullptr) == own.named, "a node has a name when it was given one");
            check(!own.named || own.name == node.getName(), "a node has its name");
            check(node.getNodeFlags() == own.splitting, "a node has its flags");
            const tbTList<tbBase*>* list = node.getAttribList();
            check(list ? std::equal(list->begin(), list->end(), own.attributes.begin(), own.attributes.end())
                       : own.attributes.empty(),
                  "a node has its attributes in their order");
            numHeld += own.attributes.size();
        }
        for (const tbRef<tbBase>& attribute : attributes)
            numHeld -= std::size_t(attribute->getRefCount() - 1);
        check(numHeld == 0, "nodes hold their attributes, and copies do not");
    }
    // Splitting shared instances changes who shares what, and nothing that a walk meets.
    void split()
    {
        for (const tbRef<tbGroup>& root : graphs.real)
        {
            if (root->getNumParents() > 0)
                continue;
            const std::string before = unfolded(root.get());
            root->updateSharedInstances();
            check(unfolded(root.get()) == before, "splitting keeps what every path meets");
        }
    }

    Program& program;
    GraphPair graphs;
    std::vector<Belongings> belongings;
    std::vector<tbRef<tbBase>> attributes;
    tbtest::GraphEdits edits;
};
} // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size)
{
    tbfuzz::checkNothingStays(
        [&]
        {
            Program program(data, size);
            Player(program).run();
        });
    return 0;
}
