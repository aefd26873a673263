// Damages native files at random, with an eye to where their fields are.
#pragma once

#include <cstdint>
#include <random>
#include <string>
#include <vector>

namespace tbtest
{
class Mutator
{
public:
    Mutator(std::vector<std::string> goodFiles, std::uint64_t seed)
        : files(std::move(goodFiles)),
          random(seed)
    {
    }

    /// One of the files with one to eight changes.
    std::string next();

private:
    void change(std::string& bytes);
    void changeWord(std::string& bytes, std::size_t place);
    void changeRecord(std::string& bytes);
    std::uint32_t load(const std::string& bytes, std::size_t place) const;
    void store(std::string& bytes, std::size_t place, std::uint32_t word) const;
    std::uint32_t interestingWord(const std::string& bytes);
    std::string piece(const std::string& bytes);
    /// Below `n`, which is above 0.
    std::size_t below(std::size_t n) { return std::size_t(random() % n); }

    std::vector<std::string> files;
    std::mt19937_64 random;
    bool swapped = false;
};
} // namespace tbtest
