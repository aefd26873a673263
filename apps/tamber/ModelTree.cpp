#include "ModelTree.h"

#include "Json.h"
#include "ModelNodes.h"
#include "Table.h"

#include <ostream>

namespace
{
// Which nodes are shown, and whether with all that lies below.
class Choice
{
public:
    explicit Choice(const TreeLimits& treeLimits) : limits(treeLimits) {}

    enum Answer
    {
        HIDDEN,
        ALONE,    // too deep to go on
        REPEATED, // what lies below has been shown
        WHOLE
    };
    Answer choose(const tbGroup& node, int depth)
    {
        if (shown >= limits.nodes)
        {
            hidden = true;
            return HIDDEN;
        }
        ++shown;
        if (!seen.insert(&node).second && node.getNumChildren() > 0)
            return REPEATED;
        return depth >= limits.depth && node.getNumChildren() > 0 ? ALONE : WHOLE;
    }
    /// True when nodes were left out because there are so many.
    bool hasHidden() const { return hidden; }

private:
    TreeLimits limits;
    int shown = 0;
    bool hidden = false;
    std::unordered_set<const tbGroup*> seen;
};

std::string join(const std::vector<std::string>& words)
{
    std::string text;
    for (const std::string& word : words)
        text += (text.empty() ? "" : " ") + word;
    return text;
}

std::string format(std::uint64_t number)
{
    return formatCount(static_cast<long long>(number));
}

void printSphere(std::ostream& out, const tbSphere& sphere)
{
    const tbVec3& center = *sphere.getCenter();
    out << "(" << center.x << ' ' << center.y << ' ' << center.z << ") radius " << sphere.getRadius();
}

/// Names may hold anything; a line is a line.
std::string quoted(const std::string& name)
{
    std::string text = "\"";
    for (const char c : name)
        text += static_cast<unsigned char>(c) < 0x20 || c == 0x7F ? '?' : c;
    return text + '"';
}

/// "12 triangles, 3 other primitives", or what of it there is.
std::string textOf(const ModelSum& sum)
{
    const std::uint64_t others = sum.primitives - sum.triangles;
    std::string text = sum.triangles > 0 ? format(sum.triangles) + " triangles" : "";
    if (others > 0)
        text += (text.empty() ? "" : ", ") + format(others) + " other primitives";
    return text;
}

void printLabel(std::ostream& out, const ModelNode& node)
{
    out << node.type;
    if (!node.name.empty())
        out << ' ' << quoted(node.name);
}

void printNode(std::ostream& out, const ModelNode& node, int depth, Choice::Answer answer)
{
    out << std::string(2 * std::size_t(depth), ' ');
    printLabel(out, node);
    if (!node.flags.empty())
        out << " [" << join(node.flags) << ']';
    if (!node.traits.empty())
        out << " {" << join(node.traits) << '}';
    if (!node.sphere.isEmpty())
    {
        out << " at ";
        printSphere(out, node.sphere);
    }
    if (node.sum.primitives > 0)
        out << ", " << textOf(node.sum);
    out << ", " << format(node.bytes) << " bytes";
    if (node.numParents > 1)
        out << ", shared by " << node.numParents;
    if (answer == Choice::REPEATED)
        out << ", shown above";
    if (answer == Choice::ALONE)
        out << ", " << formatCount(node.numChildren) << " children not shown";
    out << '\n';
}

void printSummary(std::ostream& out, const std::string& file, const ModelNodes& model)
{
    const ModelSum& sum = model.getSum();
    out << file << ": ";
    printLabel(out, ModelNode(model.getRoot(), model));
    out << "\nnodes    " << format(model.getNumNodes()) << " in " << model.getNumLevels() << " levels";
    if (sum.nodes > model.getNumNodes())
        out << ", " << format(sum.nodes) << " with every place of those that are shared";
    out << "\ndrawn    " << (sum.primitives > 0 ? textOf(sum) : "nothing") << "\nmemory   "
        << format(model.getBytes()) << " bytes of nodes, vertices and indices\n";
    if (!model.getSphere().isEmpty())
    {
        out << "bounds   ";
        printSphere(out, model.getSphere());
        out << '\n';
    }
    out << '\n';
    Table classes({"class", "nodes"});
    for (const auto& [name, number] : model.getClasses())
        classes.addRow({name, formatCount(number)});
    classes.print(out);
}

void writeSphere(Json& out, const tbSphere& sphere)
{
    out.key("bounds");
    if (sphere.isEmpty())
    {
        out.null();
        return;
    }
    const tbVec3& center = *sphere.getCenter();
    out.beginObject().key("center").beginArray().value(center.x).value(center.y).value(center.z).endArray();
    out.member("radius", sphere.getRadius()).endObject();
}

void writeWords(Json& out, const char* key, const std::vector<std::string>& words)
{
    out.key(key).beginArray();
    for (const std::string& word : words)
        out.value(word);
    out.endArray();
}

/// Up to the children, which follow.
void beginNode(Json& out, const ModelNode& node, Choice::Answer answer)
{
    out.beginObject().member("type", node.type).member("name", node.name);
    writeWords(out, "flags", node.flags);
    writeWords(out, "traits", node.traits);
    writeSphere(out, node.sphere);
    out.member("triangles", node.sum.triangles).member("primitives", node.sum.primitives);
    out.member("bytes", node.bytes).member("parents", node.numParents);
    out.member("repeated", answer == Choice::REPEATED).member("numChildren", node.numChildren);
    out.key("children").beginArray();
}

void writeSummary(Json& out, const std::string& file, const ModelNodes& model)
{
    const ModelSum& sum = model.getSum();
    out.member("file", file).member("format", "model");
    out.member("nodes", model.getNumNodes())
        .member("places", sum.nodes)
        .member("levels", model.getNumLevels());
    out.member("triangles", sum.triangles).member("primitives", sum.primitives);
    out.member("bytes", model.getBytes());
    writeSphere(out, model.getSphere());
    out.key("classes").beginObject();
    for (const auto& [name, number] : model.getClasses())
        out.member(name, number);
    out.endObject();
}
} // namespace

void printTree(std::ostream& out, const std::string& file, tbGroup& root, const TreeLimits& limits)
{
    const ModelNodes model(root);
    printSummary(out, file, model);
    if (limits.nodes == 0)
        return;
    out << '\n';
    Choice choice(limits);
    walkModel(
        root,
        [&](tbGroup& node, int depth)
        {
            const Choice::Answer answer = choice.choose(node, depth);
            if (answer != Choice::HIDDEN)
                printNode(out, ModelNode(node, model), depth, answer);
            return answer == Choice::WHOLE;
        },
        [](tbGroup&) {});
    if (choice.hasHidden())
        out << "the first " << formatCount(limits.nodes) << " nodes are shown; --lines shows more\n";
}

void printTreeJson(std::ostream& stream, const std::string& file, tbGroup& root, const TreeLimits& limits)
{
    const ModelNodes model(root);
    Json out(stream);
    out.beginObject();
    writeSummary(out, file, model);
    if (limits.nodes == 0)
    {
        out.endObject();
        return;
    }
    out.key("tree").beginArray();
    Choice choice(limits);
    walkModel(
        root,
        [&](tbGroup& node, int depth)
        {
            const Choice::Answer answer = choice.choose(node, depth);
            if (answer == Choice::HIDDEN)
                return false;
            beginNode(out, ModelNode(node, model), answer);
            if (answer != Choice::WHOLE)
                out.endArray().endObject();
            return answer == Choice::WHOLE;
        },
        [&](tbGroup&) { out.endArray().endObject(); });
    out.endArray();
    out.member("complete", !choice.hasHidden()).endObject();
}
