#pragma once

#include "Image.h"

namespace native
{

/// Says everything that is wrong with a file, in the order of its entries. Takes time in proportion to the file and
/// to the data that it unpacks to; what it finds never makes it recurse.
void checkImage(Image& image, Findings& findings);

} // namespace native
