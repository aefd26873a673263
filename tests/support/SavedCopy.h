// An object written to a file and read back.
#pragma once

#include <tests/support/TempFile.h>

#include <tamber/io/tbFile.h>
#include <tamber/kernel/tbRef.h>

#include <gtest/gtest.h>

namespace tbtest
{
/// The object as another program would read it; null, with a failure, when it does not go through a file.
template <class Object>
tbRef<Object> savedCopy(const Object* object)
{
    const TempDirectory directory;
    const std::string path = directory.path("object.tb");
    tbFile out;
    EXPECT_TRUE(out.create(path.c_str()));
    EXPECT_NE(out.writeObject(object), nullptr);
    EXPECT_TRUE(out.write());
    out.close();
    tbFile in;
    EXPECT_TRUE(in.open(path.c_str(), "r"));
    return tbRef<Object>(dynamic_cast<Object*>(in.readObject(0)));
}
} // namespace tbtest
