#include <tamber/render/tbVertexArray.h>

#include <tamber/containers/tbTArray.h>
#include <tamber/io/tbFile.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/math/tbUByteVec4.h>
#include <tamber/math/tbVec2.h>
#include <tamber/math/tbVec3.h>
#include <tamber/math/tbVec4.h>

#include <algorithm>
#include <cstring>
#include <limits>
#include <utility>

namespace
{

constexpr char CLASS_NAME[] = "tbVertexArray";
constexpr std::uint32_t OPAQUE_WHITE = 0xFFFFFFFF;

constexpr std::uint32_t exchangeRedAndBlue(std::uint32_t color)
{
    return (color & 0xFF00FF00u) | ((color & 0xFFu) << 16) | ((color >> 16) & 0xFFu);
}

constexpr bool namesOrder(unsigned colorType)
{
    return colorType == tbVertexArray::COLOR_ABGR || colorType == tbVertexArray::COLOR_ARGB;
}

// The colour with red in its lowest byte. A layout that names no order is read as ABGR.
constexpr std::uint32_t redFirst(std::uint32_t color, unsigned colorType)
{
    return colorType == tbVertexArray::COLOR_ARGB ? exchangeRedAndBlue(color) : color;
}

std::uint32_t loadWord(const void* from)
{
    std::uint32_t word;
    std::memcpy(&word, from, sizeof word);
    return word;
}

void storeWord(void* to, std::uint32_t word)
{
    std::memcpy(to, &word, sizeof word);
}

// Normal of a vertex whose source has none.
const unsigned char* upNormal()
{
    static constexpr float UP[3] = {0.0f, 0.0f, 1.0f};
    return reinterpret_cast<const unsigned char*>(UP);
}

// Gives `out` n elements, each set by `set(i, element)`; false when memory is out.
template <class T, class Set>
bool fill(tbTArray<T>& out, std::int64_t n, Set set)
{
    if (n > std::numeric_limits<int>::max() || !out.setNum(int(n)))
        return false;
    for (int i = 0; i < int(n); ++i)
        set(i, out[i]);
    return true;
}

void writeFloats(tbEntry* entry, const void* from, int n)
{
    float values[8];
    std::memcpy(values, from, std::size_t(n) * sizeof(float));
    entry->writeFloats(values, n);
}

void readFloats(tbEntry* entry, void* to, int n)
{
    float values[8];
    entry->readFloats(values, n);
    std::memcpy(to, values, std::size_t(n) * sizeof(float));
}

} // namespace

// Where the components of a vertex lie, -1 for those that it does not have.
struct tbVertexArray::Layout
{
    explicit Layout(unsigned type)
        : normal((type & VT_NORMAL) ? 12 : -1),
          color((type & VT_COLOR) ? ((type & VT_NORMAL) ? 24 : 12) : -1),
          sets(countTexCoordSets(type)),
          size(sizeOfVertex(type)),
          texCoords(size - 8 * sets)
    {
    }

    int normal;
    int color;
    int sets;
    int size;
    int texCoords;
};

bool tbVertexArray::byteSize(int n, unsigned type, std::size_t& bytes)
{
    const std::size_t vertex = std::size_t(sizeOfVertex(type));
    const std::size_t count = n > 0 ? std::size_t(n) : 0;
    bytes = count * vertex;
    return count <= std::numeric_limits<std::ptrdiff_t>::max() / vertex;
}

tbVertexArray::tbVertexArray(int n, unsigned type) : vertexType(std::uint16_t(type & TYPE_MASK))
{
    if (n < 1)
        return;
    data = static_cast<unsigned char*>(tbMemory::calloc(std::size_t(n), std::size_t(getVertexSize())));
    if (data)
        num = n;
}

tbVertexArray::tbVertexArray(const tbVertexArray& other) : vertexType(other.vertexType)
{
    std::size_t bytes = 0;
    if (byteSize(other.num, other.vertexType, bytes) && bytes > 0)
        data = static_cast<unsigned char*>(tbMemory::malloc(bytes));
    if (!data)
        return;
    std::memcpy(data, other.data, bytes);
    num = other.num;
}

tbVertexArray::tbVertexArray(const tbVertexArray& other, tbArena* arena) : vertexType(other.vertexType)
{
    std::size_t bytes = 0;
    if (byteSize(other.num, other.vertexType, bytes) && bytes > 0)
        data = static_cast<unsigned char*>(arena->malloc(bytes));
    if (!data)
        return;
    std::memcpy(data, other.data, bytes);
    inArena = true;
    num = other.num;
}

tbVertexArray& tbVertexArray::operator=(const tbVertexArray& other)
{
    if (this == &other)
        return *this;
    tbVertexArray copied(other);
    if (copied.num == other.num)
        swapContents(copied);
    return *this;
}

tbVertexArray::~tbVertexArray()
{
    release();
}

void tbVertexArray::release()
{
    if (!inArena)
        tbMemory::free(data);
    inArena = false;
}

void tbVertexArray::swapContents(tbVertexArray& other)
{
    std::swap(data, other.data);
    std::swap(inArena, other.inArena);
    std::swap(vertexType, other.vertexType);
    std::swap(num, other.num);
}

void tbVertexArray::unRef() const
{
    if (refCount.fetch_sub(1, std::memory_order_acq_rel) <= 1)
        delete this;
}

int tbVertexArray::getOffset(VERTEX_TYPE component) const
{
    const Layout layout(vertexType);
    switch (component)
    {
    case VT_POSITION:
        return 0;
    case VT_NORMAL:
        return layout.normal;
    case VT_COLOR:
        return layout.color;
    case VT_TEXCOORD0:
    case VT_TEXCOORD1:
    case VT_TEXCOORD2:
    case VT_TEXCOORD3:
    {
        const int set = countTexCoordSets(component) - 1;
        return set < layout.sets ? layout.texCoords + 8 * set : -1;
    }
    default:
        return -1;
    }
}

void tbVertexArray::enableDynamic(bool dynamic)
{
    vertexType = std::uint16_t(dynamic ? vertexType | DYNAMIC : vertexType & ~DYNAMIC);
}

void tbVertexArray::setColorType(COLOR_TYPE type)
{
    vertexType = std::uint16_t((vertexType & ~COLOR_TYPE_MASK) | (type & COLOR_TYPE_MASK));
}

void tbVertexArray::setNum(int n, unsigned type)
{
    const unsigned newType = (vertexType & ~COMPONENT_MASK) | (type & COMPONENT_MASK);
    std::size_t held = 0;
    std::size_t wanted = 0;
    if (!byteSize(num, vertexType, held) || !byteSize(n, newType, wanted))
        return;
    unsigned char* block = nullptr;
    if (wanted > getSize() && !inArena)
    {
        block = static_cast<unsigned char*>(tbMemory::realloc(data, wanted));
        if (!block)
            return;
        data = block;
    }
    else
    {
        if (wanted > 0)
        {
            block = static_cast<unsigned char*>(tbMemory::malloc(wanted));
            if (!block)
                return;
            std::memcpy(block, data, std::min(held, wanted));
        }
        release();
        data = block;
    }
    if (wanted > held)
        std::memset(data + held, 0, wanted - held);
    vertexType = std::uint16_t(newType);
    num = std::max(n, 0);
}

void tbVertexArray::convert(const tbVertexArray* source, unsigned type)
{
    if (!source)
        return;
    const unsigned sourceOrder = source->getColorType();
    const unsigned order = namesOrder(type & COLOR_TYPE_MASK) ? type & COLOR_TYPE_MASK : sourceOrder;
    tbVertexArray made(source->num, (type & COMPONENT_MASK) | order);
    if (made.num != source->num)
        return;
    made.enableDynamic(isDynamic());

    const bool exchange = (order == COLOR_ARGB) != (sourceOrder == COLOR_ARGB);
    const Layout from(source->vertexType);
    const Layout to(made.vertexType);
    const std::size_t texBytes = 8 * std::size_t(std::min(from.sets, to.sets));
    const unsigned char* in = source->data;
    unsigned char* out = made.data;
    for (int i = 0; i < made.num; ++i, in += from.size, out += to.size)
    {
        std::memcpy(out, in, 12);
        if (to.normal >= 0)
            std::memcpy(out + to.normal, from.normal >= 0 ? in + from.normal : upNormal(), 12);
        if (to.color >= 0)
        {
            const std::uint32_t color = from.color >= 0 ? loadWord(in + from.color) : OPAQUE_WHITE;
            storeWord(out + to.color, exchange ? exchangeRedAndBlue(color) : color);
        }
        std::memcpy(out + to.texCoords, in + from.texCoords, texBytes);
    }
    swapContents(made);
}

void tbVertexArray::exchangeColors(COLOR_TYPE from, COLOR_TYPE to)
{
    const Layout layout(vertexType);
    if (layout.color < 0 || (vertexType & from) == 0)
        return;
    setColorType(to);
    unsigned char* color = data ? data + layout.color : nullptr;
    for (int i = 0; i < num; ++i, color += layout.size)
        storeWord(color, exchangeRedAndBlue(loadWord(color)));
}

void tbVertexArray::convertToABGR()
{
    exchangeColors(COLOR_ARGB, COLOR_ABGR);
}

void tbVertexArray::convertToARGB()
{
    exchangeColors(COLOR_ABGR, COLOR_ARGB);
}

bool tbVertexArray::getVectors(tbTArray<tbVec3>& out, int offset) const
{
    out.reset();
    if (offset < 0)
        return false;
    return fill(out, num, [&](int i, tbVec3& value) { std::memcpy(&value, vertex(i) + offset, 12); });
}

bool tbVertexArray::getVertices(tbTArray<tbVec3>& out) const
{
    return getVectors(out, 0);
}

bool tbVertexArray::getNormals(tbTArray<tbVec3>& out) const
{
    return getVectors(out, Layout(vertexType).normal);
}

bool tbVertexArray::getColors(tbTArray<tbUByteVec4>& out) const
{
    out.reset();
    const int offset = Layout(vertexType).color;
    if (offset < 0)
        return false;
    return fill(out, num,
                [&](int i, tbUByteVec4& value)
                { value.set(redFirst(loadWord(vertex(i) + offset), getColorType())); });
}

bool tbVertexArray::getColors(tbTArray<tbVec4>& out) const
{
    out.reset();
    const int offset = Layout(vertexType).color;
    if (offset < 0)
        return false;
    return fill(out, num,
                [&](int i, tbVec4& value)
                {
                    const std::uint32_t color = redFirst(loadWord(vertex(i) + offset), getColorType());
                    for (int channel = 0; channel < 4; ++channel)
                        value[channel] = float((color >> (8 * channel)) & 0xFFu) / 255.0f;
                });
}

int tbVertexArray::getTexCoords(tbTArray<tbVec2>& out) const
{
    out.reset();
    const Layout layout(vertexType);
    const bool filled = fill(out, std::int64_t(num) * layout.sets,
                             [&](int i, tbVec2& value)
                             { std::memcpy(&value, vertex(i % num) + layout.texCoords + 8 * (i / num), 8); });
    return filled ? layout.sets : 0;
}

void tbVertexArray::write(tbEntry* entry) const
{
    const Layout layout(vertexType);
    const unsigned char* from = data;
    for (int i = 0; i < num; ++i, from += layout.size)
    {
        writeFloats(entry, from, 3);
        if (layout.normal >= 0)
            writeFloats(entry, from + layout.normal, 3);
        if (layout.color >= 0)
            entry->writeInt(int(loadWord(from + layout.color)));
        writeFloats(entry, from + layout.texCoords, 2 * layout.sets);
    }
}

void tbVertexArray::read(tbEntry* entry)
{
    const Layout layout(vertexType);
    unsigned char* to = data;
    for (int i = 0; i < num; ++i, to += layout.size)
    {
        readFloats(entry, to, 3);
        if (layout.normal >= 0)
            readFloats(entry, to + layout.normal, 3);
        if (layout.color >= 0)
            storeWord(to + layout.color, std::uint32_t(entry->readInt()));
        readFloats(entry, to + layout.texCoords, 2 * layout.sets);
    }
}

tbEntry* tbVertexArray::writeRef(tbFile* file, tbEntry* entry) const
{
    tbEntry* own = file->findEntry(this);
    if (!own)
    {
        own = file->newDataEntry(CLASS_NAME, this);
        if (own)
        {
            own->writeShort(short(vertexType));
            own->writeInt(num);
            write(own);
        }
    }
    entry->writeInt(own ? own->getDirNum() : -1);
    return own;
}

tbVertexArray* tbVertexArray::readEntry(tbEntry* entry)
{
    const unsigned type = std::uint16_t(entry->readShort());
    const int count = entry->readInt();
    // In the file each component takes as many bytes as in memory.
    if (count < 0 || !entry->checkItems(count, sizeOfVertex(type), 4))
    {
        entry->fail("a vertex array must hold as many vertices as it says");
        return nullptr;
    }
    tbVertexArray* made = new tbVertexArray(count, type);
    if (made && made->num != count)
    {
        delete made;
        return nullptr;
    }
    if (made)
    {
        made->enableDynamic((type & DYNAMIC) != 0);
        made->read(entry);
    }
    return made;
}

tbVertexArray* tbVertexArray::readRef(tbFile* file, tbEntry* entry)
{
    return file->readData<tbVertexArray, &tbVertexArray::readEntry>(entry, CLASS_NAME);
}
