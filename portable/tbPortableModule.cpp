#include "tbPortableModule.h"

#include <portable/tbBlend.h>
#include <portable/tbFaceCull.h>
#include <portable/tbKeyFrameAction.h>
#include <portable/tbMaterial.h>
#include <portable/tbMesh.h>
#include <portable/tbPathAction.h>
#include <portable/tbTexture.h>
#include <tamber/io/tbPlugIn.h>

#include <mutex>

namespace
{
// The record of this module. It hands on to its users whether anything of the module lives.
class PortableModule final : public tbPlugIn
{
public:
    PortableModule() : tbPlugIn(TB_PORTABLE_FILE)
    {
        setName("Portable classes");
        setCompany("QRM");
        setRelease(1, 2, 0, "Feb  3 1999");
        tbMesh::registerClass(this);
        tbMaterial::registerClass(this);
        tbTexture::registerClass(this);
        tbBlend::registerClass(this);
        tbFaceCull::registerClass(this);
        tbMotionAction::registerClass(this);
        tbPathAction::registerClass(this);
        tbKeyFrameAction::registerClass(this);
    }

    void ref() override
    {
        std::lock_guard guard(mutex);
        tbPlugIn::ref();
        if (inUse || getRefCount() < 1)
            return;
        inUse = true;
        for (tbPlugIn* user : users)
            user->ref();
    }

    void unRef() override
    {
        std::lock_guard guard(mutex);
        tbPlugIn::unRef();
        if (!inUse || getRefCount() > 0)
            return;
        inUse = false;
        for (tbPlugIn* user : users)
            user->unRef();
    }

    void addUser(tbPlugIn* user)
    {
        std::lock_guard guard(mutex);
        users.add(user);
        if (inUse)
            user->ref();
    }

    void removeUser(tbPlugIn* user)
    {
        std::lock_guard guard(mutex);
        users.checkRemove(user);
    }

private:
    std::mutex mutex;
    tbTList<tbPlugIn*> users;
    bool inUse = false;
};

// Constructed when the module is loaded, destroyed when it is unloaded.
PortableModule module;
} // namespace

void tbPortableAddUser(tbPlugIn* user)
{
    module.addUser(user);
}

void tbPortableRemoveUser(tbPlugIn* user)
{
    module.removeUser(user);
}
