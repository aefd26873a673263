#include <tamber/kernel/tbVersion.h>

#include <tamber/kernel/tbiRelease.h>

#include <cstdio>

namespace
{

constinit char signature[64] = {};

} // namespace

unsigned int tbGetVersion()
{
    return tbMakeVersion(tbiRelease::MAJOR, tbiRelease::MINOR, tbiRelease::BUILD);
}

const char* tbGetSignature()
{
    return signature;
}

void tbiFormatSignature()
{
    std::snprintf(signature, sizeof signature, "%s %d.%d %d %s", "Tamber Release", tbiRelease::MAJOR,
                  tbiRelease::MINOR, tbiRelease::BUILD, tbiRelease::DATE);
}
