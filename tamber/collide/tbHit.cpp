#include <tamber/collide/tbHit.h>

#include <tamber/trav/tbTravPath.h>

namespace
{

tbTravPath* copyOf(const tbTravPath* path)
{
    return path ? new tbTravPath(*path) : nullptr;
}

void replace(tbTravPath*& path, const tbTravPath* source)
{
    tbTravPath* copy = copyOf(source);
    delete path;
    path = copy;
}

} // namespace

tbHit::tbHit() : point(0, 0, 0), normal(0, 0, 0)
{
    matrix.makeIdent();
    invertMatrix.makeIdent();
}

tbHit::tbHit(const tbHit& other)
    : kind(other.kind),
      mask(other.mask),
      node(other.node),
      path(copyOf(other.path)),
      namedPath(copyOf(other.namedPath)),
      matrix(other.matrix),
      invertMatrix(other.invertMatrix),
      point(other.point),
      normal(other.normal),
      distance(other.distance),
      primitive(other.primitive),
      index(other.index)
{
}

tbHit& tbHit::operator=(const tbHit& other)
{
    if (this == &other)
        return *this;
    kind = other.kind;
    mask = other.mask;
    node = other.node;
    replace(path, other.path);
    replace(namedPath, other.namedPath);
    matrix = other.matrix;
    invertMatrix = other.invertMatrix;
    point = other.point;
    normal = other.normal;
    distance = other.distance;
    primitive = other.primitive;
    index = other.index;
    return *this;
}

tbHit::~tbHit()
{
    delete path;
    delete namedPath;
}
