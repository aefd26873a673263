#pragma once

#include <cstddef>
#include <cstdint>
#include <string>

// Regular files by descriptor, with 64-bit positions and exact lengths. Descriptors are above 0. Paths may use either
// separator. Nothing here waits for anybody: what is no regular file is refused.

/// A descriptor for reading, -1 when `path` is no regular file that can be opened.
int tbiOpenFile(const char* path) noexcept;
/// As tbiOpenFile(). On Windows nobody can write, rename or remove the file while it is open; elsewhere nothing is held.
int tbiHoldFile(const char* path) noexcept;
/// As tbiOpenFile(); refused also when the file cannot be opened for writing.
int tbiOpenFileForUpdate(const char* path) noexcept;
void tbiCloseFile(int descriptor) noexcept;
/// -1 on failure.
std::int64_t tbiFileLength(int descriptor) noexcept;
/// Exactly `size` bytes from `position`; false when they are not there.
bool tbiReadFile(int descriptor, void* bytes, std::size_t size, std::int64_t position) noexcept;
/// Exactly `size` bytes at `position`.
bool tbiWriteFile(int descriptor, const void* bytes, std::size_t size, std::int64_t position) noexcept;

// A file that takes another's place when it is complete. It lies in the target's directory, where a link leads to,
// and has the rights of the file that it will replace. Its name is the target's and ".saving-1", or the next number
// that no other save has. What a save left behind that was killed goes when the target is saved next.
struct tbiReplacement
{
    int descriptor = -1;
    std::string path;
    std::string target;
};

// Who may open a file that replaces none.
enum class tbiNewFileRights
{
    OWNER, // nobody else, where the system has such rights
    USUAL  // whoever may open what the process makes otherwise
};

/// Makes the empty file. False, and nothing left behind, when the directory or an existing target cannot be written,
/// and when the target is no regular file.
bool tbiBeginReplacement(tbiReplacement& replacement, const char* target,
                         tbiNewFileRights rights = tbiNewFileRights::OWNER) noexcept;
/// Cuts the file to `length` bytes, makes it safe on the medium and renames it. False, and the target untouched, when
/// one of these fails. The file is closed, and gone unless it became the target.
bool tbiFinishReplacement(tbiReplacement& replacement, std::int64_t length) noexcept;
/// Closes and removes the file.
void tbiAbandonReplacement(tbiReplacement& replacement) noexcept;
