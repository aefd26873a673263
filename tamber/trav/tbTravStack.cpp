#include <tamber/trav/tbTravStack.h>

#include <tamber/trav/tbiSamePath.h>

bool tbTravStack::operator==(const tbTravStack& other) const
{
    return tbiSamePath(*this, other);
}
