// Traits that record where they are applied. RecordingTrait<tbVisualTrait, 0>, <tbVisualTrait, 1>, ... are types of
// their own, made on first use.
#pragma once

#include <tamber/display/tbCamera.h>
#include <tamber/trav/tbAudioTrait.h>
#include <tamber/trav/tbTraitStack.h>
#include <tamber/trav/tbTravContext.h>
#include <tamber/trav/tbTravTrait.h>
#include <tamber/trav/tbVisualTrait.h>

#include <string>
#include <vector>

namespace tbtest
{
/// What happened since the test cleared it. `stack` is told what cameras and listeners have, as plug-ins do.
struct TraitLog
{
    std::vector<const tbTrait*> onContext;
    std::vector<const tbTrait*> onDevice;
    tbTraitStack* stack = nullptr;

    void clear()
    {
        onContext.clear();
        onDevice.clear();
    }
    static TraitLog& get()
    {
        static TraitLog* const log = new TraitLog;
        return *log;
    }
};

/// What a stack sets where nothing else is in effect.
inline std::vector<const tbTrait*> visualDefaultsOf(const tbTraitStack& stack)
{
    int num = 0;
    const tbVisualTrait** list = stack.getVisualTraits(tbTraitStack::DEFAULT_LIST, num);
    const std::vector<const tbTrait*> traits(list, list + num);
    tbMemory::free(list);
    return traits;
}

template <class Family>
class DeviceRecorder;

template <>
class DeviceRecorder<tbTravTrait> : public tbTravTrait
{
};

template <>
class DeviceRecorder<tbVisualTrait> : public tbVisualTrait
{
public:
    using tbVisualTrait::apply;
    void apply(tbCamera* camera) const override
    {
        TraitLog& log = TraitLog::get();
        log.onDevice.push_back(this);
        if (camera)
            camera->setAppliedVisualTrait(this);
        if (log.stack)
            log.stack->setAppliedTrait(this);
    }
};

template <>
class DeviceRecorder<tbAudioTrait> : public tbAudioTrait
{
public:
    using tbAudioTrait::apply;
    void apply(tbListener*) const override { TraitLog::get().onDevice.push_back(this); }
};

template <class Family, int Number>
class RecordingTrait : public DeviceRecorder<Family>
{
public:
    using Type = typename Family::TypeClass;
    using Recorder = DeviceRecorder<Family>;

    explicit RecordingTrait(tbTrait::MODE applyMode = tbTrait::ON)
    {
        type();
        this->setApplyMode(applyMode);
    }

    using Recorder::apply;
    void apply(tbTravContext*) const override { TraitLog::get().onContext.push_back(this); }
    bool isEqual(tbTrait* other) const override { return this->isSameKind(other); }
    tbType* getType() const override { return type(); }
    tbBase* createCopy() const override { return new RecordingTrait(*this); }

    static Type* type()
    {
        if (!slot())
        {
            const std::string name = Family::getClassType()->getName() + std::to_string(Number);
            slot() = new Type(Family::getClassType(), name.c_str(), &create, &forget, nullptr);
        }
        return slot();
    }

private:
    static Type*& slot()
    {
        static Type* theType = nullptr;
        return theType;
    }
    static tbBase* create() { return new RecordingTrait; }
    static void forget() { slot() = nullptr; }
};
} // namespace tbtest
