#pragma once

#include <tamber/containers/tbList.h>
#include <tamber/kernel/tbMemory.h>

#include <atomic>

// The runtime type of one class: name, parent, supplying plug-in, how to create an instance, and the live
// instances whose exact class it is. All types form one registry, guarded by "tbType Lock"; every operation that
// touches it holds that lock, so types may be used from any thread.
class TB_API tbType : public tbMemory
{
public:
    using CreateFunc = tbBase* (*)();
    using RemoveFunc = void (*)();
    using InitClassFunc = void (*)(tbPlugIn*);

    /// `name` is copied unless the class was registered, whose name string is then taken over. `create` may be null.
    tbType(tbType* parent, const char* name, CreateFunc create, RemoveFunc remove, tbPlugIn* plugIn);
    tbType(const tbType&) = delete;
    tbType& operator=(const tbType&) = delete;
    ~tbType() override;

    /// `object` moves from the parent type's instances into this type's. Takes a reference on the plug-in.
    virtual void addInstance(tbBase* object);
    /// False when `object` is no instance of this exact type. Drops the plug-in reference in every case, and
    /// deletes this type when it waits for its last instance.
    virtual bool removeInstance(tbBase* object);
    virtual void setWritable(bool writable);
    /// Deletes this type now when it has no instances (true), or with its last instance (false).
    virtual bool deleteType();

    /// Remembers a class for set-up on first use. `name` is copied.
    static void registerClass(const char* name, InitClassFunc initClass, tbPlugIn* plugIn);
    /// Sets a class up: by its registration when there is one, else by `initClass(nullptr)`.
    static void initClass(const char* name, InitClassFunc initClass);
    /// The type of that name, case ignored, set up now if it was only registered; null when unknown.
    static tbType* findType(const char* name);
    /// The type of that name of which createInstance() makes one: the first where several have it.
    static const tbType* findTypeToCreate(const char* name);
    /// A new instance, count 0, of the class of that name; null when unknown or when the class makes none.
    static tbBase* createInstance(const char* name);
    /// Drops the registrations of a plug-in's classes that were never set up.
    static void unregisterClasses(const tbPlugIn* plugIn);
    static int getNumTypes();
    static tbType* getType(int i);

    const char* getName() const { return name; }
    /// True for the type of that name, case ignored; `nameHash` is the hash of the name in lower case.
    bool hasName(const char* className, unsigned nameHash) const;
    tbType* getParent() const { return parent; }
    tbPlugIn* getPlugIn() const { return plugIn; }
    /// Position in the type list, or in the family's own list for types of nodes and traits; -1 when destroyed.
    int getIndex() const { return index; }
    bool isWritable() const { return (flags.load(std::memory_order_relaxed) & WRITABLE) != 0; }
    bool isOfExactType(const tbType* t) const { return this == t; }
    /// True for this type and all its ancestors.
    bool isOfType(const tbType* t) const
    {
        for (const tbType* type = this; type; type = type->parent)
            if (type == t)
                return true;
        return false;
    }
    /// Version word of the plug-in that supplied the class, else the kernel's.
    unsigned int getVersion() const;
    /// Makes an object with the class's create function; null when it has none, and when memory is out for the object
    /// or a part of it.
    tbBase* create() const;

    /// Live instances; `recursive` includes those of derived classes, own instances first, then each child type's
    /// in the order of creation.
    int getNum(bool recursive) const;
    /// Not range checked without `recursive`; null beyond the end with it.
    tbBase* get(int i, bool recursive) const;
    /// The first instance named `name` (case ignored), or the one that follows `after`.
    tbBase* find(const char* name, const tbBase* after, bool recursive) const;

    /// What a class's line in its source file forwards to.
    template <class Class, class Parent, bool Writable = true>
    static void define(std::atomic<typename Class::TypeClass*>& slot, const char* name, CreateFunc create,
                       tbPlugIn* plugIn)
    {
        defineLocked(
            [](void* context, const char* className, CreateFunc creator, tbPlugIn* supplier) -> tbType*
            {
                auto& typeSlot = *static_cast<std::atomic<typename Class::TypeClass*>*>(context);
                if (typeSlot.load(std::memory_order_acquire))
                    return nullptr;
                tbType* parentType = Parent::getClassType();
                if (!parentType)
                    return nullptr;
                auto* type = new
                    typename Class::TypeClass(parentType, className, creator, Class::removeClass, supplier);
                if (type && !Writable)
                    type->setWritable(false);
                typeSlot.store(type, std::memory_order_release);
                return type;
            },
            &slot, name, create, plugIn, &Class::initClass);
    }
    template <class TypeClass>
    static TypeClass* ensure(const std::atomic<TypeClass*>& slot, const char* name, InitClassFunc initClass)
    {
        TypeClass* type = slot.load(std::memory_order_acquire);
        if (!type) [[unlikely]]
        {
            tbType::initClass(name, initClass);
            type = slot.load(std::memory_order_acquire);
            if (!type) // another class of that name was registered, and that one is set up now
            {
                initClass(nullptr);
                type = slot.load(std::memory_order_acquire);
            }
        }
        return type;
    }

protected:
    static void remove(tbType* type);
    void setIndex(int i) { index = i; }

private:
    friend class tbPlugIn;

    static constexpr unsigned WRITABLE = 1;
    static constexpr unsigned DELETE_WITH_LAST = 2;

    using DefineFunc = tbType* (*)(void*, const char*, CreateFunc, tbPlugIn*);
    static void defineLocked(DefineFunc define, void* context, const char* name, CreateFunc create,
                             tbPlugIn* plugIn, InitClassFunc initClassFunc);

    bool takeOut(tbBase* object);
    tbBase* at(int& i) const;
    tbBase* findNamed(const char* name, const tbBase* after, bool recursive, bool& passed) const;

    char* name;
    unsigned int hash;
    tbType* parent;
    tbPlugIn* plugIn;
    tbTList<tbBase*> instances;
    tbTList<tbType*> children;
    std::atomic<unsigned> flags;
    int index;
    CreateFunc createFunc;
    RemoveFunc removeFunc;
};
