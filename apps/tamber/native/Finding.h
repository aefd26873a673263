#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>
#include <string_view>
#include <vector>

namespace native
{

enum class Severity : unsigned char
{
    NOTE,    // worth knowing
    WARNING, // readers mend it or pass over it
    ERROR    // something of the file cannot be read as it was written
};

/// What can be wrong with a native file. The numbers are stable: 1xx file and header, 2xx tags, 3xx directory, 4xx
/// stored data, 5xx and 6xx records, 7xx the graph.
enum class Kind : unsigned short
{
    FILE_EMPTY = 101,
    HEADER_SHORT = 102,
    MAGIC_UNKNOWN = 103,
    VERSION_NEWER = 104,
    RESERVED_NOT_ZERO = 105,
    NO_ENTRIES = 106,
    TABLES_BEYOND_FILE = 107,
    TOO_MANY_ENTRIES = 108,
    TOO_MANY_TAGS = 109,
    FILE_TOO_LONG = 110,
    READ_FAILED = 111,

    TAG_INDEX = 201,
    TAG_UNTERMINATED = 202,
    TAG_EMPTY = 203,
    TAG_CONTROL = 204,
    TAG_NOT_ASCII = 205,
    TAG_DUPLICATE = 206,
    TAG_CASE = 207,
    TAG_PADDING = 208,
    TAG_UNUSED = 209,

    ENTRY_MAGIC = 301,
    ENTRY_TAG = 302,
    OFFSET_ZERO = 303,
    OFFSET_IN_TABLES = 304,
    DATA_BEYOND_FILE = 305,
    DATA_IN_GAP = 306,
    DATA_OVERLAP = 307,
    DATA_ORDER = 308,
    NO_DATA = 309,
    SIZE_TOO_LARGE = 310,
    COMPRESSION_UNKNOWN = 311,
    MIXED_ORDER = 312,
    BUDGET = 313,

    PLUGIN_LIST_TWICE = 314,

    PACKED_LENGTH = 401,
    PACKED_RATIO = 402,
    PACKED_NO_END = 403,
    PACKED_OVERFLOW = 404,
    PACKED_SHORT = 405,
    PACKED_TRAILING = 406,
    PACKED_NEEDLESS = 407,
    GAP_NOT_ZERO = 408,
    LEFTOVER = 409,
    TRAILING = 410,

    CLASS_UNKNOWN = 501,
    CLASS_NOT_CREATABLE = 502,
    CLASS_CASE = 503,
    RECORD_SHORT = 504,
    COUNT_BEYOND = 505,
    COUNT_NEGATIVE = 506,
    RECORD_UNREAD = 507,
    PADDING = 508,
    TEXT_NO_END = 509,
    TEXT_EARLY_END = 510,
    TEXT_CONTROL = 511,
    BOOL_VALUE = 512,
    ENUM_VALUE = 513,
    FLAGS_UNDEFINED = 514,
    NOT_FINITE = 515,
    REFERENCE_RANGE = 516,
    REFERENCE_NEGATIVE = 517,
    REFERENCE_SELF = 518,
    REFERENCE_KIND = 519,
    REFERENCE_FAMILY = 520,
    CHILD_TWICE = 521,
    TRAIT_TWICE = 522,

    STATES_COUNT = 601,
    RANGES_COUNT = 602,
    RANGE_NEGATIVE = 603,
    ITERATOR_ITEM = 604,
    ITERATOR_COUNT = 605,
    ITERATOR_STEP = 606,
    ITERATOR_TIME = 607,
    ITERATOR_FRAMES = 608,
    MATRIX_TYPE = 609,
    ARRAY_TYPE = 610,
    VERTEX_TYPE = 611,
    VERTEX_NO_POSITION = 612,
    VERTEX_COUNT = 613,
    MESH_PRIMITIVE = 614,
    INDEX_COUNT = 615,
    INDEX_BEYOND = 616,
    RADIUS_NEGATIVE = 617,
    BOX_INVERTED = 618,
    IMAGE_SIZE = 619,
    MATERIAL_RANGE = 620,
    DISTANCE_RANGE = 621,
    FILE_NAME_LEAVES = 622,
    PLUGIN_NAME = 623,
    PLUGIN_TWICE = 624,
    PLUGIN_COUNT = 625,
    KEY_ORDER = 626,
    FRACTION_RANGE = 627,
    DURATION_NEGATIVE = 628,
    IMAGE_NAME_LEAVES = 629,
    SPLINE_POINTS = 630,

    ROOT_CLASS = 701,
    UNREACHABLE = 702,
    CYCLE = 703,
    TARGET_ABOVE = 704,
    TOO_DEEP = 705,
    TOO_MANY_PATHS = 706,
    TOO_MANY_REFERENCES = 707,
    CONTENT_FLAGS = 708,
    SCENE_INSIDE = 709
};

// One line of the table of kinds, from which the documents are made.
struct KindInfo
{
    Kind kind;
    Severity severity;
    const char* name; // short, of lower-case words
    const char* rule; // what holds in a sound file
    const char* why;  // what comes of it when it does not
};

/// Every kind once, in the order of the numbers.
std::span<const KindInfo> allKinds();
const KindInfo& infoOf(Kind kind);
const char* nameOf(Severity severity);

inline constexpr int NO_ENTRY = -1;

struct Finding
{
    Kind kind{};
    int entry = NO_ENTRY;     // position in the directory
    std::string tag;          // of the entry, or the tag that it is about; printable
    std::uint64_t offset = 0; // byte in the file; in packed entries the place of the packed data
    std::string detail;       // what was found, in words; may be empty
};

// What was found in one file: counts everything, keeps the first findings up to a limit.
class Findings
{
public:
    static constexpr std::size_t DEFAULT_LIMIT = 100;

    explicit Findings(std::size_t most = DEFAULT_LIMIT) : limit(most) {}
    void add(Finding finding);
    /// Counts a finding that would not be kept, and is true then; false, and nothing done, when it would be. Spares
    /// the words where there may be millions.
    bool countOnly(Kind kind);
    const std::vector<Finding>& getKept() const { return kept; }
    /// How many there are of a severity, of a kind, and altogether, those that were not kept included.
    std::uint64_t count(Severity severity) const { return bySeverity[unsigned(severity)]; }
    std::uint64_t count(Kind kind) const;
    /// Orders what is kept: what the file as a whole has first, then by entry and place.
    void sort();
    std::uint64_t count() const { return bySeverity[0] + bySeverity[1] + bySeverity[2]; }

private:
    void countOne(Kind kind);

    std::size_t limit;
    std::vector<Finding> kept;
    std::vector<std::uint64_t> byKind;
    std::uint64_t bySeverity[3] = {};
};

/// Names are printed so that they cannot be anything but text: what is not printable ASCII becomes \xNN.
std::string printable(std::string_view text);

} // namespace native
