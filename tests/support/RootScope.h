// Square roots are looked up in a table by default; sweeps that compare closely choose the exact ones.
#pragma once

#include <tamber/kernel/tbSqrt.h>

namespace tbtest
{
class RootScope
{
public:
    explicit RootScope(TBSQRT_METHOD method = TBSQRT_EXACT) : before(tbGetSqrtMethod())
    {
        tbSetSqrtMethod(method);
    }
    RootScope(const RootScope&) = delete;
    RootScope& operator=(const RootScope&) = delete;
    ~RootScope() { tbSetSqrtMethod(before); }

private:
    TBSQRT_METHOD before;
};
} // namespace tbtest
