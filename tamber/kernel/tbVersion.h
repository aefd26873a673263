#pragma once

#include <tamber/kernel/tbTypes.h>

/// This release's version word: major in bits 31..24, minor in 23..16, build in 15..0.
TB_API unsigned int tbGetVersion();

// Nothing is masked, which is meant: a build number above 0xFFFF runs into the minor number, a minor number above
// 0xFF into the major one.
constexpr unsigned int tbMakeVersion(unsigned int major, unsigned int minor, unsigned int build)
{
    return (((major << 8) | minor) << 16) | build;
}
constexpr unsigned int tbGetMajorVersion(unsigned int version)
{
    return (version >> 24) & 255;
}
constexpr unsigned int tbGetMinorVersion(unsigned int version)
{
    return (version >> 16) & 255;
}
constexpr unsigned int tbGetBuildVersion(unsigned int version)
{
    return version & 0xFFFF;
}

/// Name, release and date of the library as one line of text.
TB_API const char* tbGetSignature();
