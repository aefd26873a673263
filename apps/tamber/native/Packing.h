#pragma once

#include "Record.h"

namespace native
{

/// Run-length packs data as it stands in a file behind the packed length. Empty where packing does not pay.
std::vector<unsigned char> pack(Bytes data);

} // namespace native
