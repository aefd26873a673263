#pragma once

#include "Finding.h"

#include <string>

namespace native
{

/// One line without the file's name, as in "error 616 index-beyond: entry 12 (tbMesh), byte 5012: index 7 of 4
/// vertices".
std::string textOf(const Finding& finding);
/// "1 error, 2 warnings, 3 notes".
std::string summaryOf(const Findings& findings);
/// The document that explains every kind.
std::string describeKinds();

} // namespace native
