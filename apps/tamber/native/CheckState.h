#pragma once

#include "Image.h"
#include "Record.h"

#include <cstdint>
#include <string>
#include <vector>

// What the parts of a check share.
namespace native
{

// A reference from one object to another, in the order in which reading follows them.
class Edge
{
public:
    enum Role : std::uint32_t
    {
        ATTRIBUTE,
        CHILD,
        TRAIT,
        TARGET, // of an action, which may lie above it
        DATA
    };
    Edge(int target, Role role) : word(std::uint32_t(target) | (role << ROLE_SHIFT)) {}
    int getTarget() const { return int(word & TARGET_MASK); }
    Role getRole() const { return Role(word >> ROLE_SHIFT); }

private:
    static constexpr unsigned ROLE_SHIFT = 28;
    static constexpr std::uint32_t TARGET_MASK = (1u << ROLE_SHIFT) - 1;
    static_assert(layout::LARGEST_COUNT <= TARGET_MASK);

    std::uint32_t word;
};

struct EntryFacts
{
    const ClassInfo* info = nullptr; // null for an unknown class
    std::uint32_t firstEdge = 0;
    std::uint32_t numEdges = 0;
    std::uint32_t numVertices = 0; // of a vertex array
    std::uint16_t travFlags = 0;   // of a node
    std::uint8_t numRays = 0;      // of a collider, as many as it can have
    bool readable = false;
};

// A mesh, which is compared with its vertex array once both are known.
struct MeshUse
{
    int entry;
    int vertices;              // an entry, -1 for none
    std::uint32_t highest = 0; // of the indices
    std::uint32_t place = 0;   // of that one, in the data
};

struct CheckState
{
    /// References of all objects together; more make no graph that can be walked.
    static constexpr std::size_t MOST_EDGES = std::size_t{1} << 24;

    Image& image;
    Findings& findings;
    std::vector<EntryFacts> facts; // by entry
    std::vector<Edge> edges;       // by entry, as the facts say
    std::vector<MeshUse> meshes;
    std::vector<int> lastParent; // by entry: the node that had it among its children last
    bool edgesFull = false;

    void add(Kind kind, std::uint64_t offset, std::string detail = {})
    {
        findings.add({kind, NO_ENTRY, {}, offset, std::move(detail)});
    }
    /// About byte `place` of an entry's data.
    void addInData(Kind kind, int entry, std::uint32_t place, std::string detail);
};

/// True when objects of `info` are of the class or family `ancestor`. Costs a glance.
bool isOf(const ClassInfo* info, const ClassInfo* ancestor);

// One entry and the record in its data.
struct EntryRecord
{
    CheckState& state;
    int entry;
    EntryFacts& facts;
    const Record& record;

    /// `offset` is one in the data.
    void add(Kind kind, std::uint32_t offset, std::string detail = {}) const
    {
        state.addInData(kind, entry, offset, std::move(detail));
    }
    void add(Kind kind, const Field& field, std::string detail = {}) const;
};

// The parts, in their order.
void checkHeader(CheckState& state);
void checkTags(CheckState& state);
void checkDirectory(CheckState& state);
void checkClassNames(CheckState& state);
void checkPlaces(CheckState& state);
void checkFields(const EntryRecord& entry);
void checkClassRules(const EntryRecord& entry);
void checkMeshes(CheckState& state);
void checkGraph(CheckState& state);

} // namespace native
