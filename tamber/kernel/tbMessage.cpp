#include <tamber/kernel/tbMessage.h>

#include <tamber/kernel/tbMemory.h>
#include <tamber/kernel/tbiMessages.h>
#include <tamber/platform/tbiConsole.h>

#include <atomic>
#include <cstdarg>
#include <cstdio>
#include <cstring>

namespace
{

constinit std::atomic<tbMessageFunc> receiver{nullptr};

// What is said while the library loads; only the loading thread runs then.
constinit bool keeping = false;
constinit char* kept = nullptr;

void deliver(const char* text)
{
    if (const tbMessageFunc func = receiver.load(std::memory_order_acquire))
        func(text);
    else
        std::fputs(text, stdout);
}

void keep(const char* text)
{
    const std::size_t before = kept ? std::strlen(kept) : 0;
    const std::size_t more = std::strlen(text) + 1;
    if (char* block = static_cast<char*>(tbMemory::realloc(kept, before + more)))
    {
        kept = block;
        std::memcpy(kept + before, text, more);
    }
}

void say(const char* text)
{
    if (keeping)
        keep(text);
    else
        deliver(text);
}

} // namespace

void tbMessage(const char* format, ...)
{
    char line[1024];
    va_list arguments;
    va_start(arguments, format);
    va_list again;
    va_copy(again, arguments);
    const int length = std::vsnprintf(line, sizeof line, format, arguments);
    va_end(arguments);
    if (length >= 0 && std::size_t(length) < sizeof line)
        say(line);
    else if (length > 0)
    {
        const std::size_t bytes = std::size_t(length) + 1;
        if (char* block = static_cast<char*>(tbMemory::malloc(bytes)))
        {
            std::vsnprintf(block, bytes, format, again);
            say(block);
            tbMemory::free(block);
        }
        else
            say(line);
    }
    va_end(again);
}

tbMessageFunc tbSetMessageFunc(tbMessageFunc func)
{
    return receiver.exchange(func, std::memory_order_acq_rel);
}

void tbCreateConsole()
{
    tbiOpenConsole();
}

void tbiKeepMessages()
{
    keeping = true;
}

void tbiStopKeepingMessages()
{
    keeping = false;
}

void tbiSendKeptMessages()
{
    if (kept)
        deliver(kept);
    tbiDropKeptMessages();
}

void tbiDropKeptMessages()
{
    tbMemory::free(kept);
    kept = nullptr;
}
