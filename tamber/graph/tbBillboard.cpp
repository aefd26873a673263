#include <tamber/graph/tbBillboard.h>

#include <tamber/audio/tbListener.h>
#include <tamber/collide/tbCollider.h>
#include <tamber/collide/tbiColliderFrame.h>
#include <tamber/display/tbCamera.h>
#include <tamber/io/tbEntry.h>
#include <tamber/kernel/tbArena.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbiScopes.h>

TB_DEFINE_NODE_CLASS(tbBillboard, tbGroup)

namespace
{

// Every change below but a shared instance alone may change bounds.
constexpr unsigned CHANGES_BOUNDS = 0xF7;

tbVec3 cross(const tbVec3& a, const tbVec3& b)
{
    tbVec3 c;
    c.cross(a, b);
    return c;
}

// The direction nearest to `wish` that stands square to `direction`.
tbVec3 squaredUp(const tbVec3& wish, const tbVec3& direction)
{
    tbVec3 side = cross(wish, direction);
    side.normalize();
    tbVec3 up = cross(direction, side);
    up.normalize();
    return up;
}

float rowLength(const tbMatrix& m, int row)
{
    return tbVec3(m[row][0], m[row][1], m[row][2]).length();
}

} // namespace

tbBillboard::tbBillboard() : axis(0, 0, 1), position(0, 0, 0)
{
    initInstance();
    enableDynamic(true);
}

tbBillboard::tbBillboard(const tbBillboard& other)
    : tbGroup(other),
      volume(other.volume),
      mode(other.mode),
      axis(other.axis),
      position(other.position)
{
    initInstance();
}

tbBillboard::tbBillboard(const tbBillboard& other, Disposable disposable)
    : tbGroup(other, disposable),
      volume(other.volume),
      mode(other.mode),
      axis(other.axis),
      position(other.position)
{
}

tbBillboard& tbBillboard::operator=(const tbBillboard& other)
{
    if (this != &other)
    {
        tbGroup::operator=(other);
        assign(other);
    }
    return *this;
}

tbBillboard::~tbBillboard()
{
    deleteInstance();
}

void tbBillboard::assign(const tbBillboard& other)
{
    volume = other.volume;
    mode = other.mode;
    axis = other.axis;
    position = other.position;
    facingVersion = 0;
    dirtyUp(TF_MATRIX);
}

void tbBillboard::copy(const tbBillboard& other)
{
    tbGroup::copy(other);
    assign(other);
}

void tbBillboard::clone(const tbBillboard& other)
{
    tbGroup::clone(other);
    assign(other);
}

tbBase* tbBillboard::createCopy() const
{
    return tbiCopyOf(*this);
}

tbBase* tbBillboard::createDisposableCopy(tbArena* arena) const
{
    return new (arena) tbBillboard(*this, Disposable{arena});
}

tbGroup* tbBillboard::copyGroup() const
{
    return makeLike(this, &tbBillboard::copy);
}

tbGroup* tbBillboard::cloneGroup() const
{
    return makeLike(this, &tbBillboard::clone);
}

void tbBillboard::setAxis(const tbVec3& direction)
{
    axis = direction;
    dirtyUp(TF_MATRIX);
}

void tbBillboard::setMode(MODE wanted)
{
    mode = wanted;
    dirtyUp(TF_MATRIX);
}

void tbBillboard::setXYZ(float x, float y, float z)
{
    setXYZ(tbVec3(x, y, z));
}

void tbBillboard::setXYZ(const tbVec3& place)
{
    position = place;
    dirtyUp(TF_MATRIX);
}

void tbBillboard::dirtyUp(unsigned bits)
{
    if ((bits & CHANGES_BOUNDS) != 0)
        bits |= TF_FENCE;
    tbGroup::dirtyUp(bits);
}

tbVec3 tbBillboard::upFor(const tbMatrix& model, const tbVec3& direction, const tbCamera* camera) const
{
    const tbVec3 worldUp(0, 0, 1);
    tbVec3 up;
    switch (mode)
    {
    case MODE_AXIS:
        up.xformVec(axis, model);
        return up;
    case MODE_CAMERA_UP:
        up.xformVec(worldUp, camera->getMatrix());
        return squaredUp(up, direction);
    case MODE_WORLD_UP:
        return squaredUp(worldUp, direction);
    default:
        return worldUp;
    }
}

void tbBillboard::computeFullMatrix(const tbMatrix& model, tbMatrix& full, tbTravContext*,
                                    tbCamera* camera) const
{
    tbVec3 offset;
    offset.xformVec(position, model);
    const tbVec3 place = tbVec3(model[3][0], model[3][1], model[3][2]) + offset;
    tbVec3 direction;
    if (camera->getProjectionType() == tbCamera::PROJ_ORTHO)
        direction.xformVec(tbVec3(0, -1, 0), camera->getMatrix());
    else
        direction = camera->getXYZ() - place;
    full.makeAlongDirection(direction, upFor(model, direction, camera));
    const unsigned type = model.getType();
    if ((type & tbMatrix::MATRIX_SCALE) != 0)
        full.preScale(rowLength(model, 0), rowLength(model, 1), rowLength(model, 2));
    else if ((type & tbMatrix::MATRIX_UNISCALE) != 0)
        full.preScale(rowLength(model, 0), rowLength(model, 0), rowLength(model, 0));
    full.setXYZ(place[0], place[1], place[2]);
}

void tbBillboard::rememberFacing(const tbMatrix& model, const tbMatrix& full) const
{
    unsigned version = facingVersion.load(std::memory_order_relaxed);
    if ((version & 1) != 0 || !facingVersion.compare_exchange_strong(version, version + 1))
        return; // another camera is just writing
    tbMatrix toModel;
    toModel.makeIdent();
    toModel.invert(model);
    tbMatrix local;
    local.mult(full, toModel);
    for (int i = 0; i < 16; ++i)
        facing[i].store(local.getData()[i], std::memory_order_release); // not before the odd version
    facingVersion.store(version + 2 == 0 ? 2 : version + 2, std::memory_order_release);
}

tbMatrix tbBillboard::lastFacing() const
{
    tbMatrix matrix;
    const unsigned version = facingVersion.load(std::memory_order_acquire);
    if (version != 0 && (version & 1) == 0)
    {
        float elements[16];
        for (int i = 0; i < 16; ++i)
            elements[i] = facing[i].load(std::memory_order_acquire);
        if (facingVersion.load(std::memory_order_relaxed) == version)
        {
            matrix.set(elements, 0);
            return matrix;
        }
    }
    matrix.makeXYZ(position[0], position[1], position[2]);
    return matrix;
}

void tbBillboard::apply(tbCamera* camera) const
{
    tbTravContext* context = camera->getTravContext();
    tbMatrix model(context->getMatrix());
    model.postMult(camera->getRenderingToWorldMatrix());
    tbMatrix full;
    full.makeIdent();
    computeFullMatrix(model, full, context, camera);
    rememberFacing(model, full);
    full.postMult(camera->getWorldToRenderingMatrix());
    if (!context->pushMatrix(full))
        return;
    tbGroup::apply(camera);
    context->popMatrix();
}

void tbBillboard::apply(tbListener* listener) const
{
    if (const tbiMatrixScope placed(listener->getTravContext(), lastFacing()); placed)
        tbGroup::apply(listener);
}

void tbBillboard::apply(tbCollider* collider) const
{
    if (const tbiColliderFrame frame(collider, lastFacing()); frame)
        tbGroup::apply(collider);
}

tbTraverser::TRAV_STATE tbBillboard::apply(tbTraverser* traverser, bool noPreApply)
{
    if (!noPreApply)
    {
        const tbTraverser::TRAV_STATE before = traverser->preApply(this);
        if (before != tbTraverser::TRAV_CONTINUE)
            return before;
    }
    tbiFrameScope frame(traverser->getTravContext(), lastFacing());
    if (!frame)
        return tbTraverser::TRAV_CONTINUE;
    const tbTraverser::TRAV_STATE state = tbGroup::apply(traverser, true);
    if (state == tbTraverser::TRAV_STOP)
        frame.leave(); // a stopped walk leaves its matrices for inspection
    return state;
}

void tbBillboard::update(tbTravContext* context)
{
    tbMatrix place;
    place.makeXYZ(position[0], position[1], position[2]);
    if (const tbiMatrixScope placed(context, place); placed)
        tbGroup::update(context);
}

// The facing turns the subtree about its origin, so a sphere around the origin that reaches as far as the subtree
// does holds every facing.
void tbBillboard::updateFences(tbTravContext* context)
{
    if (anyTravFlags(TF_FENCE))
    {
        volume.makeEmpty();
        {
            const tbiVolumeScope extended(context, &volume);
            const tbiIdentScope ownFrame(context);
            if (extended && ownFrame)
                tbGroup::updateFences(context);
        }
        if (!volume.isEmpty())
        {
            volume.setRadius(volume.getCenter()->length() + volume.getRadius());
            volume.setCenter(tbVec3(0, 0, 0));
        }
    }
    tbVolume* enclosing = context->getVolume();
    if (!enclosing || volume.isEmpty())
        return;
    tbSphere placed(volume);
    placed.setCenter(position);
    placed.xform(context->getMatrix());
    enclosing->extendAround(placed);
}

tbEntry* tbBillboard::read(tbFile* file, tbEntry* entry)
{
    entry = tbGroup::read(file, entry);
    if (!entry)
        return nullptr;
    mode = MODE(entry->readInt());
    axis.read(entry);
    position.read(entry);
    return entry;
}

tbEntry* tbBillboard::write(tbFile* file, tbEntry* entry) const
{
    tbEntry* created = tbGroup::write(file, entry);
    if (!entry)
        entry = created;
    if (!entry)
        return nullptr;
    entry->writeInt(mode);
    axis.write(entry);
    position.write(entry);
    return created;
}
