// What the values of enumerations and the bits of flags are called in records.
#pragma once

#include "Record.h"

namespace native::names
{

inline constexpr ValueName objectFlags[] = {{1, "dynamic"}};
inline constexpr ValueName travFlags[] = {{0x0001, "update"},    {0x0002, "added"},  {0x0004, "removed"},
                                          {0x0008, "shared"},    {0x0010, "matrix"}, {0x0020, "fence"},
                                          {0x0040, "geometry"},  {0x0080, "audio"},  {0x0200, "hasGeometry"},
                                          {0x0400, "hasEmitter"}};
inline constexpr ValueName nodeFlags[] = {{0, "clone"}, {1, "share"}, {2, "copy"}};
inline constexpr ValueName traitModes[] = {{0, "off"}, {1, "on"}, {2, "override"}, {3, "force"}};
inline constexpr ValueName transitionModes[] = {{0, "none"}, {1, "in"}, {2, "out"}};
inline constexpr ValueName fenceModes[] = {{0, "auto"}, {1, "fixed"}};
inline constexpr ValueName switchStates[] = {{0, "off"}, {1, "on"}, {2, "fading"}};
inline constexpr ValueName switchFlags[] = {{1, "transitions"}, {2, "running"}};
inline constexpr ValueName billboardModes[] = {{0, "axis"}, {1, "cameraUp"}, {2, "worldUp"}, {3, "fixedUp"}};
inline constexpr ValueName matrixTypes[] = {{1, "identity"}, {2, "rotation"}, {4, "translation"},
                                            {8, "uniscale"}, {16, "scale"},   {32, "projection"}};
inline constexpr ValueName emitterFlags[] = {
    {1, "updated"}, {4, "playing"}, {8, "positionable"}, {16, "doppler"}};
inline constexpr ValueName targets[] = {{0x10000, "transforms"}, {0x20000, "fences"}, {0x40000, "geometry"}};
inline constexpr ValueName saves[] = {{1, "path"}, {2, "namedPath"}, {4, "matrix"}, {8, "invertMatrix"}};
inline constexpr ValueName rayHitModes[] = {{0, "none"}, {1, "nearest"}, {2, "farthest"}, {3, "all"}};
inline constexpr ValueName volumeModes[] = {{0, "none"}, {1, "sphere"}, {2, "box"}, {3, "user"}};
inline constexpr ValueName volumeHitModes[] = {{0, "none"}, {1, "first"}, {2, "all"}};
inline constexpr ValueName iteratorCycles[] = {{0, "stop"}, {1, "wrap"}, {2, "reverse"}};
inline constexpr ValueName iteratorModes[] = {{0, "time"}, {1, "frames"}};
inline constexpr ValueName iteratorDirections[] = {{0, "forward"}, {1, "backward"}};
inline constexpr ValueName blendFactors[] = {{0, "zero"},     {1, "one"},
                                             {2, "srcColor"}, {3, "oneMinusSrcColor"},
                                             {4, "dstColor"}, {5, "oneMinusDstColor"},
                                             {6, "srcAlpha"}, {7, "oneMinusSrcAlpha"},
                                             {8, "dstAlpha"}, {9, "oneMinusDstAlpha"}};
inline constexpr ValueName faces[] = {{0, "none"}, {1, "back"}, {2, "front"}, {3, "both"}};
inline constexpr ValueName primitives[] = {{0, "points"}, {1, "lines"}, {2, "triangles"}};
inline constexpr ValueName wraps[] = {{0, "repeat"}, {1, "clamp"}, {2, "mirror"}};
inline constexpr ValueName filters[] = {{0, "nearest"}, {1, "linear"}, {2, "mipmap"}};
inline constexpr ValueName splineTypes[] = {{0, "linear"}, {1, "catmullRom"}, {2, "hermite"}, {3, "bezier"}};
inline constexpr ValueName interpolations[] = {{0, "step"}, {1, "linear"}, {2, "catmullRom"}};
inline constexpr ValueName extrapolations[] = {{0, "clamp"}, {1, "loop"}, {2, "pingPong"}};
inline constexpr ValueName vertexTypes[] = {
    {0x01, "position"},   {0x02, "normal"},     {0x04, "color"}, {0x08, "texCoords1"}, {0x10, "texCoords2"},
    {0x20, "texCoords3"}, {0x40, "texCoords4"}, {0x100, "abgr"}, {0x200, "argb"},      {0x8000, "dynamic"}};
inline constexpr ValueName arrayTypes[] = {{0, "short"},
                                           {1, "ubyteVec3"},
                                           {2, "ubyteVec4"},
                                           {3, "int"},
                                           {4, "float"},
                                           {5, "vec2"},
                                           {6, "vec3"},
                                           {7, "vec4"},
                                           {8, "double"},
                                           {0x8000, "dynamicShort"},
                                           {0x8001, "dynamicUbyteVec3"},
                                           {0x8002, "dynamicUbyteVec4"},
                                           {0x8003, "dynamicInt"},
                                           {0x8004, "dynamicFloat"},
                                           {0x8005, "dynamicVec2"},
                                           {0x8006, "dynamicVec3"},
                                           {0x8007, "dynamicVec4"},
                                           {0x8008, "dynamicDouble"}};

} // namespace native::names
