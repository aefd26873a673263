// Every call to the file system fails in turn while a file is saved or loaded. After a save the old file or the new
// one stands there, whole, and nothing beside it.

#include <tamber/io/tbFile.h>
#include <tamber/kernel/tbSettings.h>
#include <tests/fault/FileFaults.h>
#include <tests/support/Environment.h>
#include <tests/support/FileBuilder.h>
#include <tests/support/Messages.h>
#include <tests/support/TempFile.h>

#include <gtest/gtest.h>

#include <functional>
#include <iterator>
#include <sys/stat.h>

using tbtest::FileFaults;

namespace
{

constexpr FileFaults::KIND kinds[] = {FileFaults::NO_SPACE, FileFaults::BROKEN, FileFaults::INTERRUPTED,
                                      FileFaults::SHORT};

bool hasToSucceed(FileFaults::KIND kind)
{
    return kind == FileFaults::INTERRUPTED || kind == FileFaults::SHORT;
}

int countDescriptors()
{
    return int(std::distance(std::filesystem::directory_iterator("/proc/self/fd"),
                             std::filesystem::directory_iterator()));
}

class SaveFault : public testing::Test
{
protected:
    SaveFault() { tbtest::allowMessages(); }

    /// Larger than what is written at once, with a part that is packed.
    static bool fill(tbFile& file)
    {
        for (const int size : {10, 300'000, 70'000, 300'000})
        {
            tbEntry* entry = file.newEntry(file.newTag("tbOne"));
            entry->setData(std::string(std::size_t(size), char(size)).data(), size);
            entry->setCompression(size == 70'000 ? tbEntry::RLE : tbEntry::NO_COMPRESSION);
        }
        return file.write();
    }

    /// Runs an operation until all its calls have failed in turn. `check` is told whether it was done.
    static void sweep(const std::function<void()>& prepare, const std::function<bool()>& run,
                      const std::function<void(bool)>& check)
    {
        prepare();
        ASSERT_TRUE(run());
        check(true);
        long numFaults = 0;
        const int descriptors = countDescriptors();
        for (const FileFaults::KIND kind : kinds)
        {
            const char* failed = "";
            for (long n = 1; failed && !HasFailure(); ++n)
            {
                prepare();
                FileFaults::arm(n, kind);
                const bool done = run();
                failed = FileFaults::disarm();
                SCOPED_TRACE("kind " + std::to_string(kind) + ", call " + std::to_string(n) + ": " +
                             (failed ? failed : "none"));
                EXPECT_TRUE(done || !hasToSucceed(kind));
                EXPECT_TRUE(done || failed);
                check(done);
                EXPECT_EQ(countDescriptors(), descriptors);
                numFaults += failed ? 1 : 0;
            }
        }
        std::printf("[  faults  ] %ld\n", numFaults);
    }

    tbtest::TempDirectory directory;
    std::string path = directory.path("file.tb");
    tbFile file;
};

} // namespace

TEST_F(SaveFault, OldFileOrNewFileStandsThere)
{
    tbFile first;
    ASSERT_TRUE(first.create(path.c_str()) && fill(first));
    const std::string content = tbtest::readAll(path);
    const std::string old = tbtest::buildFile({{"tbOld", std::string(1000, 'x')}});
    const auto check = [&](const std::string& written)
    {
        return [&, written](bool done)
        {
            EXPECT_TRUE(tbtest::readAll(path) == (done ? written : old));
            EXPECT_EQ(directory.count(), 1) << "nothing is left behind";
            EXPECT_EQ(file.getLastError() == tbFile::FILE_OK, done);
            EXPECT_EQ(*file.getErrorText() == 0, done);
            file.close();
        };
    };
    const auto prepare = [&] { tbtest::writeAll(path, old); };
    sweep(
        prepare, [&] { return file.create(path.c_str()) && fill(file); }, check(content));

    prepare();
    ASSERT_TRUE(file.open(path.c_str(), "rw") && fill(file));
    const std::string rewritten = tbtest::readAll(path);
    file.close();
    sweep(
        prepare, [&] { return file.open(path.c_str(), "rw") && fill(file); }, check(rewritten));
}

TEST_F(SaveFault, ReadsGiveAllOrAnError)
{
    ASSERT_TRUE(file.create(path.c_str()) && fill(file));
    file.close();
    sweep([] {},
          [&]
          {
              bool read = file.open(path.c_str(), "r");
              for (int i = 0; read && i < file.getNumEntries(); ++i)
                  read = file.readEntry(file.getEntry(i));
              return read;
          },
          [&](bool done)
          {
              EXPECT_EQ(file.getLastError() == tbFile::FILE_OK, done);
              for (int i = 0; done && i < file.getNumEntries(); ++i)
              {
                  const auto* bytes = static_cast<const char*>(file.getEntry(i)->getData());
                  const int size = file.getEntry(i)->getDataSize();
                  EXPECT_EQ(std::string(bytes, std::size_t(size)),
                            std::string(std::size_t(size), char(size)));
              }
              file.close();
          });
}

TEST_F(SaveFault, SettingsAreNeverLost)
{
    const std::string settings = directory.path("settings.ini");
    tbtest::setVariable("TAMBER_SETTINGS", settings);
    const std::string old = "A=0x00000001\nText=\"some text\"\n";
    sweep([&] { tbtest::writeAll(settings, old); }, [] { return tbWriteRegistry("A", 2); },
          [&](bool done)
          {
              EXPECT_EQ(tbtest::readAll(settings), done ? "A=0x00000002\nText=\"some text\"\n" : old);
              EXPECT_EQ(directory.count(), 1);
          });
}

// A pipe that nobody writes to would be waited for.
TEST_F(SaveFault, PipesAreRefusedAndNotWaitedFor)
{
    const std::string pipe = directory.path("pipe.tb");
    ASSERT_EQ(mkfifo(pipe.c_str(), 0600), 0);
    for (const char* mode : {"r", "rw"})
    {
        EXPECT_FALSE(file.open(pipe.c_str(), mode));
        EXPECT_EQ(file.getLastError(), tbFile::FILE_CANNOT_OPEN);
    }
    EXPECT_FALSE(file.create(pipe.c_str()));
    EXPECT_FALSE(tbFile::isTamberFormat(pipe.c_str()));
}
