#pragma once

#include <vector>

class tbKeyFrameAction;

// What our own glTF files note of the key-frame actions of a node, because an animation cannot say it.
namespace tbiActionNotes
{
/// What an action has; bits.
enum : unsigned
{
    POSITIONS = 1,
    ROTATIONS = 2,
    SCALES = 4,
    ALL_KEYS = POSITIONS | ROTATIONS | SCALES,
    UNNAMED = 8,
    PLAYS = 16
};

/// The bits of an action.
unsigned kindsOf(const tbKeyFrameAction& action);
/// Appends the note of an action that became a part of an animation.
void append(std::vector<float>& notes, int animation, const tbKeyFrameAction& action);
/// The note of the action that became a part of that animation; null when there is none.
const float* find(const std::vector<float>& notes, unsigned animation);
/// The bits of the action that was noted. Without a note it has keys of all kinds and is paused.
unsigned kindsOf(const float* note);
/// Gives an action that has its keys the settings of the one that was noted. Without a note it loops.
void take(tbKeyFrameAction& action, const float* note);
} // namespace tbiActionNotes
