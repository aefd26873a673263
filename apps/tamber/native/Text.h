// The text form of native files, which reads back byte-identical.
#pragma once

#include "Image.h"
#include "TextReader.h"

#include <string>
#include <vector>

namespace native
{

/// The text of a file. What every writer writes the same is left out; what deviates is stated, in bytes where there
/// are no words for it. A file whose tables are not whole becomes bytes alone. The image must have a header. Throws
/// SourceError when the file cannot be read.
std::string dumpText(Image& image);

/// The file of a text. Throws TextError. No more memory is taken than a small multiple of the text, and of what the
/// text says that the file is long, which has a limit.
std::vector<unsigned char> buildText(std::string_view text);

} // namespace native
