#pragma once

#include <span>
#include <string_view>

// A format that models are written in.
struct tbiExportFormat
{
    enum WRITER
    {
        GLB,
        GLTF,
        LIBRARY,          // of the library, through our file system
        LIBRARY_TO_MEDIUM // of the library, which opens the file itself
    };

    const char* extension;
    WRITER writer;
    const char* id; // the library's name of it
};

std::span<const tbiExportFormat> tbiExportFormats();
/// By extension, case ignored; null for a format that is not written.
const tbiExportFormat* tbiFindExportFormat(std::string_view extension);
