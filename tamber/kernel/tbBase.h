#pragma once

#include <tamber/containers/tbList.h>
#include <tamber/kernel/tbClass.h>
#include <tamber/kernel/tbMemory.h>

#include <atomic>

class tbRenderContext;

// The root of every object class: a reference count with deferred deletion, an optional name, attributes, the
// runtime type, and the hooks of the file format.
//
// An object is born with count 0. Holders call ref() and unRef(); the last unRef() deletes it, at once when no
// thread is attached below another, else after every thread has passed the point in its work queue at which the
// last reference was dropped. From then on ref() and unRef() do nothing: whoever still finds the object, by its name or
// in its own destructor, may hold it for a moment and changes nothing by it. Names, flags and attributes belong to the
// thread that owns the object.
class TB_API tbBase : public tbMemory
{
public:
    using TypeClass = tbType;

    tbBase();
    /// Copies flags and name; the copy has count 0 and no attributes.
    tbBase(const tbBase& other);
    /// Copies flags and name; count and attributes stay.
    tbBase& operator=(const tbBase& other);
    /// Equal flags, and equal names or none.
    bool operator==(const tbBase& other) const;

protected:
    /// Objects end through unRef() only.
    ~tbBase() override;

public:
    virtual tbBase* createCopy() const;
    virtual tbType* getType() const;
    virtual void ref();
    virtual void unRef();
    virtual void enableDynamic(bool dynamic);
    /// A short-lived copy in `arena`: not registered with its type, never released, its destructor never runs.
    virtual tbBase* createDisposableCopy(tbArena* arena) const;
    /// Prepares what the object keeps per render context.
    virtual void initRenderContext(tbRenderContext* context) const;
    /// Reads the object's fields from `entry`, or from the file's first entry of its class when that is null.
    /// Returns the entry, null when there is none or it cannot be read.
    virtual tbEntry* read(tbFile* file, tbEntry* entry);
    /// Appends the object's fields to `entry`, or to a new entry when that is null, and returns the entry.
    virtual tbEntry* write(tbFile* file, tbEntry* entry) const;
    /// Writes this object's entry index into `entry`, and the object first when the file does not hold it yet.
    /// Returns the object's entry; null, and index -1, when its type is not writable or it could not be written.
    virtual tbEntry* writeRef(tbFile* file, tbEntry* entry) const;

    static tbType* getClassType() { return tbType::ensure(classType, "tbBase", &tbBase::initClass); }
    static void registerClass(tbPlugIn* plugIn);
    static void initClass(tbPlugIn* plugIn);
    static void removeClass();
    static int getNum(bool recursive);
    static tbBase* get(int i, bool recursive);
    static tbBase* find(const char* name, tbBase* after, bool recursive);
    static tbBase* import(const char* fileName);
    static tbBase* createInstance();
    /// Reads an entry index from `entry` and returns the object of that entry, made and read on first use. Null
    /// for no reference, and for one that cannot be followed; the file keeps the object alive until it closes.
    static tbBase* readRef(tbFile* file, tbEntry* entry);

    /// Drops a reference and deletes nothing: an object that comes back to count 0 waits for its next holder.
    void unRefNoDelete()
    {
        if (!isLeaving())
            refCount.fetch_sub(1, std::memory_order_acq_rel);
    }
    int getRefCount() const { return refCount.load(std::memory_order_relaxed); }
    bool isDynamic() const { return (flags & DYNAMIC) != 0; }
    /// A copy of `text`; null frees the name.
    void setName(const char* text);
    const char* getName() const { return name; }
    /// Takes a reference on `attribute` and keeps it until this object dies; null is ignored.
    void addAttribute(tbBase* attribute);
    /// Null when no attribute was ever added.
    tbTList<tbBase*>* getAttribList() const { return attributes; }

    bool isOfType(const tbType* type) const { return getType()->isOfType(type); }
    bool isOfType(const tbBase* other) const { return getType()->isOfType(other->getType()); }
    bool isOfExactType(const tbType* type) const { return getType() == type; }
    bool isOfExactType(const tbBase* other) const { return getType() == other->getType(); }

    /// Objects whose deletion is queued but not yet done.
    static int getNumPendingDeletions() { return numRemainingDels.load(std::memory_order_relaxed); }

protected:
    struct Disposable
    {
        tbArena* arena;
    };
    /// For createDisposableCopy(): flags and name are taken into the arena, nothing is registered.
    tbBase(const tbBase& other, Disposable disposable);

    /// First statement of every destructor: leaves the instances of the class whose destructor runs.
    void deleteInstance();
    unsigned getBaseFlags() const { return flags; }

private:
    friend class tbType;
    friend class tbThread;
    friend class tbFile;

    static constexpr unsigned DYNAMIC = 1;

    void initInstance();
    bool isLeaving() const { return leaving.load(std::memory_order_relaxed); }
    void refNoCheck() { refCount.fetch_add(1, std::memory_order_relaxed); }
    void setRefCount(int count) { refCount.store(count, std::memory_order_relaxed); }
    /// Sends this object, which has no holder any more, round the threads; false when there are none to wait for.
    bool defer();
    /// Counts one thread's pass of the deferred deletion; true for the one call that brings the count to 0.
    bool passDeletion() { return refCount.fetch_add(1, std::memory_order_acq_rel) == -1; }
    /// Deletes an object whose deferred deletion has gone round. Runs on the application thread.
    static void markDeleted(tbBase* object);
    /// Runs the destructor; what it releases is destroyed after it, so that long chains need no deep stack.
    static void destroy(tbBase* object);

    static std::atomic<tbType*> classType;
    static std::atomic<int> numRemainingDels;

    std::uint16_t flags = 0;
    std::atomic<bool> leaving{false}; // the last reference is gone
    std::atomic<std::int32_t> refCount{0};
    char* name = nullptr;
    tbTList<tbBase*>* attributes = nullptr;
    std::int32_t instanceSlot = -1; // place among the instances of the exact type
};
