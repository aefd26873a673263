#include <tamber/render/tbGeometry.h>

TB_DEFINE_ABSTRACT_NODE_CLASS(tbGeometry, tbGroup)

constinit tbGeometryDrawFunc tbiGeometryDrawFunc = &tbGeometry::drawNothing;

tbGeometry::tbGeometry()
{
    initInstance();
    addTravFlags(TF_HAS_GEOMETRY);
}

tbGeometry::tbGeometry(const tbGeometry& other) : tbGroup(other)
{
    initInstance();
    addTravFlags(TF_HAS_GEOMETRY);
}

tbGeometry::tbGeometry(const tbGeometry& other, Disposable disposable) : tbGroup(other, disposable) {}

tbGeometry& tbGeometry::operator=(const tbGeometry& other)
{
    tbGroup::operator=(other);
    return *this;
}

tbGeometry::~tbGeometry()
{
    deleteInstance();
}

void tbGeometry::drawNothing(const tbGeometry*, tbCamera*) {}

void tbGeometry::draw(tbCamera* camera) const
{
    tbiGeometryDrawFunc(this, camera);
}

void tbGeometry::update(tbDisplayList*) {}

void tbGeometry::updateAndApply(tbDisplayList*) {}

int tbGeometry::getTexUnitTexCoordSet(int unit) const
{
    return unit;
}

tbBase* tbGeometry::createCopy() const
{
    return nullptr;
}

tbEntry* tbGeometry::read(tbFile* file, tbEntry* entry)
{
    entry = tbGroup::read(file, entry);
    // A file may have been written with any flags; geometry that lacks this one would never be drawn.
    addTravFlags(TF_HAS_GEOMETRY);
    return entry;
}

tbEntry* tbGeometry::write(tbFile* file, tbEntry* entry) const
{
    return tbGroup::write(file, entry);
}

void tbGeometry::update(tbTravContext* context)
{
    tbGroup::update(context);
}

void tbGeometry::apply(tbCamera* camera) const
{
    draw(camera);
    tbGroup::apply(camera);
}

tbGroup* tbGeometry::copyGroup() const
{
    return nullptr;
}

tbGroup* tbGeometry::cloneGroup() const
{
    return nullptr;
}

void tbGeometry::addedTo(tbGroup* parent)
{
    addTravFlags(TF_HAS_GEOMETRY | TF_GEOMETRY | TF_FENCE);
    tbGroup::addedTo(parent);
}

void tbGeometry::removedFrom(tbGroup* parent)
{
    addTravFlags(TF_FENCE);
    tbGroup::removedFrom(parent);
}

void tbGeometry::cleanUp(unsigned bits)
{
    tbGroup::cleanUp(bits & ~unsigned(TF_HAS_GEOMETRY));
}
