#include "tbNullWindow.h"

#include "tbNullRenderContext.h"

#include <algorithm>

TB_DEFINE_CLASS(tbNullWindow, tbWindow)

tbNullWindow::tbNullWindow()
{
    initInstance();
}

tbNullWindow::tbNullWindow(const tbNullWindow& other)
    : tbWindow(other),
      width(other.width),
      height(other.height),
      x(other.x),
      y(other.y)
{
    initInstance();
}

tbNullWindow& tbNullWindow::operator=(const tbNullWindow& other)
{
    tbWindow::operator=(other);
    width = other.width;
    height = other.height;
    x = other.x;
    y = other.y;
    return *this;
}

tbNullWindow::~tbNullWindow()
{
    deleteInstance();
    delete renderContext;
}

tbBase* tbNullWindow::createCopy() const
{
    return new tbNullWindow(*this);
}

bool tbNullWindow::open()
{
    if (renderContext)
        return true;
    renderContext = new tbNullRenderContext(this);
    if (!renderContext || !renderContext->open())
        return false;
    renderContext->initClassInstances();
    return true;
}

void tbNullWindow::close()
{
    if (renderContext)
        renderContext->close();
    delete renderContext;
    renderContext = nullptr;
}

void tbNullWindow::beginDraw()
{
    if (renderContext)
        renderContext->beginDraw();
}

void tbNullWindow::endDraw()
{
    if (!renderContext)
        return;
    renderContext->endDraw();
    renderContext->swapBuffers();
}

void tbNullWindow::setSize(int newWidth, int newHeight)
{
    width = std::max(newWidth, 0);
    height = std::max(newHeight, 0);
}

void tbNullWindow::getSize(int& outWidth, int& outHeight) const
{
    outWidth = width;
    outHeight = height;
}

void tbNullWindow::setXY(int newX, int newY)
{
    x = newX;
    y = newY;
}

void tbNullWindow::getXY(int& outX, int& outY) const
{
    outX = x;
    outY = y;
}

tbRenderContext* tbNullWindow::getRenderContext() const
{
    return renderContext;
}

const tbNullCounts& tbNullWindow::getCounts() const
{
    static constexpr tbNullCounts NOTHING;
    return renderContext ? renderContext->getCounts() : NOTHING;
}

void tbNullWindow::resetCounts()
{
    if (renderContext)
        renderContext->resetCounts();
}
