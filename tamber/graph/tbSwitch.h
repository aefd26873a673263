#pragma once

#include <tamber/graph/tbGroup.h>

// A group that chooses which of its children the walks visit: one state per child, on or off. With transitions
// enabled a change fades: for a set time the children that go are visited as outgoing and those that come as
// incoming, with the fraction passed on in the context. The scene drives a running transition once per frame.
class TB_API tbSwitch : public tbGroup
{
    TB_CLASS(tbSwitch, tbGroup)

public:
    tbSwitch();
    tbSwitch(const tbSwitch& other);
    /// Children and their states stay.
    tbSwitch& operator=(const tbSwitch& other);

    /// Takes this switch off the scene's list of nodes to update.
    virtual void removeSceneUpdate(tbScene* scene);
    /// Turns one child on or off. False when `i` is no child.
    virtual bool selectChild(int i, bool on);
    /// Makes one child the only one that is on. False when `i` is no child.
    virtual bool selectChild(int i);
    virtual void allOn();
    virtual void allOff();
    /// On, or fading out; false when `i` is no child.
    virtual bool isActive(int i) const;
    virtual void enableTransition(bool enable);
    /// Seconds. A time that is not positive disables transitions.
    virtual void setTransitionTime(float seconds);

    bool isTransitionEnabled() const { return (switchFlags & TRANSITIONS) != 0; }
    bool isInTransition() const { return (switchFlags & RUNNING) != 0; }
    float getTransitionTime() const { return transitionTime; }
    /// Progress of the running transition, 0 to 1.
    float getTransitionFraction() const { return transitionFraction; }

    tbBase* createCopy() const override;
    tbBase* createDisposableCopy(tbArena* arena) const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    void update(tbTravContext* context) override;
    using tbGroup::apply;
    void apply(tbCollider* collider) const override;
    void apply(tbListener* listener) const override;
    void apply(tbCamera* camera) const override;
    void updateDirect(tbScene* scene, bool before) override;
    /// The first child of an empty switch is on, every other one off.
    bool addChild(tbGroup* child) override;
    bool insertChild(int i, tbGroup* child) override;
    bool removeChild(tbGroup* child) override;
    bool areChildrenOrdered() const override;

protected:
    tbSwitch(const tbSwitch& other, Disposable disposable);
    ~tbSwitch() override;

    tbGroup* copyGroup() const override;
    tbGroup* cloneGroup() const override;
    void copy(const tbSwitch& other);
    void clone(const tbSwitch& other);

private:
    enum STATE : unsigned char
    {
        STATE_OFF = 0,
        STATE_ON = 1,
        STATE_FADING = 2
    };

    static constexpr unsigned TRANSITIONS = 0x1;
    static constexpr unsigned RUNNING = 0x2;

    bool reserveStates(int count, int step);
    void copyStates(const tbSwitch& other);
    void assign(const tbSwitch& other);
    void setAll(STATE state);
    void startTransition();
    void stopTransition() { switchFlags &= ~RUNNING; }
    bool fades() const { return (switchFlags & (TRANSITIONS | RUNNING)) == (TRANSITIONS | RUNNING); }
    template <class Walker>
    void walk(Walker* walker) const;
    template <class Walker>
    void walkChildren(Walker* walker, STATE state) const;

    unsigned char* activeStates = nullptr;
    int activeCapacity = 0;
    unsigned switchFlags = 0;
    float transitionFraction = 0.0f;
    float transitionStart = 0.0f;
    float transitionTime = 1.0f;
};
