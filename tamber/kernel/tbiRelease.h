#pragma once

// The numbers and texts of this release.
namespace tbiRelease
{

inline constexpr int MAJOR = 1;
inline constexpr int MINOR = 2;
inline constexpr int BUILD = 0;
inline constexpr const char* DATE = "Feb  3 1999";
inline constexpr const char* COMPANY = "QRM";

} // namespace tbiRelease

/// Fills the text that tbGetSignature() returns; done once, when the library is loaded.
void tbiFormatSignature();
