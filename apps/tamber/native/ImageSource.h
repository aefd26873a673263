#pragma once

#include <cstdint>
#include <memory>
#include <stdexcept>
#include <string>
#include <vector>

namespace native
{

// Why a file's bytes cannot be had at all, without the file's name.
class SourceError : public std::runtime_error
{
public:
    using std::runtime_error::runtime_error;
};

// Where the bytes of a native file come from.
class ImageSource
{
public:
    virtual ~ImageSource() = default;
    virtual std::uint64_t getLength() const = 0;
    /// False, with nothing promised of `to`, when not all of the bytes can be had.
    virtual bool read(std::uint64_t offset, void* to, std::size_t size) = 0;
};

/// A regular file, which stays open. Throws SourceError when there is none at `path` or it cannot be read; what is no
/// regular file is refused before it is opened.
std::unique_ptr<ImageSource> openFileSource(const std::string& path);
/// The bytes themselves.
std::unique_ptr<ImageSource> makeMemorySource(std::vector<unsigned char> bytes);

} // namespace native
