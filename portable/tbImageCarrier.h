#pragma once

#include <tamber/kernel/tbBase.h>

// How programs ask for the image that an object carries: they need this header, and no link to the module.
class tbImageCarrier
{
public:
    /// Null when no image is carried. Objects that share an image give the same address.
    virtual const void* getImage() const = 0;
    /// In bytes.
    virtual std::size_t getImageSize() const = 0;

    /// Null for an object of a class that carries no images.
    static const tbImageCarrier* of(const tbBase* object)
    {
        return dynamic_cast<const tbImageCarrier*>(object);
    }

protected:
    ~tbImageCarrier() = default;
};
