// A program's own node and own trait: a transform that turns a little with every update, and a trait that says how
// bright what lies below is drawn. Both follow the class pattern, so that files can hold them.

#include <tamber/tbKernel.h>

#include <cstdio>

// Turns about Z with every update.
class Carousel : public tbTransform
{
    TB_CLASS(Carousel, tbTransform)

public:
    static constexpr float DEGREES = 30.0f;

    Carousel() { initInstance(); }
    void update(tbTravContext* context) override
    {
        tbTransform::update(context);
        getMatrix()->preRot(DEGREES, 0.0f, 0.0f, 1.0f);
        changed();
    }

protected:
    ~Carousel() override { deleteInstance(); }
};
TB_DEFINE_NODE_CLASS(Carousel, tbTransform)

class Brightness : public tbVisualTrait
{
    TB_CLASS(Brightness, tbVisualTrait)

public:
    explicit Brightness(float brightness = 1.0f) : value(brightness) { initInstance(); }
    float getValue() const { return value; }

    tbEntry* write(tbFile* file, tbEntry* entry) const override
    {
        if ((entry = tbVisualTrait::write(file, entry)))
            entry->writeFloat(value);
        return entry;
    }
    tbEntry* read(tbFile* file, tbEntry* entry) override
    {
        if ((entry = tbVisualTrait::read(file, entry)))
            value = entry->readFloat();
        return entry;
    }
    using tbVisualTrait::apply;
    void apply(tbCamera* camera) const override { camera->setAppliedVisualTrait(this); }
    bool isEqual(tbTrait* other) const override
    {
        return isSameKind(other) && value == static_cast<Brightness*>(other)->value;
    }

protected:
    ~Brightness() override { deleteInstance(); }

private:
    float value;
};
TB_DEFINE_VISUAL_TRAIT_CLASS(Brightness, tbVisualTrait)

namespace
{
bool run()
{
    const tbRef<tbStyle> style = new tbStyle;
    style->addTrait(new Brightness(0.5f));
    style->addChild(new Carousel);
    if (!tbLoader::exportFile(style.get(), "carousel.tb"))
        return false;
    const tbRef<tbStyle> again = tbStyle::import("carousel.tb");
    if (!again || again->getNumVisualTraits() != 1 || again->getNumChildren() != 1)
        return false;

    const tbRef<tbScene> scene = new tbScene;
    scene->addChild(again.get());
    for (int frame = 0; frame < 3; ++frame)
        scene->update();
    const auto* carousel = static_cast<Carousel*>(again->getChild(0));
    const auto* brightness = static_cast<Brightness*>(again->getVisualTrait(0));
    float h = 0.0f, p = 0.0f, r = 0.0f;
    carousel->getHPR(h, p, r);
    std::printf("after three frames the carousel stands at %.0f degrees, its brightness is %g\n", double(h),
                double(brightness->getValue()));
    return h > 89.9f && h < 90.1f && brightness->getValue() == 0.5f;
}
} // namespace

int main()
{
    tbInit(nullptr);
    Carousel::registerClass(nullptr);
    Brightness::registerClass(nullptr);
    const bool ok = run();
    tbShutdown();
    return ok ? 0 : 1;
}
