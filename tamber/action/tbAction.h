#pragma once

#include <tamber/kernel/tbBase.h>

class tbEvent;

// A callback as an object: events run actions when they are triggered, threads as their work.
class TB_API tbAction : public tbBase
{
    TB_CLASS(tbAction, tbBase)

public:
    tbAction& operator=(const tbAction& other);

    tbBase* createCopy() const override;
    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;

    /// Does the work; false when it could not. `initiator` is what triggered the event, or the thread that runs the
    /// action; `event` is null when no event does.
    virtual bool apply(tbBase* initiator, tbEvent* event) = 0;

protected:
    tbAction();
    tbAction(const tbAction& other);
    ~tbAction() override;
};
