// An object for tests of files: a value of each kind, shared arrays and any number of children.
#pragma once

#include <tamber/containers/tbArray.h>
#include <tamber/kernel/tbBase.h>
#include <tamber/kernel/tbRef.h>

#include <string>
#include <vector>

namespace tbtest
{
class FileNode : public tbBase
{
    TB_CLASS(FileNode, tbBase)

public:
    FileNode();

    void add(tbBase* child) { children.push_back(child); }

    tbEntry* read(tbFile* file, tbEntry* entry) override;
    tbEntry* write(tbFile* file, tbEntry* entry) const override;

    /// Makes the class known to files. Tests that read by class name call it first.
    static void makeKnown();

    int value = 0;
    double ratio = 0;
    tbRef<tbArray> array;
    std::vector<tbRef<tbBase>> children;

protected:
    ~FileNode() override { deleteInstance(); }
};
} // namespace tbtest
