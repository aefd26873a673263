#pragma once

#include <tamber/graph/tbGroup.h>

class tbDisplayList;
class tbVertexArray;

// The leaf that stands for something to draw. The kernel draws nothing: the drawing plug-in's hook does, and the
// concrete geometry classes come from modules that derive from this one.
class TB_API tbGeometry : public tbGroup
{
    TB_CLASS(tbGeometry, tbGroup)

public:
    tbGeometry();
    tbGeometry(const tbGeometry& other);
    tbGeometry& operator=(const tbGeometry& other);

    /// Hands this geometry to the drawing hook.
    virtual void draw(tbCamera* camera) const;
    /// For display lists of the drawing plug-in; empty here.
    virtual void update(tbDisplayList* list);
    virtual void updateAndApply(tbDisplayList* list);
    /// The set of texture coordinates that texture unit `unit` reads: the set of the same number here.
    virtual int getTexUnitTexCoordSet(int unit) const;
    /// The vertices, null when there are none. The geometry keeps the reference.
    virtual const tbVertexArray* getVertexArray() const = 0;
    /// Points, lines or triangles.
    virtual int getNumPrimitives() const = 0;
    /// 0 when the vertices are drawn in their own order.
    virtual int getNumIndices() const = 0;
    /// Indices into the vertices, null when there are none.
    virtual const unsigned int* getIndices() const = 0;

    /// What the drawing hook is while no plug-in has set it.
    static void drawNothing(const tbGeometry* geometry, tbCamera* camera);

    using tbGroup::apply;
    using tbGroup::update;
    tbBase* createCopy() const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    void update(tbTravContext* context) override;
    /// Draws this geometry, then walks on below it.
    void apply(tbCamera* camera) const override;

protected:
    tbGeometry(const tbGeometry& other, Disposable disposable);
    ~tbGeometry() override;

    /// Null: this class is left out of deep copies, concrete geometries override both.
    tbGroup* copyGroup() const override;
    tbGroup* cloneGroup() const override;
    void addedTo(tbGroup* parent) override;
    void removedFrom(tbGroup* parent) override;
    /// Keeps the bit that says that this node is geometry.
    void cleanUp(unsigned bits) override;
};

using tbGeometryDrawFunc = void (*)(const tbGeometry* geometry, tbCamera* camera);

/// Draws a geometry for a camera. A drawing plug-in sets it when it is loaded and puts tbGeometry::drawNothing back
/// before it goes; it must never be null.
extern TB_API tbGeometryDrawFunc tbiGeometryDrawFunc;
