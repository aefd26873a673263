#include "tbiActionNotes.h"

#include <portable/tbKeyFrameAction.h>

namespace
{
// The numbers of a note: animation, bits, speed, and for each table interpolation and extrapolation.
constexpr std::size_t ANIMATION = 0;
constexpr std::size_t KINDS = 1;
constexpr std::size_t SPEED = 2;
constexpr std::size_t TABLES = 3;
constexpr std::size_t NUMBERS = TABLES + 2 * 3;

constexpr float ALL_BITS = float(tbiActionNotes::ALL_KEYS | tbiActionNotes::UNNAMED | tbiActionNotes::PLAYS);

/// `otherwise` for what none of our files notes.
template <class Kind>
Kind kindOf(float number, Kind otherwise)
{
    return number >= 0.0f && number <= 2.0f ? Kind(int(number)) : otherwise;
}
} // namespace

unsigned tbiActionNotes::kindsOf(const tbKeyFrameAction& action)
{
    return (action.getPositions().getNumKeys() > 0 ? POSITIONS : 0u) |
           (action.getRotations().getNumKeys() > 0 ? ROTATIONS : 0u) |
           (action.getScales().getNumKeys() > 0 ? SCALES : 0u) |
           (action.getName() && *action.getName() ? 0u : UNNAMED) | (action.isPaused() ? 0u : PLAYS);
}

void tbiActionNotes::append(std::vector<float>& notes, int animation, const tbKeyFrameAction& action)
{
    notes.insert(notes.end(), {float(animation), float(kindsOf(action)), action.getSpeed()});
    const auto appendTable = [&notes](const auto& table) {
        notes.insert(notes.end(), {float(table.getInterpolation()), float(table.getExtrapolation())});
    };
    appendTable(action.getPositions());
    appendTable(action.getRotations());
    appendTable(action.getScales());
}

const float* tbiActionNotes::find(const std::vector<float>& notes, unsigned animation)
{
    for (std::size_t i = 0; i + NUMBERS <= notes.size(); i += NUMBERS)
        if (notes[i + ANIMATION] == float(animation))
            return &notes[i];
    return nullptr;
}

unsigned tbiActionNotes::kindsOf(const float* note)
{
    const bool isKnown = note && note[KINDS] >= 0.0f && note[KINDS] <= ALL_BITS;
    return isKnown ? unsigned(note[KINDS]) : ALL_KEYS;
}

void tbiActionNotes::take(tbKeyFrameAction& action, const float* note)
{
    action.pause(!(kindsOf(note) & PLAYS));
    action.setExtrapolation(tbExtrapolation::LOOP);
    if (!note)
        return;
    action.setSpeed(note[SPEED]);
    const float* numbers = note + TABLES;
    const auto takeTable = [&numbers](auto& table)
    {
        table.setInterpolation(kindOf(*numbers++, tbInterpolation::LINEAR));
        table.setExtrapolation(kindOf(*numbers++, tbExtrapolation::LOOP));
    };
    takeTable(action.getPositions());
    takeTable(action.getRotations());
    takeTable(action.getScales());
}
