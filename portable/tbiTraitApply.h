// What the traits of this module have in common.
#pragma once

#include <portable/tbTraitApply.h>

#include <atomic>

class tbTravContext;

/// Records `trait` as applied, on the camera and on its trait stack, and calls the drawing plug-in's function.
void tbiApplyTrait(const tbVisualTrait* trait, tbCamera* camera, const std::atomic<tbTraitApplyFunc>& func);

/// Sets one input of the context's transparency flag, and the flag itself.
void tbiSetTransparencyInput(tbTravContext* context, unsigned bits, bool on);

// Inputs of the context's transparency flag: it is set when blending meets a translucent material, or when alpha
// blending meets a texture that may be translucent.
constexpr unsigned TBI_TEXTURE_ALPHA = 0x01;
constexpr unsigned TBI_BLENDING = 0x02;
constexpr unsigned TBI_MATERIAL_ALPHA = 0x04;
constexpr unsigned TBI_ALPHA_BLENDING = 0x08;
