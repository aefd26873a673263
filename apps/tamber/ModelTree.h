#pragma once

#include <iosfwd>
#include <string>

class tbGroup;

// How much of a tree is shown. What lies below a node that stands at several places is shown at the first of them.
struct TreeLimits
{
    int depth = 64;
    int nodes = 1000; // 0: the summary only
};

/// Prints a summary of the model and its nodes: types, names, what makes them special, bounds, triangles, memory.
void printTree(std::ostream& out, const std::string& file, tbGroup& root, const TreeLimits& limits);
/// The same as JSON.
void printTreeJson(std::ostream& out, const std::string& file, tbGroup& root, const TreeLimits& limits);
