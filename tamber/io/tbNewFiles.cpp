#include <tamber/io/tbNewFiles.h>

#include <tamber/kernel/tbiMemoryWatch.h>
#include <tamber/platform/tbiFile.h>

#include <vector>

struct tbNewFiles::Files
{
    struct File
    {
        tbiReplacement replacement;
        std::int64_t size;
    };
    std::vector<File> list;

    void abandonLast()
    {
        tbiAbandonReplacement(list.back().replacement);
        list.pop_back();
    }
};

tbNewFiles::tbNewFiles() : files(nullptr) {}

tbNewFiles::~tbNewFiles()
{
    while (files && !files->list.empty())
        files->abandonLast();
    delete files;
}

bool tbNewFiles::add(const char* path, const void* bytes, std::size_t size)
{
    const bool hasPlace = tbiWithoutThrow(false,
                                          [this, size]
                                          {
                                              if (!files)
                                                  files = new Files;
                                              files->list.push_back({{}, std::int64_t(size)});
                                              return true;
                                          });
    if (!hasPlace)
        return false;
    tbiReplacement& replacement = files->list.back().replacement;
    if (tbiBeginReplacement(replacement, path, tbiNewFileRights::USUAL) &&
        tbiWriteFile(replacement.descriptor, bytes, size, 0))
        return true;
    files->abandonLast();
    return false;
}

bool tbNewFiles::commit()
{
    bool done = true;
    for (std::size_t i = 0; files && i < files->list.size() && done; ++i)
        done = tbiFinishReplacement(files->list[i].replacement, files->list[i].size);
    while (files && !files->list.empty())
        files->abandonLast(); // nothing where it has taken its place
    return done;
}
