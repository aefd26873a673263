#include "ImageSource.h"

#include <algorithm>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <system_error>
#include <utility>

namespace native
{

namespace
{

// Keeps a window of the file, so that entries that follow each other cost no call each.
class FileSource : public ImageSource
{
public:
    explicit FileSource(const std::string& path)
    {
        const std::filesystem::path file(path);
        std::error_code error;
        const auto status = std::filesystem::status(file, error);
        if (!std::filesystem::exists(status))
            throw SourceError("there is no such file");
        if (!std::filesystem::is_regular_file(status))
            throw SourceError("is not a file");
        length = std::filesystem::file_size(file, error);
        if (!error)
            stream.open(file, std::ios::binary);
        if (error || !stream.is_open())
            throw SourceError("cannot be opened");
    }
    std::uint64_t getLength() const override { return length; }
    bool read(std::uint64_t offset, void* to, std::size_t size) override
    {
        if (size == 0)
            return true;
        if (offset > length || size > length - offset)
            return false;
        if (size > WINDOW_SIZE)
            return fetch(offset, static_cast<char*>(to), size);
        if (offset < windowStart || offset + size > windowStart + window.size())
        {
            // Whoever jumps about pays for little more than is read.
            const std::uint64_t end = windowStart + window.size();
            ahead =
                offset >= windowStart && offset <= end ? std::min(2 * ahead, WINDOW_SIZE) : SMALLEST_WINDOW;
            window.resize(std::size_t(std::min<std::uint64_t>(std::max(ahead, size), length - offset)));
            windowStart = offset;
            if (!fetch(offset, window.data(), window.size()))
            {
                window.clear();
                return false;
            }
        }
        std::memcpy(to, window.data() + (offset - windowStart), size);
        return true;
    }

private:
    static constexpr std::size_t SMALLEST_WINDOW = 4 * 1024;
    static constexpr std::size_t WINDOW_SIZE = 256 * 1024;

    bool fetch(std::uint64_t offset, char* to, std::size_t size)
    {
        stream.clear();
        stream.seekg(std::streamoff(offset));
        stream.read(to, std::streamsize(size));
        return stream.good() && std::size_t(stream.gcount()) == size;
    }

    std::ifstream stream;
    std::uint64_t length = 0;
    std::vector<char> window;
    std::uint64_t windowStart = 0;
    std::size_t ahead = SMALLEST_WINDOW;
};

class MemorySource : public ImageSource
{
public:
    explicit MemorySource(std::vector<unsigned char> content) : bytes(std::move(content)) {}
    std::uint64_t getLength() const override { return bytes.size(); }
    bool read(std::uint64_t offset, void* to, std::size_t size) override
    {
        if (offset > bytes.size() || size > bytes.size() - offset)
            return false;
        if (size > 0)
            std::memcpy(to, bytes.data() + offset, size);
        return true;
    }

private:
    std::vector<unsigned char> bytes;
};

} // namespace

std::unique_ptr<ImageSource> openFileSource(const std::string& path)
{
    return std::make_unique<FileSource>(path);
}

std::unique_ptr<ImageSource> makeMemorySource(std::vector<unsigned char> bytes)
{
    return std::make_unique<MemorySource>(std::move(bytes));
}

} // namespace native
