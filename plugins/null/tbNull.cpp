// The module's record: what happens when it is loaded and unloaded.
#include "tbNullCamera.h"
#include "tbNullListener.h"
#include "tbNullRenderContext.h"
#include "tbNullWindow.h"

#include <tamber/io/tbPlugIn.h>
#include <tamber/render/tbGeometry.h>

namespace
{

void drawGeometry(const tbGeometry* geometry, tbCamera* camera)
{
    if (camera->isOfType(tbNullCamera::getClassType()))
        static_cast<tbNullCamera*>(camera)->drawGeometry(geometry);
}

class Module
{
public:
    Module() : plugIn(TB_NULL_FILE)
    {
        plugIn.setName("Null display");
        plugIn.setCompany("QRM");
        plugIn.setRelease(1, 2, 0, "Feb  3 1999");
        // Files never need what only counts.
        plugIn.enableSaveWithFile(false);
        tbNullWindow::registerClass(&plugIn);
        tbNullCamera::registerClass(&plugIn);
        tbNullListener::registerClass(&plugIn);
        tbNullWindow::getClassType()->setWritable(false);
        tbNullRenderContext::install();
        tbiGeometryDrawFunc = &drawGeometry;
    }

    ~Module()
    {
        if (tbiGeometryDrawFunc == &drawGeometry)
            tbiGeometryDrawFunc = &tbGeometry::drawNothing;
        tbNullRenderContext::uninstall();
    }

    Module(const Module&) = delete;
    Module& operator=(const Module&) = delete;

private:
    tbPlugIn plugIn;
};

Module module;

} // namespace
