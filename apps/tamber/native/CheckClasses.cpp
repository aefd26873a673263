// What holds for the records of single classes.
#include "CheckState.h"

#include <tamber/platform/tbiModuleName.h>

#include <algorithm>
#include <array>
#include <cmath>
#include <limits>

namespace native
{

namespace
{

constexpr int MOST_PIXELS = 16384;
constexpr std::uint64_t BYTES_PER_PIXEL = 4;
constexpr float EMPTY_RADIUS = -1.0f;

// Matrices

constexpr unsigned IDENTITY = 1, ROTATION = 2, TRANSLATION = 4, UNISCALE = 8, SCALE = 16, PROJECTION = 32;

bool isNear(float a, float b, float tolerance = 1e-4f)
{
    return std::fabs(a - b) <= tolerance;
}

using Elements = std::array<float, 16>;

float sqrRowLength(const Elements& m, std::size_t row)
{
    return m[4 * row] * m[4 * row] + m[4 * row + 1] * m[4 * row + 1] + m[4 * row + 2] * m[4 * row + 2];
}

// Types may claim more than there is, as those of products do, but not less.
bool typeHolds(unsigned type, const Elements& m)
{
    constexpr float LENGTH_DRIFT = 0.02f;
    const auto isZero = [&m](std::initializer_list<std::size_t> places)
    { return std::all_of(places.begin(), places.end(), [&m](std::size_t i) { return isNear(m[i], 0.0f); }); };
    if ((type & IDENTITY) != 0 && type != IDENTITY)
        return false;
    if ((type & PROJECTION) != 0)
        return true;
    if (type == 0 || !isZero({3, 7, 11}) || !isNear(m[15], 1.0f))
        return false;
    if ((type & TRANSLATION) == 0 && !isZero({12, 13, 14}))
        return false;
    if ((type & ROTATION) == 0 && !isZero({1, 2, 4, 6, 8, 9}))
        return false;
    if ((type & SCALE) != 0)
        return true;
    if ((type & (ROTATION | UNISCALE)) == 0)
        return isNear(m[0], 1.0f) && isNear(m[5], 1.0f) && isNear(m[10], 1.0f);
    const float expected = (type & UNISCALE) != 0 ? sqrRowLength(m, 0) : 1.0f;
    for (std::size_t row = 0; row < 3; ++row)
        if (!isNear(sqrRowLength(m, row), expected, expected * LENGTH_DRIFT))
            return false;
    return true;
}

// Splines

constexpr unsigned HERMITE = 2, BEZIER = 3;

bool makeSegments(std::uint32_t points, unsigned type, bool closed)
{
    if (points == 0)
        return true;
    const std::uint32_t perSegment = type == HERMITE ? 2 : type == BEZIER ? 3 : 1;
    const std::uint32_t first = closed ? 0 : type == HERMITE ? 2 : 1;
    const std::uint32_t least = closed ? 2 * perSegment : first + perSegment;
    return points >= least && (points - first) % perSegment == 0;
}

// Names of other files

bool leavesFolder(std::string_view name)
{
    const auto isSeparator = [](char c) { return c == '/' || c == '\\'; };
    if (!name.empty() && isSeparator(name[0]))
        return true;
    if (name.size() >= 2 && name[1] == ':')
        return true;
    // Deeper than it climbs, a path stays below.
    int depth = 0;
    for (std::size_t from = 0; from <= name.size();)
    {
        const auto to = std::size_t(
            std::find_if(name.begin() + std::ptrdiff_t(from), name.end(), isSeparator) - name.begin());
        const std::string_view part = name.substr(from, to - from);
        if (part == "..")
            --depth;
        else if (!part.empty() && part != ".")
            ++depth;
        if (depth < 0)
            return true;
        from = to + 1;
    }
    return false;
}

// The rules of one class each, over what its record holds. Fields that a damaged record lacks are passed over.
class ClassCheck
{
public:
    explicit ClassCheck(const EntryRecord& entryRecord)
        : entry(entryRecord),
          state(entryRecord.state),
          record(entryRecord.record)
    {
    }

    void checkGroup()
    {
        if (const Field* flags = record.find("travFlags"))
            entry.facts.travFlags = std::uint16_t(record.getUnsigned(*flags));
    }

    void checkTransform()
    {
        const Field* type = record.find("matrix.type");
        const Field* matrix = record.find("matrix");
        if (!type || !matrix)
            return;
        Elements elements;
        for (std::uint32_t i = 0; i < 16; ++i)
            elements[i] = record.getFloat(*matrix, i);
        const bool finite =
            std::all_of(elements.begin(), elements.end(), [](float e) { return std::isfinite(e); });
        if (finite && !typeHolds(record.getUnsigned(*type), elements))
            entry.add(Kind::MATRIX_TYPE, *type, std::to_string(record.getUnsigned(*type)));
    }

    void checkSwitch()
    {
        expectForEachChild("states", Kind::STATES_COUNT);
        if (const Field* fraction = record.find("transitionFraction"))
            if (const float value = record.getFloat(*fraction); value < 0.0f || value > 1.0f)
                entry.add(Kind::FRACTION_RANGE, *fraction, std::to_string(value));
    }

    void checkRangeSwitch()
    {
        expectForEachChild("ranges", Kind::RANGES_COUNT);
        const Field* ranges = record.find("ranges");
        for (std::uint32_t i = 0; ranges && i < ranges->count; ++i)
        {
            const std::uint32_t offset = ranges->offset + i * ranges->width;
            if (record.floatAt(offset) < 0.0f || record.floatAt(offset + 4) < 0.0f)
                return entry.add(Kind::RANGE_NEGATIVE, offset, "range " + std::to_string(i));
        }
    }

    void checkAutoSwitch()
    {
        const Field* items = record.find("iterator.numItems");
        const Field* times = record.find("iterator.itemTimes");
        const Field* frames = record.find("iterator.itemFrameCounts");
        expectNotNegative({"iterator.totalTime", "iterator.itemTime", "iterator.itemTimes"},
                          Kind::ITERATOR_TIME);
        expectNotNegative({"iterator.totalFrames", "iterator.itemFrames", "iterator.itemFrameCounts"},
                          Kind::ITERATOR_FRAMES);
        if (const Field* step = record.find("iterator.step"))
            if (const int value = record.getInt(*step); value != 1 && value != -1)
                entry.add(Kind::ITERATOR_STEP, *step, std::to_string(value));
        if (!items || !times || !frames)
            return;
        const int number = record.getInt(*items);
        const auto room = std::int64_t(std::max(times->count, frames->count));
        if (number < 0 || number > room)
            entry.add(Kind::ITERATOR_COUNT, *items, std::to_string(number) + " of " + std::to_string(room));
        const Field* current = record.find("iterator.currentItem");
        if (const int value = record.getInt(*current); value < -1 || value >= std::max(number, 0))
            entry.add(Kind::ITERATOR_ITEM, *current, std::to_string(value) + " of " + std::to_string(number));
    }

    void checkCollider()
    {
        constexpr std::uint32_t MOST_RAYS = 32;
        if (const Field* rays = record.find("rays"))
            entry.facts.numRays = std::uint8_t(std::min(rays->count, MOST_RAYS));
    }

    void checkSphereFence()
    {
        if (const Field* radius = record.find("radius"))
            if (const float value = record.getFloat(*radius); value < 0.0f && value != EMPTY_RADIUS)
                entry.add(Kind::RADIUS_NEGATIVE, *radius, std::to_string(value));
    }

    void checkBoxFence()
    {
        constexpr float LARGEST = std::numeric_limits<float>::max(); // an empty box is the wrong way round
        const Field* low = record.find("min");
        const Field* high = record.find("max");
        for (std::uint32_t i = 0; low && high && i < 3; ++i)
            if (record.getFloat(*low, i) > record.getFloat(*high, i) && record.getFloat(*low, i) != LARGEST)
                return entry.add(Kind::BOX_INVERTED, *low);
    }

    void checkEmitter()
    {
        const Field* low = record.find("minDistance");
        const Field* high = record.find("maxDistance");
        if (low && high && (record.getFloat(*low) < 0.0f || record.getFloat(*high) < record.getFloat(*low)))
            entry.add(Kind::DISTANCE_RANGE, *low,
                      std::to_string(record.getFloat(*low)) + " to " +
                          std::to_string(record.getFloat(*high)));
        checkFileName("waveName", Kind::FILE_NAME_LEAVES);
    }

    void checkModel() { checkFileName("fileName", Kind::FILE_NAME_LEAVES); }

    void checkMaterial()
    {
        expectNotNegative({"ambient", "diffuse", "specular", "emissive", "shininess", "opacity"},
                          Kind::MATERIAL_RANGE);
        if (const Field* opacity = record.find("opacity"); opacity && record.getFloat(*opacity) > 1.0f)
            entry.add(Kind::MATERIAL_RANGE, *opacity, std::to_string(record.getFloat(*opacity)));
    }

    void checkTexture()
    {
        const Field* image = record.find("image");
        if (!image || image->count == 0)
            return checkFileName("fileName", Kind::IMAGE_NAME_LEAVES);
        // An image file's pixels are not counted here.
        if (!record.getText(*record.find("format")).empty())
            return;
        const int width = record.getInt(*record.find("width"));
        const int height = record.getInt(*record.find("height"));
        const auto isSide = [](int pixels) { return pixels >= 1 && pixels <= MOST_PIXELS; };
        if (!isSide(width) || !isSide(height) ||
            std::uint64_t(width) * std::uint64_t(height) * BYTES_PER_PIXEL != image->count)
            entry.add(Kind::IMAGE_SIZE, *image,
                      std::to_string(width) + " x " + std::to_string(height) + " pixels in " +
                          std::to_string(image->count) + " bytes");
    }

    void checkMesh()
    {
        const Field* primitive = record.find("primitive");
        const Field* vertices = record.find("vertices");
        const Field* indices = record.find("indices");
        const std::uint32_t corners = primitive ? record.getUnsigned(*primitive) + 1 : 1;
        if (corners < 1 || corners > 3)
            return entry.add(Kind::MESH_PRIMITIVE, *primitive, std::to_string(record.getInt(*primitive)));
        if (!indices || indices->count == 0)
            return;
        if (indices->count % corners != 0)
            entry.add(Kind::INDEX_COUNT, *indices,
                      std::to_string(indices->count) + ", " + std::to_string(corners) + " a primitive");
        MeshUse mesh{entry.entry, record.getInt(*vertices), record.getUnsigned(*indices), indices->offset};
        for (std::uint32_t i = 1; i < indices->count; ++i)
            if (const std::uint32_t index = record.getUnsigned(*indices, i); index > mesh.highest)
            {
                mesh.highest = index;
                mesh.place = indices->offset + i * indices->width;
            }
        state.meshes.push_back(mesh);
    }

    void checkVertexArray()
    {
        const Field* type = record.find("type");
        const Field* vertices = record.find("vertices");
        if (!type || !vertices)
            return;
        constexpr unsigned TEXTURE_BITS = 0x78;
        const unsigned word = record.getUnsigned(*type);
        const unsigned sets = word & TEXTURE_BITS;
        if ((sets & (sets - 1)) != 0)
            entry.add(Kind::VERTEX_TYPE, *type);
        if ((word & 1) == 0)
            entry.add(Kind::VERTEX_NO_POSITION, *type);
        if (vertices->stored < 0)
            entry.add(Kind::VERTEX_COUNT, vertices->countOffset, std::to_string(vertices->stored));
        entry.facts.numVertices = vertices->count;
    }

    void checkPlugIns()
    {
        std::vector<std::string> names;
        for (const Field& field : record.getFields())
        {
            const std::string_view text = field.kind == FieldKind::TEXT ? record.getText(field) : "";
            if (std::string_view(field.name) != "module" || text.empty())
                continue;
            const std::string name = tbiModuleName(text);
            if (!tbiIsPlugInName(name) || tbiFilePart(text) != text)
                entry.add(Kind::PLUGIN_NAME, field, printable(text));
            if (std::find(names.begin(), names.end(), name) != names.end())
                entry.add(Kind::PLUGIN_TWICE, field, printable(text));
            names.push_back(name);
        }
    }

    void checkPathAction()
    {
        if (const Field* duration = record.find("duration"); duration && record.getFloat(*duration) < 0.0f)
            entry.add(Kind::DURATION_NEGATIVE, *duration, std::to_string(record.getFloat(*duration)));
        const Field* type = record.find("spline.type");
        const Field* closed = record.find("spline.closed");
        const Field* points = record.find("spline.points");
        if (points &&
            !makeSegments(points->count / 3, record.getUnsigned(*type), record.getUnsigned(*closed) != 0))
            entry.add(Kind::SPLINE_POINTS, points->countOffset, std::to_string(points->count / 3));
    }

    void checkKeyFrameAction()
    {
        for (const Field& field : record.getFields())
        {
            if (field.kind != FieldKind::TABLE)
                continue;
            for (std::uint32_t i = 1; i < field.count; ++i)
            {
                const std::uint32_t offset = field.offset + i * field.width;
                if (record.floatAt(offset) < record.floatAt(offset - field.width))
                {
                    entry.add(Kind::KEY_ORDER, offset, field.name);
                    break;
                }
            }
        }
    }

private:
    void expectForEachChild(const char* name, Kind kind)
    {
        const Field* children = record.find("children");
        const Field* values = record.find(name);
        if (children && values && values->count != children->count)
            entry.add(kind, values->countOffset,
                      std::to_string(values->count) + " for " + std::to_string(children->count) +
                          " children");
    }

    void expectNotNegative(std::initializer_list<const char*> names, Kind kind)
    {
        for (const char* name : names)
        {
            const Field* field = record.find(name);
            for (std::uint32_t i = 0; field && i < field->count; ++i)
                if (field->kind == FieldKind::FLOAT ? record.getFloat(*field, i) < 0.0f
                                                    : record.getInt(*field, i) < 0)
                {
                    entry.add(kind, field->offset + i * field->width, name);
                    break;
                }
        }
    }

    void checkFileName(const char* name, Kind kind)
    {
        const Field* field = record.find(name);
        if (field && leavesFolder(record.getText(*field)))
            entry.add(kind, *field, printable(record.getText(*field)));
    }

    const EntryRecord& entry;
    CheckState& state;
    const Record& record;
};

// Which rules hold for a class and all that descend from it.
struct ClassRule
{
    const char* name;
    void (ClassCheck::*check)();
};

constexpr ClassRule RULES[] = {
    {"tbGroup", &ClassCheck::checkGroup},
    {"tbTransform", &ClassCheck::checkTransform},
    {"tbModel", &ClassCheck::checkModel},
    {"tbSwitch", &ClassCheck::checkSwitch},
    {"tbRangeSwitch", &ClassCheck::checkRangeSwitch},
    {"tbAutoSwitch", &ClassCheck::checkAutoSwitch},
    {"tbSphereFence", &ClassCheck::checkSphereFence},
    {"tbBoxFence", &ClassCheck::checkBoxFence},
    {"tbEmitter", &ClassCheck::checkEmitter},
    {"tbMesh", &ClassCheck::checkMesh},
    {"tbMaterial", &ClassCheck::checkMaterial},
    {"tbTexture", &ClassCheck::checkTexture},
    {"tbPathAction", &ClassCheck::checkPathAction},
    {"tbKeyFrameAction", &ClassCheck::checkKeyFrameAction},
    {"tbVertexArray", &ClassCheck::checkVertexArray},
    {"tbCollider", &ClassCheck::checkCollider},
    {"tbPlugIns", &ClassCheck::checkPlugIns},
};

} // namespace

void checkClassRules(const EntryRecord& entry)
{
    static const auto classes = []
    {
        std::array<const ClassInfo*, std::size(RULES)> found;
        for (std::size_t i = 0; i < found.size(); ++i)
            found[i] = findClass(RULES[i].name);
        return found;
    }();
    ClassCheck check(entry);
    for (std::size_t i = 0; i < classes.size(); ++i)
        if (isOf(entry.facts.info, classes[i]))
            (check.*RULES[i].check)();
}

void checkMeshes(CheckState& state)
{
    for (const MeshUse& mesh : state.meshes)
    {
        const bool exists = mesh.vertices >= 0 && mesh.vertices < state.image.getNumEntries();
        const std::uint32_t number = exists ? state.facts[std::size_t(mesh.vertices)].numVertices : 0;
        if (mesh.highest >= number)
            state.addInData(Kind::INDEX_BEYOND, mesh.entry, mesh.place,
                            "index " + std::to_string(mesh.highest) + " of " + std::to_string(number) +
                                " vertices");
    }
}

} // namespace native
