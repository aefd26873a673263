#pragma once

#include "tbiJson.h"

#include <cstddef>
#include <span>
#include <string_view>
#include <vector>

// The binary part of a glTF file while it is written, and the lists "bufferViews" and "accessors" that describe it.
class tbiGltfBuffer
{
public:
    enum TARGET : int
    {
        TARGET_NONE = 0,
        TARGET_VERTICES = 34962,
        TARGET_INDICES = 34963
    };
    enum COMPONENT : int
    {
        COMPONENT_BYTE = 5121,
        COMPONENT_SHORT = 5123,
        COMPONENT_INT = 5125,
        COMPONENT_FLOAT = 5126
    };
    // What the elements of a view are.
    struct Elements
    {
        std::size_t offset;
        COMPONENT component;
        const char* type; // "VEC3"
        std::size_t count;
        bool isNormalized = false;
        std::span<const float> min; // empty for none
        std::span<const float> max;
    };

    tbiGltfBuffer();

    /// Copies bytes behind what is there; returns the view's index. `stride` 0 for elements without gaps. Throws
    /// tbiModelError beyond 4 GiB.
    int addView(const void* data, std::size_t size, std::size_t stride, TARGET target);
    /// Returns the accessor's index.
    int addAccessor(int view, const Elements& elements);
    /// Floats of their own view and accessor, `width` of them an element.
    int addFloats(const std::vector<float>& values, int width, bool withRange);

    const std::vector<unsigned char>& getBytes() const { return bytes; }
    /// Adds both lists to the object that is open in `json`, where they are not empty.
    void writeLists(tbiJson& json) const;

private:
    std::vector<unsigned char> bytes;
    tbiJson views;
    tbiJson accessors;
    int numViews = 0;
    int numAccessors = 0;
};
