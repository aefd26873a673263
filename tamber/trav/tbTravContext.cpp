#include <tamber/trav/tbTravContext.h>

#include <tamber/graph/tbGroup.h>
#include <tamber/kernel/tbStats.h>
#include <tamber/kernel/tbiWhole.h>
#include <tamber/trav/tbTraitStack.h>

TB_DEFINE_UNSAVED_CLASS(tbTravContext, tbBase)

namespace
{

constexpr int MATRIX_CAPACITY = 16;
constexpr int STACK_CAPACITY = 8;
constexpr int FAILED_RAY_CAPACITY = 4;

} // namespace

constinit const tbMatrix tbTravContext::ident = tbMatrix::identity();

tbTravContext::tbTravContext()
    : matrices(MATRIX_CAPACITY, tbMatrixStack::UNLIMITED),
      inverses(MATRIX_CAPACITY, tbMatrixStack::UNLIMITED),
      volumes(STACK_CAPACITY),
      failedRays(FAILED_RAY_CAPACITY),
      path(STACK_CAPACITY),
      namedPath(STACK_CAPACITY),
      cullResults(STACK_CAPACITY)
{
    initInstance();
    reset();
}

tbTravContext::tbTravContext(const tbTravContext& other)
    : tbBase(other),
      scene(other.scene),
      camera(other.camera),
      matrices(other.matrices),
      inverses(other.inverses),
      volumes(other.volumes),
      failedRays(other.failedRays),
      path(other.path),
      namedPath(other.namedPath),
      cullResults(other.cullResults),
      travMask(other.travMask),
      flags(other.flags),
      colliderMask(other.colliderMask),
      transitionScale(other.transitionScale),
      transitionMode(other.transitionMode),
      textureID(other.textureID),
      rangeSwitchScale(other.rangeSwitchScale),
      traitStack(other.traitStack),
      stats(other.stats)
{
    initInstance();
}

tbTravContext& tbTravContext::operator=(const tbTravContext& other) = default;

tbTravContext::~tbTravContext()
{
    deleteInstance();
}

tbBase* tbTravContext::createCopy() const
{
    return tbiCopyOf(*this);
}

void tbTravContext::reset()
{
    textureID = 0;
    failedRays.reset();
    failedRays.push(nullptr);
    matrices.reset();
    inverses.reset();
    colliderMask = 0xFFFFFFFF;
    volumes.reset();
    cullResults.reset();
    pushCullResult(tbVolume::PARTIAL);
    path.reset();
    namedPath.reset();
    flags = DEFAULT_FLAGS;
    rangeSwitchScale = 1.0f;
    transitionScale = 0.0f;
    transitionMode = tbTransition::TRANSITION_NONE;
    if (traitStack)
        traitStack->reset(true);
}

void tbTravContext::setTraitStack(tbTraitStack* newStack)
{
    traitStack = newStack;
}

void tbTravContext::setStats(tbStats* newStats)
{
    stats = newStats;
}

bool tbTravContext::pushGroup(const tbGroup* group)
{
    if (!path.push(group))
        return false;
    if (!group || !group->getName() || namedPath.push(group))
        return true;
    path.pop();
    return false;
}

// The top decides, not the name: a group that gains or loses its name during the walk leaves no trace.
const tbGroup* tbTravContext::popGroup()
{
    const tbGroup* group = path.pop();
    if (group && namedPath.getTop() == group)
        namedPath.pop();
    return group;
}
