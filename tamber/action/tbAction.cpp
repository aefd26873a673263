#include <tamber/action/tbAction.h>

TB_DEFINE_ABSTRACT_CLASS(tbAction, tbBase)

tbAction::tbAction()
{
    initInstance();
}

tbAction::tbAction(const tbAction& other) : tbBase(other)
{
    initInstance();
}

tbAction& tbAction::operator=(const tbAction& other)
{
    tbBase::operator=(other);
    return *this;
}

tbAction::~tbAction()
{
    deleteInstance();
}

tbBase* tbAction::createCopy() const
{
    return nullptr;
}

tbEntry* tbAction::read(tbFile* file, tbEntry* entry)
{
    return tbBase::read(file, entry);
}

tbEntry* tbAction::write(tbFile* file, tbEntry* entry) const
{
    return tbBase::write(file, entry);
}
