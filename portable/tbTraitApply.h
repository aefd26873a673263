#pragma once

class tbCamera;
class tbVisualTrait;

/// Brings a visual trait to the device of `camera`. A drawing plug-in sets one for each trait class that it knows
/// when it is loaded, and null before it goes. `trait` is of the class on which the function was set.
using tbTraitApplyFunc = void (*)(const tbVisualTrait* trait, tbCamera* camera);
