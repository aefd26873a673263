#include "tbNullRenderContext.h"

#include <tamber/display/tbCamera.h>

namespace
{

constexpr int MAX_TEXTURE_SIZE = 4096;

tbRenderContext* createContext(tbWindow* window)
{
    return new tbNullRenderContext(window);
}

} // namespace

tbNullRenderContext::tbNullRenderContext(tbWindow* owner) : tbRenderContext(owner) {}

bool tbNullRenderContext::open()
{
    return true;
}

void tbNullRenderContext::endDraw()
{
    tbRenderContext::close();
}

void tbNullRenderContext::clear(tbCamera* camera)
{
    ++counts.clears;
    tbRenderContext::clear(camera);
}

void tbNullRenderContext::setViewport(tbCamera* camera)
{
    ++counts.viewports;
    camera->getViewport(viewport[0], viewport[1], viewport[2], viewport[3]);
}

void tbNullRenderContext::getViewport(int& left, int& right, int& bottom, int& top) const
{
    left = viewport[0];
    right = viewport[1];
    bottom = viewport[2];
    top = viewport[3];
}

void tbNullRenderContext::swapBuffers()
{
    ++counts.swaps;
}

tbMatrixStack& tbNullRenderContext::stack()
{
    const int mode = getMatrixMode();
    return stacks[mode >= 0 && mode < NUM_MODES ? mode : int(MATRIX_MODE_MODEL)];
}

void tbNullRenderContext::loadMatrix(const tbMatrix& matrix)
{
    ++counts.matrices;
    stack().load(matrix);
}

void tbNullRenderContext::multMatrix(const tbMatrix& matrix)
{
    ++counts.matrices;
    stack().preMult(matrix);
}

void tbNullRenderContext::pushMatrix()
{
    stack().push();
}

void tbNullRenderContext::popMatrix()
{
    stack().pop();
}

void tbNullRenderContext::loadIdentity()
{
    tbMatrix identity;
    identity.makeIdent();
    loadMatrix(identity);
}

int tbNullRenderContext::getMaxTextureSize() const
{
    return MAX_TEXTURE_SIZE;
}

const tbMatrix& tbNullRenderContext::getMatrix(MATRIX_MODE mode) const
{
    return stacks[mode >= 0 && mode < NUM_MODES ? int(mode) : int(MATRIX_MODE_MODEL)].getTop();
}

void tbNullRenderContext::install()
{
    setRenderAPI(RENDER_API_NULL);
    setCreateFunc(&createContext);
}

void tbNullRenderContext::uninstall()
{
    if (getCreateFunc() != &createContext)
        return;
    setCreateFunc(nullptr);
    setRenderAPI(RENDER_API_NONE);
}
