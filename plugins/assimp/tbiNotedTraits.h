#pragma once

#include <tamber/kernel/tbRef.h>

#include <vector>

class tbVisualTrait;
class tbiExtras;
struct aiTexture;

/// The traits that tbiGltfMarks::writeStyle() noted. `image` is what the file carries for the texture, null for
/// nothing.
std::vector<tbRef<tbVisualTrait>> tbiMakeNotedTraits(const tbiExtras& style, const aiTexture* image);
