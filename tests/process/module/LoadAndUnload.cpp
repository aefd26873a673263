// LoadAndUnload KERNEL MODULE...: loads the kernel library, uses it and unloads it, several times in one process.
// After every round the kernel and the modules that it had loaded must be gone.
#include <tests/process/module/Module.h>

#include <cstdio>
#include <cstdlib>
#include <initializer_list>
#include <iterator>

namespace
{

enum class Use
{
    NOTHING,
    START,
    START_AND_SHUT_DOWN,
    LEAVE_OBJECTS
};

void check(bool holds, const char* what, int round)
{
    if (!holds)
    {
        std::fprintf(stderr, "round %d: %s\n", round, what);
        std::exit(1);
    }
}

template <class Function>
Function* find(void* module, const char* name, int round)
{
    auto* function = reinterpret_cast<Function*>(Module::find(module, name));
    check(function != nullptr, name, round);
    return function;
}

// Objects that outlive their kernel; kept in sight to the end, so that they are left over and not lost.
constexpr const char* CLASSES[] = {"tbGroup", "tbTransform", "tbScene", "tbModel", "tbThread"};
void* leftOver[std::size(CLASSES)];

void use(void* kernel, Use how, int round)
{
    check(find<unsigned()>(kernel, "_Z12tbGetVersionv", round)() == 0x01020000u, "wrong version", round);
    if (how == Use::NOTHING)
        return;
    find<void(void*)>(kernel, Module::INIT, round)(nullptr);
    if (how == Use::LEAVE_OBJECTS)
    {
        auto* createInstance = find<void*(const char*)>(kernel, "_ZN6tbType14createInstanceEPKc", round);
        for (std::size_t i = 0; i < std::size(CLASSES); ++i)
            leftOver[i] = createInstance(CLASSES[i]);
        check(leftOver[0] != nullptr, "no group was made", round);
    }
    if (how == Use::START_AND_SHUT_DOWN)
        find<void()>(kernel, "_Z10tbShutdownv", round)();
}

} // namespace

int main(int argc, char** argv)
{
    check(argc > 1, "usage: LoadAndUnload KERNEL MODULE...", 0);
    int round = 0;
    for (Use how : {Use::NOTHING, Use::START, Use::START_AND_SHUT_DOWN, Use::LEAVE_OBJECTS, Use::START})
    {
        ++round;
        check(!Module::isLoaded(argv[1]), "the kernel is loaded already", round);
        void* kernel = Module::open(argv[1]);
        check(kernel != nullptr, "the kernel cannot be loaded", round);
        use(kernel, how, round);
        Module::close(kernel);
        for (int i = 1; i < argc; ++i)
            check(!Module::isLoaded(argv[i]), argv[i], round);
    }
    return 0;
}
