#pragma once

#include <tamber/volume/tbBox.h>
#include <tamber/volume/tbSphere.h>

#include <memory>
#include <typeinfo>

/// Calls `use` with a copy of `volume` that is carried by `m`, on the stack for the usual kinds. Classes derived
/// from them carry themselves.
template <class Use>
void tbiWithCarried(const tbVolume& volume, const tbMatrix& m, Use use)
{
    if (typeid(volume) == typeid(tbSphere))
    {
        tbSphere sphere(static_cast<const tbSphere&>(volume));
        sphere.tbSphere::xform(m);
        use(sphere);
    }
    else if (typeid(volume) == typeid(tbBox))
    {
        tbBox box(static_cast<const tbBox&>(volume));
        box.tbBox::xform(m);
        use(box);
    }
    else if (const std::unique_ptr<tbVolume> copy{volume.createCopy()})
    {
        copy->xform(m);
        use(*copy);
    }
}
