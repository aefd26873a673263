#include "tbiPropagation.h"

#include "tbiDirectCalls.h"
#include "tbiLocalStack.h"
#include "tbiNodeLinks.h"

#include <algorithm>
#include <utility>

namespace
{

// Levels that climb by plain calls before the rest goes through the list.
constexpr int MAX_NESTED = 100;

struct PendingStep
{
    void (tbGroup::*step)(unsigned);
    tbGroup* node;
    unsigned bits;
};

using PendingSteps = tbiLocalStack<PendingStep, 8>;

thread_local constinit int nested = 0;
thread_local constinit PendingSteps* pendingSteps = nullptr;

constinit std::atomic<std::uint32_t> lastStamp{0};

} // namespace

void tbiPropagation::climb(Climb step, tbGroup* parent, unsigned bits)
{
    if (nested < MAX_NESTED)
    {
        ++nested;
        (parent->*step)(bits);
        --nested;
        return;
    }
    if (pendingSteps)
    {
        if (!pendingSteps->push({step, parent, bits}))
            (parent->*step)(bits);
        return;
    }
    PendingSteps steps;
    pendingSteps = &steps;
    (parent->*step)(bits);
    while (!steps.isEmpty())
    {
        const PendingStep next = steps.pop();
        (next.node->*next.step)(next.bits);
    }
    pendingSteps = nullptr;
}

std::uint32_t tbiPropagation::newStamp()
{
    std::uint32_t stamp = 0;
    do
        stamp = lastStamp.fetch_add(1, std::memory_order_relaxed) + 1;
    while (stamp == 0 || stamp == tbGroup::DYING);
    return stamp;
}

bool tbiPropagation::firstVisit(tbGroup* node, std::uint32_t& stamp)
{
    if (node->getNumParents() < 2)
        return true;
    if (stamp == 0)
        stamp = newStamp();
    if (node->visitStamp == stamp)
        return false;
    node->visitStamp = stamp;
    return true;
}

inline void tbiPropagation::tellNewEdge(tbGroup* node, tbGroup* parent)
{
    const NewEdge edge{node, parent};
    const NewEdge* outer = std::exchange(newEdge, &edge);
    node->addedTo(parent);
    newEdge = outer;
}

inline void tbiPropagation::tellAdded(tbGroup* node, tbGroup* parent)
{
    if (node->getNumParents() <= MANY_PARENTS)
        node->addedTo(parent);
    else
        tellNewEdge(node, parent);
}

void tbiPropagation::added(tbGroup* node, tbGroup* parent, bool isFresh)
{
    if (isFresh)
        tellNewEdge(node, parent);
    else if (node->getNumChildren() == 0)
        tellAdded(node, parent);
    else
        addedWithAll(node, parent);
}

// Hooks may take any of these nodes out of the graph: those that are still needed are held.
void tbiPropagation::addedWithAll(tbGroup* node, tbGroup* parent)
{
    struct Frame
    {
        tbGroup* node;
        tbGroup* parent;
        int next;
    };
    const tbiKeep keepParent(parent);
    tbiLocalStack<Frame> frames;
    std::uint32_t stamp = 0;
    node->ref();
    frames.push({node, parent, node->getNumChildren()});
    while (!frames.isEmpty())
    {
        Frame& frame = frames.top();
        const int i = std::min(frame.next, frame.node->getNumChildren()) - 1;
        frame.next = i;
        if (i < 0)
        {
            const Frame done = frames.pop();
            tellAdded(done.node, done.parent);
            done.node->unRef();
            continue;
        }
        tbGroup* child = frame.node->getChild(i);
        const bool descend = child->getNumChildren() > 0 && firstVisit(child, stamp);
        if (descend && frames.push({child, frame.node, child->getNumChildren()}))
            child->ref();
        else
            tellAdded(child, frame.node);
    }
}

// One detached subtree on its way through removedFrom(). Every node of it reports to the same old parent, which has
// to withdraw or raise each flag only once.
class tbiPropagation::Removal
{
public:
    Removal(tbGroup* root, tbGroup* oldParent) : parent(oldParent), expected(root), outer(current)
    {
        current = this;
    }
    ~Removal() { current = outer; }
    Removal(const Removal&) = delete;
    Removal& operator=(const Removal&) = delete;

    /// The running removal that is waiting for the base call of `node`; null when there is none.
    static Removal* expecting(const tbGroup* node, const tbGroup* oldParent)
    {
        Removal* removal = current;
        if (!removal || removal->expected != node || removal->parent != oldParent)
            return nullptr;
        removal->expected = nullptr;
        return removal;
    }

    void leave(tbGroup* node)
    {
        if (!parent->isDying())
            tellParent(node);
        node->addTravFlags(tbGroup::TF_UPDATE);
        if (node->directCalls > 0)
            tbiDirectCalls::removeAbove(parent, node);
    }

    void pushChildren(tbGroup* node)
    {
        const auto children = node->getChildren();
        for (std::size_t i = children.size(); i > 0; --i)
        {
            tbGroup* child = children[i - 1];
            if (!firstVisit(child, stamp))
                continue;
            child->ref();
            if (!waiting.push(child))
            {
                child->removedFrom(parent);
                child->unRef();
            }
        }
    }

    void run()
    {
        while (!waiting.isEmpty())
        {
            tbGroup* node = waiting.pop();
            expected = node;
            node->removedFrom(parent);
            node->unRef();
        }
    }

private:
    void tellParent(tbGroup* node)
    {
        const unsigned content = node->travFlags & tbGroup::TF_CONTENT;
        if ((content & ~cleaned) != 0)
        {
            cleaned |= content;
            parent->cleanUp(content);
        }
        unsigned bits = tbGroup::TF_UPDATE | tbGroup::TF_REMOVED;
        if ((node->travFlags & (tbGroup::TF_FENCE | tbGroup::TF_HAS_GEOMETRY)) != 0)
            bits |= tbGroup::TF_FENCE;
        if ((bits & ~raised) != 0)
        {
            raised |= bits;
            parent->dirtyUp(bits);
        }
    }

    static thread_local constinit Removal* current;

    tbGroup* parent;
    const tbGroup* expected; // the node whose hook runs
    Removal* outer;
    unsigned cleaned = 0;
    unsigned raised = 0;
    std::uint32_t stamp = 0;
    tbiLocalStack<tbGroup*> waiting;
};

thread_local constinit tbiPropagation::Removal* tbiPropagation::Removal::current = nullptr;

// As deep on the stack as the pass that could not be finished: there is no memory for a list of nodes.
void tbiPropagation::raiseBelow(tbGroup* node, unsigned bits, std::uint32_t& stamp)
{
    node->addTravFlags(bits);
    for (tbGroup* child : node->getChildren())
        if (firstVisit(child, stamp))
            raiseBelow(child, bits, stamp);
}

void tbiPropagation::raiseAll(tbGroup* node, unsigned bits)
{
    std::uint32_t stamp = 0;
    raiseBelow(node, bits, stamp);
    node->dirtyUp(bits);
}

void tbiPropagation::removed(tbGroup* node, tbGroup* parent)
{
    if (Removal* running = Removal::expecting(node, parent))
    {
        running->leave(node);
        running->pushChildren(node);
        return;
    }
    Removal removal(node, parent);
    Removal::expecting(node, parent);
    removal.leave(node);
    // A node that nobody else holds dies with its parent, and its own destructor tells its children.
    if (parent->isDying() && node->getRefCount() == 1)
        return;
    removal.pushChildren(node);
    removal.run();
}

tbiNodeSnapshot::tbiNodeSnapshot(std::span<tbGroup* const> from)
{
    nodes.setSize(int(from.size()));
    for (tbGroup* node : from)
    {
        if (!node)
            continue;
        whole = nodes.add(node) >= 0 && whole;
        if (node->getRefCount() <= 0)
            continue;
        if (held.add(node) >= 0)
            node->ref();
        else
            whole = false;
    }
}

tbiNodeSnapshot::~tbiNodeSnapshot()
{
    for (tbGroup* node : held)
        node->unRef();
}
