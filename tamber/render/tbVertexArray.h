#pragma once

#include <tamber/kernel/tbMemory.h>

#include <atomic>

class tbUByteVec4;
class tbVec2;
class tbVec3;
class tbVec4;
template <class T>
class tbTArray;

// A packed, reference-counted array of vertices that geometries share. Each vertex holds its position, then, as
// the type word says, a normal, a packed colour and up to four sets of texture coordinates, with no gaps. The file
// format stores each array once, however many geometries refer to it.
class TB_API tbVertexArray : public tbAllocated<tbVertexArray>
{
public:
    /// Component bits of the type word. The texture bits count the sets: exactly one of them is set, and any other
    /// pattern means no texture coordinates.
    enum VERTEX_TYPE : std::uint32_t
    {
        VT_POSITION = 0x01,  ///< 3 floats; always there, whether the bit is set or not
        VT_NORMAL = 0x02,    ///< 3 floats
        VT_COLOR = 0x04,     ///< 4 bytes in the order of the colour type
        VT_TEXCOORD0 = 0x08, ///< one set of 2 floats
        VT_TEXCOORD1 = 0x10, ///< two sets
        VT_TEXCOORD2 = 0x20, ///< three sets
        VT_TEXCOORD3 = 0x40  ///< four sets
    };
    /// Order of the bytes of a packed colour, highest byte first.
    enum COLOR_TYPE : std::uint32_t
    {
        COLOR_ABGR = 0x100,
        COLOR_ARGB = 0x200
    };
    friend constexpr unsigned operator|(VERTEX_TYPE components, COLOR_TYPE order)
    {
        return unsigned(components) | unsigned(order);
    }
    static constexpr unsigned TEXCOORD_MASK = 0x78;
    static constexpr unsigned COLOR_TYPE_MASK = 0xF00;

    tbVertexArray() noexcept = default;
    /// `n` zeroed vertices; empty when `n` is below 1 or memory is out. Only the low 12 bits of `type` count.
    tbVertexArray(int n, unsigned type);
    tbVertexArray(const tbVertexArray& other);
    /// A short-lived copy whose vertices lie in `arena`: it is never released and its destructor never runs, so that
    /// vertices that it is given later are not freed.
    tbVertexArray(const tbVertexArray& other, tbArena* arena);
    /// Takes layout, dynamic flag and vertices; the reference count stays.
    tbVertexArray& operator=(const tbVertexArray& other);
    ~tbVertexArray();

    void ref() const { refCount.fetch_add(1, std::memory_order_relaxed); }
    /// Deletes the array when no reference is left.
    void unRef() const;
    int getRefCount() const { return refCount.load(std::memory_order_relaxed); }

    int getNum() const { return num; }
    unsigned getVertexType() const { return vertexType; }
    COLOR_TYPE getColorType() const { return COLOR_TYPE(vertexType & COLOR_TYPE_MASK); }
    void* getData() { return data; }
    const void* getData() const { return data; }
    /// The allocator's size of the vertex block in bytes.
    std::size_t getSize() const { return inArena ? getByteCount() : tbMemory::getSize(data); }
    int getVertexSize() const { return sizeOfVertex(vertexType); }
    int getNumTexCoordSets() const { return countTexCoordSets(vertexType); }
    /// Byte offset of a component in each vertex, -1 when the vertices do not have it. A texture code stands for
    /// the last of its sets: VT_TEXCOORD1 gives the offset of set 1.
    int getOffset(VERTEX_TYPE component) const;

    void enableDynamic(bool dynamic);
    bool isDynamic() const { return (vertexType & DYNAMIC) != 0; }
    /// Names another byte order; the colours themselves stay. convertToABGR() and convertToARGB() exchange them.
    void setColorType(COLOR_TYPE type);
    /// Resizes to `n` vertices of the components in the low 8 bits of `type`. Bytes are kept as they lie, whatever
    /// the layouts; what was not there before is zero. Unchanged when memory is out.
    void setNum(int n, unsigned type);
    /// Takes over the vertices of `source`, which may be this array, in the layout of `type`. What the source does
    /// not have becomes position 0, normal (0, 0, 1), opaque white and texture coordinates 0. Colours take the byte
    /// order that `type` names, else they keep theirs; an array that names none counts as ABGR. Unchanged when
    /// memory is out.
    void convert(const tbVertexArray* source, unsigned type);
    /// Exchanges the red and blue bytes of every colour when the colour type is the other one.
    void convertToABGR();
    void convertToARGB();

    /// The readers fill `out` with one element a vertex, colours as red, green, blue, alpha. False, and `out`
    /// emptied, when the vertices do not have the component.
    bool getVertices(tbTArray<tbVec3>& out) const;
    bool getNormals(tbTArray<tbVec3>& out) const;
    bool getColors(tbTArray<tbVec4>& out) const;
    bool getColors(tbTArray<tbUByteVec4>& out) const;
    /// Fills `out` with set 0 of every vertex, then set 1 of every vertex and so on; returns the number of sets.
    int getTexCoords(tbTArray<tbVec2>& out) const;

    /// The vertices alone, component by component.
    void write(tbEntry* entry) const;
    /// Reads as many vertices as the array has; values beyond the entry's end become its end markers.
    void read(tbEntry* entry);
    /// Writes this array's entry index into `entry`, and the array itself when the file does not hold it yet.
    /// Returns the array's entry; null, and index -1, when the file takes no more.
    tbEntry* writeRef(tbFile* file, tbEntry* entry) const;
    /// Reads an entry index and returns that entry's array, read on first use; null when the index names no whole
    /// vertex array. The file keeps the array until it closes; holders take their own references.
    static tbVertexArray* readRef(tbFile* file, tbEntry* entry);

    static constexpr int countTexCoordSets(unsigned type)
    {
        switch (type & TEXCOORD_MASK)
        {
        case VT_TEXCOORD0:
            return 1;
        case VT_TEXCOORD1:
            return 2;
        case VT_TEXCOORD2:
            return 3;
        case VT_TEXCOORD3:
            return 4;
        default:
            return 0;
        }
    }
    /// Bytes of one vertex of that type word.
    static constexpr int sizeOfVertex(unsigned type)
    {
        return 12 + ((type & VT_NORMAL) ? 12 : 0) + ((type & VT_COLOR) ? 4 : 0) + 8 * countTexCoordSets(type);
    }

private:
    static constexpr unsigned TYPE_MASK = 0xFFF;
    static constexpr unsigned COMPONENT_MASK = 0xFF;
    static constexpr unsigned DYNAMIC = 0x8000;

    struct Layout;

    static bool byteSize(int n, unsigned type, std::size_t& bytes);
    static tbVertexArray* readEntry(tbEntry* entry);
    void swapContents(tbVertexArray& other);
    void exchangeColors(COLOR_TYPE from, COLOR_TYPE to);
    std::size_t getByteCount() const { return std::size_t(num) * std::size_t(getVertexSize()); }
    void release();
    const unsigned char* vertex(int i) const { return data + std::size_t(i) * std::size_t(getVertexSize()); }
    bool getVectors(tbTArray<tbVec3>& out, int offset) const;

    unsigned char* data = nullptr;
    mutable std::atomic<std::int32_t> refCount{0};
    std::uint16_t vertexType = 0;
    bool inArena = false; // the vertices are not the heap's
    std::int32_t num = 0;
};
