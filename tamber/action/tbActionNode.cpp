#include <tamber/action/tbActionNode.h>

TB_DEFINE_ABSTRACT_NODE_CLASS(tbActionNode, tbGroup)

tbActionNode::tbActionNode()
{
    initInstance();
}

tbActionNode::tbActionNode(const tbActionNode& other) : tbGroup(other)
{
    initInstance();
}

tbActionNode& tbActionNode::operator=(const tbActionNode& other)
{
    tbGroup::operator=(other);
    return *this;
}

tbActionNode::~tbActionNode()
{
    deleteInstance();
}

tbBase* tbActionNode::createCopy() const
{
    return nullptr;
}

tbGroup* tbActionNode::copyGroup() const
{
    return nullptr;
}

tbGroup* tbActionNode::cloneGroup() const
{
    return nullptr;
}

tbEntry* tbActionNode::read(tbFile* file, tbEntry* entry)
{
    return tbBase::read(file, entry);
}

tbEntry* tbActionNode::write(tbFile* file, tbEntry* entry) const
{
    return tbBase::write(file, entry);
}

void tbActionNode::resolveGroup(const tbGroup*, tbGroup*) {}
