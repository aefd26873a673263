// What stands in files and is no object.
#include "RecordDescriptions.h"
#include "RecordNames.h"

#include <array>

namespace native
{

void describeArray(RecordForm& form)
{
    static constexpr struct
    {
        FieldKind kind;
        std::uint8_t width;
        int perItem;
    } elements[] = {{FieldKind::INT, 2, 1},   {FieldKind::FLAGS, 1, 3}, {FieldKind::FLAGS, 1, 4},
                    {FieldKind::INT, 4, 1},   {FieldKind::FLOAT, 4, 1}, {FieldKind::FLOAT, 4, 2},
                    {FieldKind::FLOAT, 4, 3}, {FieldKind::FLOAT, 4, 4}, {FieldKind::DOUBLE, 8, 1}};
    constexpr std::uint32_t TYPE_MASK = 0xFFF;
    const auto type = std::uint32_t(form.value("type", {FieldKind::ENUM, 2, names::arrayTypes})) & TYPE_MASK;
    if (type >= std::size(elements))
        return form.fail("an array is of one of the nine known types");
    const auto& element = elements[type];
    form.list("elements", {element.kind, element.width}, element.perItem);
}

void describeVertexArray(RecordForm& form)
{
    const auto type = std::uint32_t(form.value("type", {FieldKind::FLAGS, 2, names::vertexTypes}));
    std::array<Column, 7> columns;
    std::size_t number = 0;
    std::uint8_t offset = 0;
    const auto add = [&](const char* name, FieldKind kind, std::uint8_t count)
    {
        columns[number++] = {name, kind, 4, count, offset};
        offset = std::uint8_t(offset + 4 * count);
    };
    add("position", FieldKind::FLOAT, 3);
    if ((type & 2) != 0)
        add("normal", FieldKind::FLOAT, 3);
    if ((type & 4) != 0)
        add("color", FieldKind::FLAGS, 1);
    // Exactly one of these bits counts the sets; any other pattern means none.
    static constexpr const char* sets[] = {"texCoords0", "texCoords1", "texCoords2", "texCoords3"};
    const std::uint32_t code = (type >> 3) & 0xF;
    for (std::uint32_t set = 0; set < 4; ++set)
        if (code == 1u << set)
            for (std::uint32_t i = 0; i <= set; ++i)
                add(sets[i], FieldKind::FLOAT, 2);
    form.table("vertices", std::span<const Column>(columns).first(number));
}

void describePlugIns(RecordForm& form)
{
    constexpr int MOST_PLUGINS = 256;
    const int number = form.integer("number");
    if (number > MOST_PLUGINS)
        return form.fail("no file lists more than 256 plug-ins");
    for (int i = 0; i < number && !form.hasStopped(); ++i)
    {
        form.beginItem(i);
        form.text("company");
        form.text("plugIn");
        form.text("buildDate");
        form.text("module");
        form.integer("major");
        form.integer("minor");
        form.integer("build");
    }
    form.beginItem(-1);
}

} // namespace native
