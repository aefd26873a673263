#include <tamber/io/tbNewFiles.h>

#include <tamber/platform/tbiFile.h>

#include <utility>
#include <vector>

struct tbNewFiles::Files
{
    struct File
    {
        tbiReplacement replacement;
        std::int64_t size;
    };
    std::vector<File> list;
};

tbNewFiles::tbNewFiles() : files(new Files) {}

tbNewFiles::~tbNewFiles()
{
    for (Files::File& file : files->list)
        tbiAbandonReplacement(file.replacement);
    delete files;
}

bool tbNewFiles::add(const char* path, const void* bytes, std::size_t size)
{
    tbiReplacement replacement;
    if (!tbiBeginReplacement(replacement, path))
        return false;
    const bool isWritten = size == 0 || tbiWriteFile(replacement.descriptor, bytes, size, 0);
    if (isWritten)
        files->list.push_back({std::move(replacement), std::int64_t(size)});
    else
        tbiAbandonReplacement(replacement);
    return isWritten;
}

bool tbNewFiles::commit()
{
    std::vector<Files::File> list = std::move(files->list);
    files->list.clear();
    bool done = true;
    for (Files::File& file : list)
        if (done)
            done = tbiFinishReplacement(file.replacement, file.size);
        else
            tbiAbandonReplacement(file.replacement);
    return done;
}
