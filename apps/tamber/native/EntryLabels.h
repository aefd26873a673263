#pragma once

#include <cstdint>
#include <unordered_map>

namespace native
{

// Which entry a reference such as "@5" means: the one that the text calls so, wherever it stands.
class EntryLabels
{
public:
    EntryLabels() = default;
    /// Entries that are called by their places.
    explicit EntryLabels(std::uint32_t entries) : number(entries) {}

    /// The next entry is called `label`. False when another is.
    bool add(std::uint32_t label);
    /// False when no entry is called so.
    bool find(std::uint32_t label, std::uint32_t& entry) const;
    std::uint32_t getNum() const { return number; }

private:
    std::uint32_t number = 0;
    std::unordered_map<std::uint32_t, std::uint32_t> others; // once one is not called by its place, all
};

} // namespace native
