#pragma once

#include <tamber/kernel/tbMemory.h>
#include <tamber/math/tbMatrix.h>
#include <tamber/math/tbVec3.h>

class tbGroup;
class tbTravPath;

// What a collider's ray or volume struck. The paths belong to the hit; copying a hit copies them. Nodes are not
// referenced: a hit speaks of the graph as it was during the walk.
class TB_API tbHit : public tbAllocated<tbHit>
{
public:
    tbHit();
    tbHit(const tbHit& other);
    tbHit& operator=(const tbHit& other);
    ~tbHit();

    unsigned int kind = 0; // the struck node's target bit, 0 for no hit
    unsigned int mask = 0; // the collider mask in force at the node
    const tbGroup* node = nullptr;
    tbTravPath* path = nullptr;      // root to node, when the collider saves it
    tbTravPath* namedPath = nullptr; // the same, only nodes with a name
    tbMatrix matrix;                 // local to world at the node, when saved
    tbMatrix invertMatrix;           // its inverse, when saved
    tbVec3 point;                    // world space
    tbVec3 normal;                   // world space, zero when the geometry gives none
    float distance = 1.0f;           // along the ray, in the ray's own units
    int primitive = -1;
    int index = -1;
};
