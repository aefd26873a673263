#pragma once

#include <tamber/graph/tbGroupType.h>
#include <tamber/graph/tbNodeList.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/trav/tbTraverser.h>

class tbCamera;
class tbCollider;
class tbListener;
class tbScene;
class tbTravContext;
class tbVolume;

// The node of the scene graph, a directed acyclic graph: a node keeps an ordered list of children, each with one
// reference, and the list of its parents, without references. A node under several parents is a shared instance.
//
// Travel flags say what lies in a node's subtree and what changed there. They rise with dirtyUp() and sink with
// cleanUp(); walks pass over subtrees whose flags share no bit with the walk's mask.
//
// Edits take no lock: the caller serialises them, normally through the scene's access operations. Queries may run
// on several threads at once while nobody edits.
class TB_API tbGroup : public tbBase
{
    TB_CLASS_OF(tbGroup, tbBase, tbGroupType)

public:
    /// What happens to a node with several parents when shared instances are split.
    enum NODE_FLAGS : int
    {
        NODE_CLONE = 0, // every parent but the first gets a clone
        NODE_SHARE = 1, // the node stays shared
        NODE_COPY = 2   // every parent but the first gets a copy
    };

    enum TRAV_FLAGS : unsigned
    {
        TF_UPDATE = 0x0001,       // needs the update pass
        TF_ADDED = 0x0002,        // a node was attached below
        TF_REMOVED = 0x0004,      // a node was detached below
        TF_SHARED = 0x0008,       // a node with several parents lies below
        TF_MATRIX = 0x0010,       // a transform changed
        TF_FENCE = 0x0020,        // bounds changed
        TF_GEOMETRY = 0x0040,     // geometry changed
        TF_AUDIO = 0x0080,        // an emitter changed
        TF_HAS_GEOMETRY = 0x0200, // geometry lies below
        TF_HAS_EMITTER = 0x0400,  // an emitter lies below
        TF_CONTENT = 0x7E00,      // all bits that tell what lies below
        TF_ANY_UPDATE = 0x00F1,   // bits that make the update pass descend
        TF_KEPT_BY_UPDATE = 0xFF08
    };

    tbGroup();
    /// No children and no parents; flags without those of the contents.
    tbGroup(const tbGroup& other);
    /// Children stay.
    tbGroup& operator=(const tbGroup& other);

    int getNumChildren() const { return children.getNum(); }
    /// Not range checked.
    tbGroup* getChild(int i) const { return children[i]; }
    /// Position among the children, -1 for a stranger.
    int getChildIndex(const tbGroup* child) const;
    bool hasChild(const tbGroup* child) const;
    int getNumParents() const { return parents.getNum(); }
    /// Not range checked.
    tbGroup* getParent(int i) const { return parents[i]; }
    bool hasParent(const tbGroup* parent) const;
    /// For loops; valid until the next edit.
    std::span<tbGroup* const> getChildren() const { return children.span(); }
    std::span<tbGroup* const> getParents() const { return parents.span(); }

    NODE_FLAGS getNodeFlags() const { return NODE_FLAGS(nodeFlags); }
    unsigned getTravFlags() const { return travFlags; }
    unsigned anyTravFlags(unsigned mask) const { return travFlags & mask; }
    /// True when every flag of the node lies inside `mask`; callers rely on this reading, not on its reverse.
    bool allTravFlags(unsigned mask) const { return (mask & travFlags) == travFlags; }

    /// The node itself does not count.
    bool hasDescendant(const tbGroup* node) const;
    /// The node itself counts.
    bool hasDescendantOfType(const tbType* type) const;
    /// The first node of that name (case ignored), in pre-order and from this node on. With any `previous` the
    /// second one: callers step on once, `previous` itself is compared with nothing.
    tbGroup* findGroup(const char* wanted, const tbGroup* previous = nullptr) const;

    /// A deep copy with count 0, null when the class is not copied and when memory is out. Action nodes in it refer to the new nodes.
    tbGroup* makeCopy() const;
    /// As makeCopy(), but nodes may share their data with the originals.
    tbGroup* makeClone() const;

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;

protected:
    tbGroup(const tbGroup& other, Disposable disposable);
    ~tbGroup() override;

    /// A new node of the same class with copies (clones) of everything below; null to be left out of copies.
    virtual tbGroup* copyGroup() const;
    virtual tbGroup* cloneGroup() const;
    /// This node has come under `parent`. Overrides raise their own flags, then call their base.
    virtual void addedTo(tbGroup* parent);
    /// This node, or one above it, has left `parent`. Overrides call their base, which goes on below this node.
    virtual void removedFrom(tbGroup* parent);
    /// Raises flags here and in every ancestor that lacks some.
    virtual void dirtyUp(unsigned bits);
    /// Lowers those of the flags that no child holds, here and above.
    virtual void cleanUp(unsigned bits);

public:
    /// The bounds pass: nodes that have bounds extend the volume on top of the context's volume stack.
    virtual void updateFences(tbTravContext* context);
    /// The per-frame update of the changed parts of the subtree.
    virtual void update(tbTravContext* context);
    /// Gives every parent but the first of a shared node its own clone or copy, here and below.
    virtual void updateSharedInstances();
    /// `noPreApply` says that the traverser has been asked already. A stopped walk leaves its path on the context.
    virtual tbTraverser::TRAV_STATE apply(tbTraverser* traverser, bool noPreApply);
    virtual void apply(tbCollider* collider) const;
    virtual void apply(tbListener* listener) const;
    virtual void apply(tbCamera* camera) const;
    /// Called by the scene around a walk (`before` true, then false) for nodes registered with it.
    virtual void applyDirect(tbCollider* collider, bool before) const;
    virtual void applyDirect(tbListener* listener, bool before) const;
    virtual void applyDirect(tbCamera* camera, bool before) const;
    virtual void updateDirect(tbScene* scene, bool before);

    /// Appends a child and takes a reference on it. False for null, for this node, for a child that is there
    /// already, and when memory is out. An ancestor must not be added.
    virtual bool addChild(tbGroup* child);
    /// As addChild(), at position `i`; false as well when `i` is outside 0..getNumChildren().
    virtual bool insertChild(int i, tbGroup* child);
    /// Detaches a child and drops its reference. False for a stranger.
    virtual bool removeChild(tbGroup* child);
    virtual void removeChildren();
    /// Cuts this node out: its children come in its place, and it is released.
    virtual void remove();
    /// Puts `node` in this node's place and moves this node's children to it. False for null, this node, a parent
    /// and a child.
    virtual bool replace(tbGroup* node);
    /// Puts `node` in this node's place under every parent; both keep their children. False for null, this node.
    virtual bool replaceGraph(tbGroup* node);
    /// Leaves all parents. A node that nobody else holds is released.
    virtual void detach();
    /// Makes `node` the only child and hands it the former children. False for null and this node.
    virtual bool insertBelow(tbGroup* node);
    /// Puts `node` between this node and all its parents. False for null and this node.
    virtual bool insertAbove(tbGroup* node);
    /// Whether the order of the children carries meaning.
    virtual bool areChildrenOrdered() const;
    /// The union of the bounds below, in this node's coordinates; empty when there are none.
    virtual void getBoundingVolume(tbVolume& volume);
    virtual void setNodeFlags(NODE_FLAGS splitting);

protected:
    /// Direct writes, nothing rises or sinks.
    void setTravFlags(unsigned bits) { travFlags = std::uint16_t(bits); }
    void addTravFlags(unsigned bits) { travFlags = std::uint16_t(travFlags | bits); }
    void removeTravFlags(unsigned bits) { travFlags = std::uint16_t(travFlags & ~bits); }
    /// The same operations for nodes of any class.
    static void addTravFlagsTo(tbGroup* node, unsigned bits) { node->addTravFlags(bits); }
    static void dirtyUpFrom(tbGroup* node, unsigned bits) { node->dirtyUp(bits); }
    /// Raises `bits` in every descendant reached through nodes that carry any bit of `mask`.
    static void dirtyDown(tbGroup* node, unsigned mask, unsigned bits);

    /// Takes over the other node's state, and copies (clones) of its children in place of the own ones.
    void copy(const tbGroup& other);
    void clone(const tbGroup& other);
    /// Records a node of a running deep copy and its copy. Runs under the group lock.
    static void addGroupMapping(const tbGroup* previous, tbGroup* node);
    /// What copyGroup() and cloneGroup() of a class do: a new node that `take`, the copy or clone operation of the
    /// class, makes like `original`. Null when memory is out.
    template <class Node>
    static tbGroup* makeLike(const Node* original, void (Node::*take)(const Node&))
    {
        auto* node = new Node;
        if (!node)
            return nullptr;
        addGroupMapping(original, node);
        (node->*take)(*original);
        return node;
    }
    /// Tells the action nodes of a new subgraph which copy stands for which node.
    static void resolveGroupMapping(tbGroup* node);

private:
    friend class tbNodeList;
    friend class tbiNodeLinks;
    friend class tbiPropagation;
    friend class tbiDirectCalls;

    static constexpr unsigned FLAGS_OF_COPY = 0x81FF;
    static constexpr unsigned DYING = 0xFFFFFFFF; // visit stamp of a group whose destructor has begun

    enum class CopyKind
    {
        COPY,
        CLONE
    };

    void assign(const tbGroup& other);
    tbGroup* copyOfKind(CopyKind kind) const { return kind == CopyKind::COPY ? copyGroup() : cloneGroup(); }
    void addCopiesOf(const tbGroup& other, CopyKind kind);
    tbGroup* makeDeep(CopyKind kind) const;
    static void resolveGroup(tbGroup* node);
    static void emptyGroupMapping();
    tbGroup* findGroupRec(const char* wanted, const tbGroup* previous, bool& passed) const;
    template <class Link>
    bool attach(tbGroup* child, Link link);
    bool letGo(tbGroup* child);
    void letGoLast();
    void tellAndRelease(tbGroup* child);
    void yieldTo(tbGroup* node, tbGroup* parent, bool keepOrder);
    void splitFromParents();
    bool isDying() const { return visitStamp == DYING; }

    tbNodeList children{tbNodeList::CHILDREN};
    tbNodeList parents{tbNodeList::PARENTS};
    std::uint16_t travFlags = 0;
    std::uint16_t nodeFlags = NODE_CLONE;
    std::uint32_t visitStamp = 0;  // of the last notification that passed this node
    std::uint32_t directCalls = 0; // entries for this node in scenes' lists
};
