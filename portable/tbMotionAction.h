#pragma once

#include <portable/tbPortableApi.h>
#include <tamber/action/tbActionNode.h>
#include <tamber/graph/tbTransform.h>
#include <tamber/kernel/tbRef.h>

class tbMatrix;

// An action node that drives a transform: the one that it is told, or else the first transform among its parents. It
// moves when an event triggers it; below a scene it also moves by itself once per frame, before the tree is updated.
//
// Its clock runs from the first move on, in seconds times the speed.
class TB_PORTABLE_API tbMotionAction : public tbActionNode
{
    TB_CLASS(tbMotionAction, tbActionNode)

public:
    /// Not referenced: the action lets a target go only when it is told. Null for the parent. A target that came out
    /// of a file is referenced, because nobody else may hold it, until the action comes to lie below it.
    void setTarget(tbTransform* transform);
    /// What apply() moves, null when there is nothing.
    tbTransform* getTarget() const;
    /// Seconds of the motion per second of the clock.
    void setSpeed(float factor);
    float getSpeed() const { return speed; }
    /// The motion's time stands still and goes on from there; the target may be moved by others meanwhile.
    void pause(bool on);
    bool isPaused() const { return paused; }
    /// Where the motion is, in its own seconds.
    float getTime() const;
    void setTime(float seconds);

    /// Moves the target to where the motion is now. False when there is nothing to move, or no motion.
    bool apply(tbBase* initiator, tbEvent* event) override;
    /// Moves the target to where the motion is at a time.
    bool moveTo(float seconds);

    using tbActionNode::apply;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;
    /// Puts this node on the scene's list of nodes to move.
    void update(tbTravContext* context) override;
    void updateDirect(tbScene* scene, bool before) override;

protected:
    tbMotionAction();
    tbMotionAction(const tbMotionAction& other);
    tbMotionAction& operator=(const tbMotionAction& other);
    ~tbMotionAction() override;

    void addedTo(tbGroup* parent) override;
    void resolveGroup(const tbGroup* prev, tbGroup* copy) override;

    /// The placement at a time of the motion; false when there is none.
    virtual bool evaluate(float seconds, tbMatrix& placement) const = 0;

private:
    tbTransform* target = nullptr;
    tbRef<tbTransform> held; // the target that a file named
    float speed = 1.0f;
    float offset = 0.0f;      // the motion's time when the clock was read last
    double clockStart = -1.0; // when that was, negative before the first move
    bool paused = false;
};
