#pragma once

#include <tamber/containers/tbIterator.h>
#include <tamber/graph/tbSwitch.h>

// A switch that steps through its children by time or by frames. A disabled one draws nothing and stands still.
class TB_API tbAutoSwitch : public tbSwitch
{
    TB_CLASS(tbAutoSwitch, tbSwitch)

public:
    tbAutoSwitch();
    tbAutoSwitch(const tbAutoSwitch& other);
    /// Children and their states stay.
    tbAutoSwitch& operator=(const tbAutoSwitch& other);

    virtual void enable(bool on);
    virtual void pause();
    virtual void resume();
    /// Gives every child its time or frames anew.
    virtual void setMode(tbIterator::MODE mode);
    virtual void setDirection(tbIterator::DIRECTION direction);
    virtual void setCycle(tbIterator::CYCLE cycle);
    /// Begins anew with the next frame.
    virtual void reset();
    /// Seconds for one pass over all children.
    virtual void setTime(float seconds);
    virtual void setChildTime(int i, float seconds);
    virtual void setChildTime(float seconds);
    /// Frames for one pass over all children.
    virtual void setFrameCount(int frames);
    virtual void setChildFrameCount(int i, int frames);
    virtual void setChildFrameCount(int frames);

    bool isEnabled() const { return enabled; }
    bool isPaused() const { return iterator.isPaused(); }
    tbIterator::MODE getMode() const { return iterator.getMode(); }
    tbIterator::DIRECTION getDirection() const { return iterator.getDirection(); }
    tbIterator::CYCLE getCycle() const { return iterator.getCycle(); }
    float getTime() const { return iterator.getTime(); }
    float getChildTime(int i) const { return iterator.getItemTime(i); }
    int getFrameCount() const { return iterator.getFrameCount(); }
    int getChildFrameCount(int i) const { return iterator.getItemFrameCount(i); }

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    void update(tbTravContext* context) override;
    using tbSwitch::apply;
    void apply(tbCollider* collider) const override;
    void apply(tbListener* listener) const override;
    void apply(tbCamera* camera) const override;
    void updateDirect(tbScene* scene, bool before) override;
    bool addChild(tbGroup* child) override;
    bool insertChild(int i, tbGroup* child) override;
    /// Removing the child that is shown disables the switch.
    bool removeChild(tbGroup* child) override;

protected:
    tbAutoSwitch(const tbAutoSwitch& other, Disposable disposable);
    ~tbAutoSwitch() override;

    tbGroup* copyGroup() const override;
    tbGroup* cloneGroup() const override;
    void copy(const tbAutoSwitch& other);
    void clone(const tbAutoSwitch& other);

private:
    void countChildren();

    bool enabled = true;
    bool isFilling = false; // children come, which are counted when all are there
    tbIterator iterator;
};
