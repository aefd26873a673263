#pragma once

#include <cstddef>
#include <vector>

/// Pixels (red, green, blue and alpha bytes, top row first) as a PNG file, which is not compressed. Sides are 1 or
/// more.
std::vector<unsigned char> tbiWritePng(int width, int height, const unsigned char* rgba);
/// The pixels of a file that tbiWritePng() wrote; empty for any other file.
std::vector<unsigned char> tbiReadOwnPng(int width, int height, const unsigned char* file, std::size_t size);
