#include <tamber/display/tbRenderContext.h>

#include <tamber/containers/tbiStatic.h>
#include <tamber/display/tbiDisplayLists.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/math/tbMatrix.h>
#include <tamber/trav/tbTraitStack.h>

#include <tamber/kernel/tbiLocks.h>
#include <tamber/thread/tbiLockGuard.h>

constinit tbRenderContext::RENDER_API tbRenderContext::renderApi = RENDER_API_NONE;
constinit tbRenderContext::CreateFunc tbRenderContext::createFunc = nullptr;
constinit bool tbRenderContext::autoInit = true;

namespace
{

constinit tbiStatic<tbTList<tbRenderContext*>> renderContexts;

// Every live object, held while calls go out to them one by one. Objects whose deletion is under way are left out.
class LiveObjects
{
public:
    LiveObjects()
    {
        tbiLockGuard guard(tbiLocks::type);
        std::size_t total = 0;
        const int numTypes = tbType::getNumTypes();
        for (int i = 0; i < numTypes; ++i)
            total += std::size_t(tbType::getType(i)->getNum(false));
        holds = static_cast<Hold*>(tbMemory::calloc(total, sizeof(Hold)));
        if (!holds)
            return;
        for (int i = 0; i < numTypes; ++i)
        {
            tbType* type = tbType::getType(i);
            const int numInstances = type->getNum(false);
            for (int j = 0; j < numInstances; ++j)
                hold(type->get(j, false));
        }
    }
    LiveObjects(const LiveObjects&) = delete;
    LiveObjects& operator=(const LiveObjects&) = delete;
    ~LiveObjects()
    {
        for (std::size_t i = 0; i < num; ++i)
            release(holds[i]);
        tbMemory::free(holds);
    }

    template <class Func>
    void forEach(Func call) const
    {
        for (std::size_t i = 0; i < num; ++i)
            call(holds[i].object);
    }

private:
    struct Hold
    {
        tbBase* object;
        bool unowned;
    };

    void hold(tbBase* object)
    {
        const int count = object->getRefCount();
        if (count < 0)
            return;
        // A single reference on an object that nobody holds would let a release elsewhere delete it meanwhile.
        const bool unowned = count == 0;
        object->ref();
        if (unowned)
            object->ref();
        holds[num++] = {object, unowned};
    }

    static void release(const Hold& held)
    {
        if (held.unowned && held.object->getRefCount() > 1)
        {
            held.object->unRefNoDelete();
            held.object->unRefNoDelete();
        }
        else
            held.object->unRef();
    }

    Hold* holds = nullptr;
    std::size_t num = 0;
};

} // namespace

void tbiReleaseDisplayLists()
{
    renderContexts->setSize(0);
}

tbRenderContext::tbRenderContext(tbWindow* owner) : window(owner)
{
    constexpr auto families =
        tbTraitStack::STACK_TYPES(tbTraitStack::VISUAL_STACK | tbTraitStack::TRAV_STACK);
    traitStack = new tbTraitStack(families, true);
    if (traitStack)
        traitStack->ref();
    renderContexts->add(this);
}

tbRenderContext::~tbRenderContext()
{
    renderContexts->checkRemoveOrdered(this);
    if (traitStack)
        traitStack->unRef();
}

void tbRenderContext::setTraitStack(tbTraitStack* stack)
{
    if (stack)
        stack->ref();
    if (traitStack)
        traitStack->unRef();
    traitStack = stack;
}

void tbRenderContext::close()
{
    defaultsApplied = false;
}

void tbRenderContext::beginDraw() {}

void tbRenderContext::endDraw() {}

void tbRenderContext::makeCurrent() {}

void tbRenderContext::initClassInstances()
{
    if (!autoInit)
        return;
    const LiveObjects objects;
    objects.forEach([this](tbBase* object) { object->initRenderContext(this); });
}

bool tbRenderContext::isFullScreen() const
{
    return false;
}

void tbRenderContext::paint() {}

void tbRenderContext::reOpen() {}

void tbRenderContext::clear(tbCamera* camera)
{
    if (defaultsApplied)
        return;
    if (traitStack)
        traitStack->applyAllDefaultVisualTraits(camera);
    defaultsApplied = true;
}

void tbRenderContext::queryNewPalette() {}

void tbRenderContext::paletteChanged(unsigned int) {}

void tbRenderContext::disableLight(tbCamera*, int) {}

void tbRenderContext::setMatrixMode(MATRIX_MODE mode)
{
    matrixMode = mode;
}

void tbRenderContext::makeOrthoProjMatrix(tbMatrix& out, float left, float right, float bottom, float top,
                                          float nearDist, float farDist)
{
    const float width = right - left;
    const float height = top - bottom;
    const float depth = farDist - nearDist;
    const float elements[16] = {2.0f / width,
                                0.0f,
                                0.0f,
                                0.0f,
                                0.0f,
                                2.0f / height,
                                0.0f,
                                0.0f,
                                0.0f,
                                0.0f,
                                -2.0f / depth,
                                0.0f,
                                -(right + left) / width,
                                -(top + bottom) / height,
                                -(farDist + nearDist) / depth,
                                1.0f};
    out.set(elements, 0);
}

void tbRenderContext::makePerspProjMatrix(tbMatrix& out, float left, float right, float bottom, float top,
                                          float nearDist, float farDist)
{
    const float width = right - left;
    const float height = top - bottom;
    const float depth = farDist - nearDist;
    const float elements[16] = {2.0f * nearDist / width,
                                0.0f,
                                0.0f,
                                0.0f,
                                0.0f,
                                2.0f * nearDist / height,
                                0.0f,
                                0.0f,
                                (right + left) / width,
                                (top + bottom) / height,
                                -(farDist + nearDist) / depth,
                                -1.0f,
                                0.0f,
                                0.0f,
                                -2.0f * farDist * nearDist / depth,
                                0.0f};
    out.set(elements, 0);
}

void tbRenderContext::setLoadedTextureSize(int size)
{
    loadedTextureSize = size;
}

int tbRenderContext::getNumRenderContexts()
{
    return renderContexts->getNum();
}

tbRenderContext* tbRenderContext::getRenderContext(int i)
{
    return renderContexts->indexInRange(i) ? (*renderContexts)[i] : nullptr;
}

void tbRenderContext::setRenderAPI(RENDER_API api)
{
    renderApi = api;
}

tbRenderContext::RENDER_API tbRenderContext::getRenderAPI()
{
    return renderApi;
}

void tbRenderContext::setCreateFunc(CreateFunc create)
{
    createFunc = create;
}

tbRenderContext::CreateFunc tbRenderContext::getCreateFunc()
{
    return createFunc;
}

tbRenderContext* tbRenderContext::createRenderContext(tbWindow* window)
{
    return createFunc ? createFunc(window) : nullptr;
}

void tbRenderContext::enableAutoInit(bool enable)
{
    autoInit = enable;
}

bool tbRenderContext::isAutoInitEnabled()
{
    return autoInit;
}
