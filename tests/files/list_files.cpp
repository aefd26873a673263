// list_files FILE...: what a test expects of each file, in the form of tests/data/hostile/expected.txt. With -g before
// the files, only the graph of entry 0, in the form of tests/data/good. For whoever adds a file; read what it prints.
#include <tests/files/Expectation.h>
#include <tests/files/Listing.h>
#include <tests/files/WholeFile.h>
#include <tests/support/Messages.h>

#include <cstdio>
#include <cstring>

int main(int argc, char** argv)
{
    tbtest::WholeFile::prepare();
    tbtest::watchMessages();
    const bool graphOnly = argc > 1 && std::strcmp(argv[1], "-g") == 0;
    for (int i = graphOnly ? 2 : 1; i < argc; ++i)
    {
        if (!graphOnly)
        {
            std::printf("%s\n", tbtest::Expectation::ofFile(argv[i]).toText().c_str());
            continue;
        }
        const tbtest::WholeFile file(argv[i]);
        if (!file.objects.empty())
            std::printf("%s", tbtest::listGraph(file.objects[0].get()).c_str());
    }
    return 0;
}
