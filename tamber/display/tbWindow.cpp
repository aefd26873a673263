#include <tamber/display/tbWindow.h>

#include <tamber/display/tbCamera.h>
#include <tamber/io/tbFile.h>

TB_DEFINE_SERVICE_CLASS(tbWindow, tbBase)

constinit float tbWindow::pixelAspectRatio = 1.0f;

tbWindow::tbWindow()
{
    initInstance();
}

tbWindow::tbWindow(const tbWindow& other) : tbBase(other), enabled(other.enabled)
{
    initInstance();
}

tbWindow& tbWindow::operator=(const tbWindow& other)
{
    tbBase::operator=(other);
    enabled = other.enabled;
    return *this;
}

tbWindow::~tbWindow()
{
    deleteInstance();
    tbCamera::forgetWindow(this);
}

void tbWindow::enable(bool enable)
{
    enabled = enable;
}

void tbWindow::beginDraw() {}

void tbWindow::endDraw() {}

void tbWindow::enableBorder(bool) {}

bool tbWindow::isBorderEnabled() const
{
    return false;
}

void tbWindow::setColorBits(unsigned) {}

unsigned tbWindow::getColorBits() const
{
    return 0;
}

void tbWindow::setAlphaBits(unsigned) {}

unsigned tbWindow::getAlphaBits() const
{
    return 0;
}

void tbWindow::setDepthBits(unsigned) {}

unsigned tbWindow::getDepthBits() const
{
    return 0;
}

void tbWindow::setStencilBits(unsigned) {}

unsigned tbWindow::getStencilBits() const
{
    return 0;
}

void tbWindow::setAccumBits(unsigned) {}

unsigned tbWindow::getAccumBits() const
{
    return 0;
}

tbKeyboard* tbWindow::getKeyboard() const
{
    return nullptr;
}

tbMouse* tbWindow::getMouse() const
{
    return nullptr;
}

void tbWindow::setPixelAspectRatio(float ratio)
{
    pixelAspectRatio = ratio;
}

float tbWindow::getPixelAspectRatio()
{
    return pixelAspectRatio;
}

tbEntry* tbWindow::write(tbFile* file, tbEntry* entry) const
{
    tbEntry* written = tbBase::write(file, entry);
    if (written)
        written->writeInt(enabled ? 1 : 0);
    return written;
}

tbEntry* tbWindow::read(tbFile* file, tbEntry* entry)
{
    tbEntry* source = tbBase::read(file, entry);
    if (source)
        enabled = source->readBool();
    return source;
}
