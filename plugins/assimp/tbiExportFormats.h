#pragma once

#include <span>
#include <string>
#include <string_view>

struct tbiExportScene;

// A format that models are written in.
struct tbiExportFormat
{
    const char* extension;
    /// Makes the bytes of the file; null where the library writes the format.
    std::string (*write)(const tbiExportScene& scene);
    const char* id;        // what the library calls the format, null for ours
    bool losesTop = false; // what is said of the topmost node is lost
};

std::span<const tbiExportFormat> tbiExportFormats();
/// By extension, case ignored; null for a format that is not written.
const tbiExportFormat* tbiFindExportFormat(std::string_view extension);
