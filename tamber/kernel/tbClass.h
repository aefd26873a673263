// The class pattern. Every class derived from tbBase has one line in its header and one in its source:
//
//     class tbFence : public tbGroup                  TB_DEFINE_ABSTRACT_NODE_CLASS(tbFence, tbGroup)
//     {
//         TB_CLASS(tbFence, tbGroup)
//     public: ...
//
// Each of its constructors ends its base's work with initInstance(), each destructor begins with deleteInstance().
// registerClass(plugIn) is called once by whoever supplies the class; the type is set up on first use.
#pragma once

#include <tamber/io/tbImport.h>
#include <tamber/kernel/tbType.h>

#include <type_traits>

/// In the class body. The type object is of the same class as the parent's.
#define TB_CLASS(Class, Parent) TB_CLASS_OF(Class, Parent, Parent::TypeClass)

/// In the body of a class that begins a family with a type class of its own.
#define TB_CLASS_OF(Class, Parent, Type)                                                                     \
public:                                                                                                      \
    using TypeClass = Type;                                                                                  \
    static TypeClass* getClassType()                                                                         \
    {                                                                                                        \
        return tbType::ensure(classType, #Class, &Class::initClass);                                         \
    }                                                                                                        \
    [[maybe_unused]] static void registerClass(tbPlugIn* plugIn);                                            \
    [[maybe_unused]] static void initClass(tbPlugIn* plugIn);                                                \
    [[maybe_unused]] static void removeClass();                                                              \
    [[maybe_unused]] static int getNum(bool recursive);                                                      \
    [[maybe_unused]] static Class* get(int i, bool recursive);                                               \
    [[maybe_unused]] static Class* find(const char* name, tbBase* after, bool recursive);                    \
    [[maybe_unused]] static Class* import(const char* fileName);                                             \
    [[maybe_unused]] static tbBase* createInstance();                                                        \
    tbType* getType() const override;                                                                        \
                                                                                                             \
private:                                                                                                     \
    static std::atomic<TypeClass*> classType;                                                                \
    void initInstance();

#define TB_DEFINE_PATTERN_OF(Class, Parent, Writable)                                                        \
    std::atomic<Class::TypeClass*> Class::classType{nullptr};                                                \
    void Class::registerClass(tbPlugIn* plugIn)                                                              \
    {                                                                                                        \
        if (!classType.load())                                                                               \
            tbType::registerClass(#Class, &Class::initClass, plugIn);                                        \
    }                                                                                                        \
    void Class::initClass(tbPlugIn* plugIn)                                                                  \
    {                                                                                                        \
        tbType::define<Class, Parent, Writable>(classType, #Class, &Class::createInstance, plugIn);          \
    }                                                                                                        \
    void Class::removeClass()                                                                                \
    {                                                                                                        \
        classType.store(nullptr);                                                                            \
    }                                                                                                        \
    tbType* Class::getType() const                                                                           \
    {                                                                                                        \
        return Class::getClassType();                                                                        \
    }                                                                                                        \
    void Class::initInstance()                                                                               \
    {                                                                                                        \
        getClassType()->addInstance(this);                                                                   \
    }                                                                                                        \
    int Class::getNum(bool recursive)                                                                        \
    {                                                                                                        \
        return classType.load() ? classType.load()->getNum(recursive) : 0;                                   \
    }                                                                                                        \
    Class* Class::get(int i, bool recursive)                                                                 \
    {                                                                                                        \
        return classType.load() ? static_cast<Class*>(classType.load()->get(i, recursive)) : nullptr;        \
    }                                                                                                        \
    Class* Class::find(const char* name, tbBase* after, bool recursive)                                      \
    {                                                                                                        \
        return classType.load() ? static_cast<Class*>(classType.load()->find(name, after, recursive))        \
                                : nullptr;                                                                   \
    }                                                                                                        \
    Class* Class::import(const char* fileName)                                                               \
    {                                                                                                        \
        return static_cast<Class*>(tbImportOfType(fileName, getClassType()));                                \
    }

#define TB_DEFINE_PATTERN(Class, Parent) TB_DEFINE_PATTERN_OF(Class, Parent, true)

/// In the source, after the includes. The class makes instances by name.
#define TB_DEFINE_CLASS(Class, Parent)                                                                       \
    TB_DEFINE_PATTERN(Class, Parent)                                                                         \
    tbBase* Class::createInstance()                                                                          \
    {                                                                                                        \
        return new Class;                                                                                    \
    }

/// The same for a class whose instances belong to the running program: files pass them over.
#define TB_DEFINE_UNSAVED_CLASS(Class, Parent)                                                               \
    TB_DEFINE_PATTERN_OF(Class, Parent, false)                                                               \
    tbBase* Class::createInstance()                                                                          \
    {                                                                                                        \
        return new Class;                                                                                    \
    }

/// createInstance() gives null.
#define TB_DEFINE_ABSTRACT_CLASS(Class, Parent)                                                              \
    TB_DEFINE_PATTERN(Class, Parent)                                                                         \
    tbBase* Class::createInstance()                                                                          \
    {                                                                                                        \
        return nullptr;                                                                                      \
    }

/// Part of the running program: createInstance() gives null, and files pass instances over.
#define TB_DEFINE_SERVICE_CLASS(Class, Parent)                                                               \
    TB_DEFINE_PATTERN_OF(Class, Parent, false)                                                               \
    tbBase* Class::createInstance()                                                                          \
    {                                                                                                        \
        return nullptr;                                                                                      \
    }

#define TB_CHECK_FAMILY(Class, Type)                                                                         \
    static_assert(std::is_same_v<Class::TypeClass, Type>, #Class " is of another family");

#define TB_DEFINE_NODE_CLASS(Class, Parent) TB_CHECK_FAMILY(Class, tbGroupType) TB_DEFINE_CLASS(Class, Parent)
#define TB_DEFINE_ABSTRACT_NODE_CLASS(Class, Parent)                                                         \
    TB_CHECK_FAMILY(Class, tbGroupType) TB_DEFINE_ABSTRACT_CLASS(Class, Parent)
#define TB_DEFINE_TRAV_TRAIT_CLASS(Class, Parent)                                                            \
    TB_CHECK_FAMILY(Class, tbTravTraitType) TB_DEFINE_CLASS(Class, Parent)
#define TB_DEFINE_ABSTRACT_TRAV_TRAIT_CLASS(Class, Parent)                                                   \
    TB_CHECK_FAMILY(Class, tbTravTraitType) TB_DEFINE_ABSTRACT_CLASS(Class, Parent)
#define TB_DEFINE_VISUAL_TRAIT_CLASS(Class, Parent)                                                          \
    TB_CHECK_FAMILY(Class, tbVisualTraitType) TB_DEFINE_CLASS(Class, Parent)
#define TB_DEFINE_ABSTRACT_VISUAL_TRAIT_CLASS(Class, Parent)                                                 \
    TB_CHECK_FAMILY(Class, tbVisualTraitType) TB_DEFINE_ABSTRACT_CLASS(Class, Parent)
#define TB_DEFINE_AUDIO_TRAIT_CLASS(Class, Parent)                                                           \
    TB_CHECK_FAMILY(Class, tbAudioTraitType) TB_DEFINE_CLASS(Class, Parent)
#define TB_DEFINE_ABSTRACT_AUDIO_TRAIT_CLASS(Class, Parent)                                                  \
    TB_CHECK_FAMILY(Class, tbAudioTraitType) TB_DEFINE_ABSTRACT_CLASS(Class, Parent)
