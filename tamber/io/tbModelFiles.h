#pragma once

#include <tamber/kernel/tbTypes.h>

#include <memory>

// Which files a loader opens while it reads a model that somebody else made. Models name other files: materials,
// buffers, images, whole scenes. Allowed are the model itself and regular files in or below its directory or a
// directory of the search paths (tbGetFilePath()), wherever links, ".." and separators of either kind lead to; names
// of devices and of other machines are refused unasked. At most MAX_OPEN files are open at once, each of them once, so
// that a model that names itself comes to an end.
//
// Every file that is refused is said once in a message that names model, file and rule. One object serves one import,
// on one thread.
class TB_API tbModelFiles
{
public:
    static constexpr int MAX_OPEN = 16;
    /// What stands in every message of a refusal, between the file and the rule.
    static constexpr const char* REFUSAL = " is not opened: ";

    explicit tbModelFiles(const char* modelPath);
    tbModelFiles(const tbModelFiles&) = delete;
    tbModelFiles& operator=(const tbModelFiles&) = delete;
    ~tbModelFiles();

    /// True when open() would find a file and may open it.
    bool exists(const char* name);
    /// The path to open instead of `name`, which from now on counts as open; null when there is no such regular file
    /// or it is refused. The text stands until the next call.
    const char* open(const char* name);
    /// Takes what open() returned.
    void close(const char* path);
    /// Lets a file be open more than once: for readers that do so and that read no other models. Off at first.
    void enableReopening(bool on);
    /// The last refusal as text, null when there was none.
    const char* getRefusal() const;

    /// Lets models open files wherever they lie. Off, unless the environment variable TAMBER_OPEN_ANYWHERE is 1. The
    /// rules on regular files and on files that are open hold nevertheless.
    static void enableOpenAnywhere(bool on);
    static bool isOpenAnywhereEnabled();

private:
    struct State;

    bool locate(const char* name);
    bool refuse(const char* name, const char* rule);

    std::unique_ptr<State> state;
};
