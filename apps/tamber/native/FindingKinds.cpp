// The table of kinds. The documents are made from it.
#include "Finding.h"

namespace native
{

namespace
{

constexpr KindInfo KINDS[] = {
    // File and header
    {Kind::FILE_EMPTY, Severity::ERROR, "file-empty", "A file has at least a header.",
     "There is nothing to read."},
    {Kind::HEADER_SHORT, Severity::ERROR, "header-short", "The header is 96 bytes long.",
     "The file is refused."},
    {Kind::MAGIC_UNKNOWN, Severity::ERROR, "magic-unknown",
     "A file begins with the magic 0xBA773265 in either byte order.", "It is no native file, and refused."},
    {Kind::VERSION_NEWER, Severity::WARNING, "version-newer",
     "The writer's version is not newer than this one.",
     "Classes may have more fields than this release reads."},
    {Kind::RESERVED_NOT_ZERO, Severity::WARNING, "reserved-not-zero",
     "Reserved bytes of the header are zero.", "They are ignored, and lost when the file is written again."},
    {Kind::NO_ENTRIES, Severity::ERROR, "no-entries", "A file has at least one entry.",
     "The file is refused."},
    {Kind::TABLES_BEYOND_FILE, Severity::ERROR, "tables-beyond-file",
     "The tags and the directory that the header announces lie within the file.", "The file is refused."},
    {Kind::TOO_MANY_ENTRIES, Severity::ERROR, "too-many-entries", "A file has at most 4,194,303 entries.",
     "The file is refused."},
    {Kind::TOO_MANY_TAGS, Severity::ERROR, "too-many-tags", "A file has at most 4,194,303 tags.",
     "The file is refused."},
    {Kind::FILE_TOO_LONG, Severity::WARNING, "file-too-long", "A file is at most 2 GiB long.",
     "It can be read, but not written again."},
    {Kind::READ_FAILED, Severity::ERROR, "read-failed", "All bytes of the file can be read.",
     "The disk is damaged, or the file changed meanwhile."},

    // Tags
    {Kind::TAG_INDEX, Severity::ERROR, "tag-index", "A tag's index is its place in the table.",
     "The file is refused."},
    {Kind::TAG_UNTERMINATED, Severity::WARNING, "tag-unterminated",
     "A class name ends with a zero within its 64 bytes.", "It is cut to 63 characters."},
    {Kind::TAG_EMPTY, Severity::WARNING, "tag-empty", "A tag names a class.", "Its entries cannot be read."},
    {Kind::TAG_CONTROL, Severity::WARNING, "tag-control", "Class names hold no control characters.",
     "No class is named so; a terminal may take them for commands."},
    {Kind::TAG_NOT_ASCII, Severity::WARNING, "tag-not-ascii", "Class names are ASCII.",
     "No class is named so."},
    {Kind::TAG_DUPLICATE, Severity::WARNING, "tag-duplicate", "Each class has one tag.",
     "Entries of the second are not found by their class's name."},
    {Kind::TAG_CASE, Severity::WARNING, "tag-case", "Class names differ in more than case.",
     "Objects of both are made by the same class."},
    {Kind::TAG_PADDING, Severity::WARNING, "tag-padding", "The bytes behind a class name are zero.",
     "They are lost when the file is written again."},
    {Kind::TAG_UNUSED, Severity::NOTE, "tag-unused", "Every tag has entries.", "Nothing."},

    // Directory
    {Kind::ENTRY_MAGIC, Severity::ERROR, "entry-magic",
     "A directory record begins with the magic in either byte order.", "The entry cannot be read."},
    {Kind::ENTRY_TAG, Severity::ERROR, "entry-tag", "An entry's tag is one of the file's.",
     "The entry cannot be read."},
    {Kind::OFFSET_ZERO, Severity::ERROR, "offset-zero", "An entry's offset is not 0.",
     "The entry cannot be read."},
    {Kind::OFFSET_IN_TABLES, Severity::ERROR, "offset-in-tables",
     "An entry's data lies behind the header, the tags and the directory.", "The entry cannot be read."},
    {Kind::DATA_BEYOND_FILE, Severity::ERROR, "data-beyond-file", "An entry's data lies within the file.",
     "The entry cannot be read."},
    {Kind::DATA_IN_GAP, Severity::WARNING, "data-in-gap",
     "The space reserved behind the directory holds no data.", "Other readers may refuse it."},
    {Kind::DATA_OVERLAP, Severity::WARNING, "data-overlap", "No two entries share bytes.",
     "One of the two holds what was not meant for it."},
    {Kind::DATA_ORDER, Severity::WARNING, "data-order", "Data lies in the order of the directory.",
     "Reading seeks to and fro."},
    {Kind::NO_DATA, Severity::ERROR, "no-data", "An entry has data.", "The entry cannot be read."},
    {Kind::SIZE_TOO_LARGE, Severity::ERROR, "size-too-large", "An entry is shorter than 2 GiB.",
     "The entry cannot be read."},
    {Kind::COMPRESSION_UNKNOWN, Severity::ERROR, "compression-unknown",
     "The compression is 0 (none) or 1 (run lengths).", "The entry cannot be read."},
    {Kind::MIXED_ORDER, Severity::NOTE, "mixed-order", "All entries have the header's byte order.",
     "Nothing: each is read in its own."},
    {Kind::BUDGET, Severity::ERROR, "budget",
     "All entries together hold at most 256 MiB, or 160 times the file's length.",
     "This entry and others behind it cannot be read."},

    // Stored data
    {Kind::PACKED_LENGTH, Severity::ERROR, "packed-length",
     "The length of packed data is at least 1 and leads no further than the file's end.",
     "The entry cannot be read."},
    {Kind::PACKED_RATIO, Severity::ERROR, "packed-ratio", "A packed byte stands for at most 128.",
     "The entry cannot be read."},
    {Kind::PACKED_NO_END, Severity::ERROR, "packed-no-end", "Packed data is whole pairs and then a zero.",
     "The entry cannot be read."},
    {Kind::PACKED_OVERFLOW, Severity::ERROR, "packed-overflow",
     "Packed data gives no more than the entry's size.", "The entry cannot be read."},
    {Kind::PACKED_SHORT, Severity::WARNING, "packed-short", "Packed data gives as much as the entry's size.",
     "The rest reads as zeros."},
    {Kind::PACKED_TRAILING, Severity::WARNING, "packed-trailing", "Packed data ends with its zero.",
     "What follows is ignored."},
    {Kind::PACKED_NEEDLESS, Severity::NOTE, "packed-needless", "Packed data is shorter than the data.",
     "Nothing; it is stored plainly when the file is written again."},
    {Kind::GAP_NOT_ZERO, Severity::WARNING, "gap-not-zero",
     "The space reserved behind the directory is zero.", "It is lost when the file is written again."},
    {Kind::LEFTOVER, Severity::WARNING, "leftover",
     "Every byte between the first data and the last belongs to an entry.",
     "It is lost when the file is written again."},
    {Kind::TRAILING, Severity::WARNING, "trailing", "The file ends with the last data.",
     "It is lost when the file is written again."},
};

} // namespace

std::span<const KindInfo> allKinds()
{
    return KINDS;
}

} // namespace native
