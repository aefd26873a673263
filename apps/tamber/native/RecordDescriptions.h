#pragma once

#include "RecordForm.h"

namespace native
{

struct RecordDescription
{
    std::string_view className;
    void (*describe)(RecordForm&);
};

/// Of the classes that write a record of their own; the others write their parent's.
std::span<const RecordDescription> recordDescriptions();

// Of data.
void describeArray(RecordForm& form);
void describeVertexArray(RecordForm& form);
void describePlugIns(RecordForm& form);

} // namespace native
