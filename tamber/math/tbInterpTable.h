#pragma once

#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbAllocator.h>

#include <algorithm>
#include <cmath>
#include <vector>

/// How a table goes on before its first and behind its last key.
enum class tbExtrapolation : std::int32_t
{
    CLAMP = 0,    // the first and the last value hold
    LOOP = 1,     // the span of the keys repeats
    PING_PONG = 2 // the span of the keys runs forwards and backwards in turn
};

/// How a table goes from one key to the next.
enum class tbInterpolation : std::int32_t
{
    STEP = 0,       // the earlier value holds
    LINEAR = 1,     // straight; rotations along the shorter arc
    CATMULL_ROM = 2 // smooth through the keys; rotations take LINEAR
};

// Values at times, and what lies between them. `Traits` says how a value is blended and stored. A plain value.
//
// Keys are kept in the order of their times. Looking a time up costs a binary search; playing forwards costs a
// constant time per call, because the key found last is tried first. A table that several threads read at once is
// read through the form of get() that keeps this key with the caller.
template <class Value, class Traits>
class tbInterpTable : public tbAllocated<tbInterpTable<Value, Traits>>
{
public:
    tbInterpTable() = default;
    /// Without keys when memory is out.
    tbInterpTable(const tbInterpTable& other) : tbAllocated<tbInterpTable<Value, Traits>>() { *this = other; }
    tbInterpTable& operator=(const tbInterpTable& other)
    {
        interpolation = other.interpolation;
        extrapolation = other.extrapolation;
        lastKey = other.lastKey;
        if (!tbTryAllocate([&] { keys = other.keys; }))
            keys.clear();
        return *this;
    }

    /// Adds a key behind those of the same or an earlier time. False for a time that is no number and when memory is
    /// out.
    bool addKey(float time, const Value& value)
    {
        if (std::isnan(time))
            return false;
        const auto behind = std::upper_bound(keys.begin(), keys.end(), time,
                                             [](float wanted, const Key& key) { return wanted < key.time; });
        return tbTryAllocate([&] { keys.insert(behind, Key{time, value}); });
    }
    /// False when `i` is no key.
    bool removeKey(int i)
    {
        if (i < 0 || i >= getNumKeys())
            return false;
        keys.erase(keys.begin() + i);
        return true;
    }
    void removeAllKeys() { keys.clear(); }
    int getNumKeys() const { return int(keys.size()); }
    /// Not range checked.
    float getKeyTime(int i) const { return keys[std::size_t(i)].time; }
    const Value& getKeyValue(int i) const { return keys[std::size_t(i)].value; }
    void setKeyValue(int i, const Value& value) { keys[std::size_t(i)].value = value; }
    /// Times of the first and the last key, 0 for an empty table.
    float getStart() const { return keys.empty() ? 0.0f : keys.front().time; }
    float getEnd() const { return keys.empty() ? 0.0f : keys.back().time; }
    float getDuration() const { return getEnd() - getStart(); }

    void setInterpolation(tbInterpolation kind) { interpolation = kind; }
    tbInterpolation getInterpolation() const { return interpolation; }
    void setExtrapolation(tbExtrapolation kind) { extrapolation = kind; }
    tbExtrapolation getExtrapolation() const { return extrapolation; }

    /// The value at a time. An empty table gives the neutral value; a time that is no number counts as the start.
    Value get(float time) const { return get(time, lastKey); }
    /// As get(), with the key found last, 0 at first, kept by the caller.
    Value get(float time, int& hint) const
    {
        if (keys.empty())
            return Traits::neutral();
        const float at = intoSpan(time);
        hint = findKey(at, hint);
        const Key& from = keys[std::size_t(hint)];
        if (hint + 1 == getNumKeys() || !(at > from.time) || interpolation == tbInterpolation::STEP)
            return from.value;
        const Key& to = keys[std::size_t(hint) + 1];
        const float t = (at - from.time) / (to.time - from.time);
        if (interpolation == tbInterpolation::CATMULL_ROM)
            return Traits::smooth(from.value, tangent(hint), to.value, tangent(hint + 1), t,
                                  to.time - from.time);
        return Traits::blend(from.value, to.value, t);
    }

    void write(tbEntry* entry) const
    {
        entry->writeInt(int(interpolation));
        entry->writeInt(int(extrapolation));
        entry->writeInt(getNumKeys());
        for (const Key& key : keys)
        {
            entry->writeFloat(key.time);
            entry->writeFloats(Traits::floats(key.value), Traits::NUM_FLOATS);
        }
    }
    /// False when the entry does not hold a whole table; keys out of order are put in order.
    bool read(tbEntry* entry)
    {
        interpolation = tbInterpolation(entry->readInt());
        extrapolation = tbExtrapolation(entry->readInt());
        const int n = entry->readCount((Traits::NUM_FLOATS + 1) * int(sizeof(float)));
        keys.clear();
        if (!tbTryAllocate([&] { keys.reserve(std::size_t(n)); }))
        {
            entry->fail("memory is out");
            return false;
        }
        for (int i = 0; i < n; ++i)
        {
            Key key{entry->readFloat(), Traits::neutral()};
            entry->readFloats(Traits::floats(key.value), Traits::NUM_FLOATS);
            if (!std::isnan(key.time))
                keys.push_back(key);
        }
        const auto isBefore = [](const Key& a, const Key& b) { return a.time < b.time; };
        if (!std::is_sorted(keys.begin(), keys.end(), isBefore)) // sorting takes memory
            std::stable_sort(keys.begin(), keys.end(), isBefore);
        return !entry->hasFailed();
    }

private:
    struct Key
    {
        float time;
        Value value;
    };

    // Brings a time into the span of the keys.
    float intoSpan(float time) const
    {
        const float span = getDuration();
        if (!(span > 0.0f) || !std::isfinite(span) || std::isnan(time))
            return getStart();
        if (extrapolation == tbExtrapolation::CLAMP || std::isinf(time))
            return std::clamp(time, getStart(), getEnd());
        const float period = extrapolation == tbExtrapolation::PING_PONG ? 2.0f * span : span;
        float inside = std::fmod(time - getStart(), period);
        if (inside < 0.0f)
            inside += period;
        if (extrapolation == tbExtrapolation::LOOP && inside == 0.0f && time > getStart())
            inside = span; // the end of a round is the last key, not the first
        return getStart() + (inside > span ? period - inside : inside);
    }

    // The last key that is not behind `time`: the one found last, the next one, or by search.
    int findKey(float time, int hint) const
    {
        const int n = getNumKeys();
        if (hint < 0 || hint >= n)
            hint = 0;
        for (int tries = 0; tries < 2 && keys[std::size_t(hint)].time <= time; ++tries)
        {
            if (hint + 1 == n || time < keys[std::size_t(hint) + 1].time)
                return hint;
            ++hint;
        }
        const auto behind = std::upper_bound(keys.begin(), keys.end(), time,
                                             [](float wanted, const Key& key) { return wanted < key.time; });
        return std::max(int(behind - keys.begin()) - 1, 0);
    }

    // Change of the value per unit of time at key `i`; at the ends that of the outer span.
    Value tangent(int i) const
    {
        const Key& before = keys[std::size_t(std::max(i - 1, 0))];
        const Key& behind = keys[std::size_t(std::min(i + 1, getNumKeys() - 1))];
        const float time = behind.time - before.time;
        return Traits::slope(before.value, behind.value, time > 0.0f ? 1.0f / time : 0.0f);
    }

    std::vector<Key, tbAllocator<Key>> keys;
    tbInterpolation interpolation = tbInterpolation::LINEAR;
    tbExtrapolation extrapolation = tbExtrapolation::CLAMP;
    mutable int lastKey = 0;
};

// How numbers and vectors are blended.
template <class Value>
struct tbLinearTraits
{
    static Value blend(const Value& a, const Value& b, float t) { return a * (1.0f - t) + b * t; }
    static Value slope(const Value& a, const Value& b, float perTime) { return (b - a) * perTime; }
    /// The cubic with the given values and slopes at both ends of a span of `time`.
    static Value smooth(const Value& a, const Value& slopeA, const Value& b, const Value& slopeB, float t,
                        float time)
    {
        const float t2 = t * t;
        const float t3 = t2 * t;
        return a * (2 * t3 - 3 * t2 + 1) + slopeA * ((t3 - 2 * t2 + t) * time) + b * (3 * t2 - 2 * t3) +
               slopeB * ((t3 - t2) * time);
    }
};
