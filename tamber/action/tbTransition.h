#pragma once

#include <tamber/trav/tbTravTrait.h>

// Says how far the subtree of a style has faded in or out. Switches set the same two values of the context while
// they fade between children; the drawing plug-in reads them.
class TB_API tbTransition : public tbTravTrait
{
    TB_CLASS(tbTransition, tbTravTrait)

public:
    enum MODE : std::int32_t
    {
        TRANSITION_NONE = 0, // drawn as it is
        TRANSITION_IN = 1,   // comes in; the scale is its weight
        TRANSITION_OUT = 2   // goes out; the scale is its weight
    };

    tbTransition();
    tbTransition(const tbTransition& other);
    tbTransition& operator=(const tbTransition& other);
    /// Equal scale, mode, apply mode and shareable flag.
    bool operator==(const tbTransition& other) const;

    tbBase* createCopy() const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    void apply(tbTravContext* context) const override;
    bool isEqual(tbTrait* other) const override;

    virtual void setMode(MODE newMode);
    virtual void setScale(float newScale);

    MODE getMode() const { return mode; }
    float getScale() const { return scale; }

protected:
    ~tbTransition() override;

private:
    MODE mode = TRANSITION_NONE;
    float scale = 1.0f;
};
