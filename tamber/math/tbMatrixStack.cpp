#include <tamber/math/tbMatrixStack.h>

#include <tamber/math/tbVec3.h>

#include <algorithm>

namespace
{

constexpr int MAX_CAPACITY = 1 << 24;

tbMatrix* allocate(int count)
{
    return static_cast<tbMatrix*>(tbMemory::malloc(std::size_t(count) * sizeof(tbMatrix)));
}

} // namespace

tbMatrixStack::tbMatrixStack(int size, GROWTH growth)
    : capacity(std::max(size & 0xFFFF, 1)),
      unlimited(growth == UNLIMITED)
{
    bottom.makeIdent();
}

tbMatrixStack::tbMatrixStack(const tbMatrixStack& other)
{
    copyFrom(other);
}

tbMatrixStack& tbMatrixStack::operator=(const tbMatrixStack& other)
{
    if (this != &other)
    {
        release();
        copyFrom(other);
    }
    return *this;
}

tbMatrixStack::~tbMatrixStack()
{
    release();
}

// Without memory only the top is kept.
void tbMatrixStack::copyFrom(const tbMatrixStack& other)
{
    capacity = other.capacity;
    id = other.id;
    unlimited = other.unlimited;
    matrices = top = last = &bottom;
    bottom = *other.top;
    if (other.getDepth() > 0 && moveTo(capacity))
        top = std::copy(other.matrices, other.top + 1, matrices) - 1;
}

void tbMatrixStack::release()
{
    if (matrices != &bottom)
        tbMemory::free(matrices);
}

bool tbMatrixStack::raise()
{
    if (top == last && !makeRoom())
        return false;
    ++top;
    changed();
    return true;
}

bool tbMatrixStack::makeRoom()
{
    if (getDepth() < capacity - 1)
        return moveTo(capacity);
    return unlimited && capacity <= MAX_CAPACITY / 2 && moveTo(2 * capacity);
}

bool tbMatrixStack::moveTo(int room)
{
    tbMatrix* larger = allocate(room);
    if (!larger)
        return false;
    tbMatrix* newTop = std::copy(matrices, top + 1, larger) - 1;
    release();
    matrices = larger;
    top = newTop;
    last = matrices + room - 1;
    capacity = room;
    return true;
}

void tbMatrixStack::reset()
{
    top = matrices;
    top->makeIdent();
    changed();
}

bool tbMatrixStack::push()
{
    if (!raise())
        return false;
    *top = top[-1];
    return true;
}

bool tbMatrixStack::pushIdent()
{
    if (!raise())
        return false;
    top->makeIdent();
    return true;
}

bool tbMatrixStack::pushLoad(const tbMatrix& m)
{
    const tbMatrix copy(m); // raising may move the matrices
    if (!raise())
        return false;
    *top = copy;
    return true;
}

bool tbMatrixStack::pushMult(const tbMatrix& m)
{
    tbMatrix product;
    product.mult(m, *top);
    if (!raise())
        return false;
    *top = product;
    return true;
}

void tbMatrixStack::pop()
{
    if (top == matrices)
        return;
    --top;
    changed();
}

void tbMatrixStack::load(const tbMatrix& m)
{
    *top = m;
    changed();
}

void tbMatrixStack::preMult(const tbMatrix& m)
{
    top->preMult(m);
    changed();
}

void tbMatrixStack::postMult(const tbMatrix& m)
{
    top->postMult(m);
    changed();
}

void tbMatrixStack::preTrans(float x, float y, float z)
{
    top->preTrans(x, y, z);
    changed();
}

void tbMatrixStack::preTrans(const tbVec3& xyz)
{
    preTrans(xyz.x, xyz.y, xyz.z);
}

void tbMatrixStack::postTrans(float x, float y, float z)
{
    top->postTrans(x, y, z);
    changed();
}

void tbMatrixStack::postTrans(const tbVec3& xyz)
{
    postTrans(xyz.x, xyz.y, xyz.z);
}

void tbMatrixStack::preRot(float angle, float x, float y, float z)
{
    top->preRot(angle, x, y, z);
    changed();
}

void tbMatrixStack::preRot(float angle, const tbVec3& axis)
{
    preRot(angle, axis.x, axis.y, axis.z);
}

void tbMatrixStack::postRot(float angle, float x, float y, float z)
{
    top->postRot(angle, x, y, z);
    changed();
}

void tbMatrixStack::postRot(float angle, const tbVec3& axis)
{
    postRot(angle, axis.x, axis.y, axis.z);
}

void tbMatrixStack::preScale(float x, float y, float z)
{
    top->preScale(x, y, z);
    changed();
}

void tbMatrixStack::preScale(const tbVec3& xyz)
{
    preScale(xyz.x, xyz.y, xyz.z);
}

void tbMatrixStack::postScale(float x, float y, float z)
{
    top->postScale(x, y, z);
    changed();
}

void tbMatrixStack::postScale(const tbVec3& xyz)
{
    postScale(xyz.x, xyz.y, xyz.z);
}
