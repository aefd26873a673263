#include <tests/fault/HeapFaults.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>
#include <new>

// What would be called without this file: the sanitizer's functions where there is one, else the system's.
// The sanitizer's own blocks are freed here as well; it looks for leaks at the end instead.
#ifdef TB_SANITIZED
#define TB_REAL(name) __interceptor_##name
constexpr bool COUNTS = false;
#else
#define TB_REAL(name) __libc_##name
constexpr bool COUNTS = true;
#endif

extern "C"
{
    void* TB_REAL(malloc)(std::size_t size);
    void* TB_REAL(calloc)(std::size_t count, std::size_t size);
    void* TB_REAL(realloc)(void* block, std::size_t size);
    void TB_REAL(free)(void* block);
}

namespace
{
constinit std::atomic<long> numBlocks{0};
constinit thread_local long left = -1; // allocations that succeed before one fails; below 0 nothing fails
constinit thread_local bool lasting = false;
constinit thread_local bool struck = false;

bool fails()
{
    if (left < 0 || left-- > 0)
        return false;
    left = lasting ? 0 : -1;
    struck = true;
    errno = ENOMEM;
    return true;
}

void* counted(void* block)
{
    if (block)
        numBlocks.fetch_add(1, std::memory_order_relaxed);
    return block;
}
} // namespace

void tbtest::HeapFaults::arm(long n, KIND kind)
{
    left = n - 1;
    lasting = kind == LASTING;
    struck = false;
}

bool tbtest::HeapFaults::disarm()
{
    left = -1;
    return struck;
}

long tbtest::HeapFaults::getNumBlocks()
{
    return COUNTS ? numBlocks.load(std::memory_order_relaxed) : 0;
}

#ifdef TB_SANITIZED
// The sanitizer knows what the system's loader keeps by its caller, which stands one step farther away here.
extern "C" [[gnu::visibility("default")]] const char* __lsan_default_suppressions()
{
    return "leak:_dl_map_object_deps\n";
}
#endif

extern "C"
{
    void* malloc(std::size_t size)
    {
        return fails() ? nullptr : counted(TB_REAL(malloc)(size));
    }
    void* calloc(std::size_t count, std::size_t size)
    {
        return fails() ? nullptr : counted(TB_REAL(calloc)(count, size));
    }
    void* realloc(void* block, std::size_t size)
    {
        if (fails())
            return nullptr;
        void* moved = TB_REAL(realloc)(block, size);
        return block ? moved : counted(moved);
    }
    void free(void* block)
    {
        if (block)
            numBlocks.fetch_sub(1, std::memory_order_relaxed);
        TB_REAL(free)(block);
    }
}

// The standard library's call malloc() and free(), the sanitizer's do not.
void* operator new(std::size_t size)
{
    if (void* block = malloc(size > 0 ? size : 1))
        return block;
    throw std::bad_alloc();
}
void* operator new[](std::size_t size)
{
    return operator new(size);
}
void* operator new(std::size_t size, const std::nothrow_t&) noexcept
{
    return malloc(size > 0 ? size : 1);
}
void* operator new[](std::size_t size, const std::nothrow_t&) noexcept
{
    return malloc(size > 0 ? size : 1);
}
void operator delete(void* block) noexcept
{
    free(block);
}
void operator delete[](void* block) noexcept
{
    free(block);
}
void operator delete(void* block, std::size_t) noexcept
{
    free(block);
}
void operator delete[](void* block, std::size_t) noexcept
{
    free(block);
}
