"""Faults of the header, the tags and the directory."""

import struct

from cases import Cases
from nativefile import MAGIC, RLE, File

cases = Cases()
add, change, graph = cases.add, cases.change, cases.graph


def set_in(number, **fields):
    """A change of an entry's fields."""

    def apply(f):
        for name, value in fields.items():
            setattr(f.entries[number], name, value)

    return apply


# 2: files that are too short
add("02-empty", lambda order: b"")
add("02-one-byte", lambda order: b"\x65")
add("02-magic-alone", lambda order: struct.pack("<I", MAGIC))
for length in (95, 96, 97):
    change("02-%d-bytes" % length, lambda f, length=length: f.build()[:length])
change("02-ends-within-tags", lambda f: f.build()[: 96 + 40], both=True)
change("02-ends-within-directory", lambda f: f.build()[: f.table_size() - 1], both=True)
change("02-ends-within-gap", lambda f: f.build()[: f.table_size() + 7])
change("02-ends-within-data", lambda f: f.build()[:-1])

# 3: magic and version
add("03-text", lambda order: b"#VRML V2.0 utf8\n" * 8)
change("03-magic-of-neither-order", lambda f: b"\x77\x32\x65\xba" + f.build()[4:])
change("03-magic-one-bit-wrong", lambda f: bytes([f.build()[0] ^ 1]) + f.build()[1:])
change("03-newer-version", lambda f: setattr(f, "version", 0x02000000), both=True)
change("03-absurd-version", lambda f: setattr(f, "version", 0xFFFFFFFF), both=True)

# 4: how many entries and tags
for name, number, both in (
    ("none", 0, True),
    ("1", 1, False),
    ("3", 3, False),
    ("2-31", 0x80000000, True),
    ("2-32-less-1", 0xFFFFFFFF, False),
    ("4194304", 4194304, False),
    ("wraps-24", 0xAAAAAAB, True),
):
    change("04-entries-" + name, lambda f, number=number: setattr(f, "num_entries", number), both)
for name, number, both in (
    ("none", 0, False),
    ("2", 2, False),
    ("2-31", 0x80000000, False),
    ("2-32-less-1", 0xFFFFFFFF, False),
    ("wraps-68", 0x3C3C3C4, True),
):
    change("04-tags-" + name, lambda f, number=number: setattr(f, "num_tags", number), both)


# 5: tag indices; 6: tag names; 7: two tags of one name
def with_tags(name, *tags, **options):
    """A chain of groups, each with a tag of its own."""
    below = [[i + 1] for i in range(len(tags) - 1)] + [[]]
    graph(name, *[(tag, lambda r, next=next: r.group(next)) for tag, next in zip(tags, below)], **options)


for name, indices, both in (
    ("swapped-places", [1, 0], False),
    ("from-one", [1, 2], True),
    ("same-twice", [0, 0], False),
    ("negative", [0, 0xFFFFFFFF], False),
):
    with_tags("05-tag-index-" + name, "tbGroup", "tbTransform", both=both, tag_indices=indices)

for name, tag in (
    ("without-zero", "x" * 64),
    ("empty", ""),
    ("escape", "tb\x1b[2J\x07"),
    ("format", "%s%n%n%n%n"),
    ("not-ascii", "tbGr\xf6up"),
    ("line-end", "tbGroup\nentry 9 is fine"),
    ("unknown", "tbNobodysClass"),
    ("spaces", " tbGroup "),
):
    with_tags("06-tag-name-" + name, "tbGroup", tag)
change("06-tag-name-ends-early", lambda f: f.tags.__setitem__(0, b"tbGroup\0and what nobody reads" + b"\xff" * 34))


graph(
    "07-two-tags-of-one-name",
    ("tbGroup", lambda r: r.group([1], name="root")),
    ("second", lambda r: r.group(name="child")),
    tags=["tbGroup", "tbGroup"],
)
with_tags("07-names-differ-in-case", "tbGroup", "TBGROUP", "tbgroup")
graph(
    "07-array-tag-in-other-case",
    ("FileNode", lambda r: r.base().int(1).double(0).int(1, 0)),
    ("TBARRAY", lambda r: r.short(3).int(1, 7)),
)

# 8: entries' tags
for name, tag in (("one-too-many", 1), ("negative", 0xFFFFFFFF), ("2-31", 0x80000000), ("2-30", 0x40000000)):
    change("08-entry-tag-" + name, set_in(1, tag=tag), both=tag == 1)
change("08-root-tag-negative", set_in(0, tag=0xFFFFFFFF))
change("08-neither-tag-nor-place", set_in(1, tag=99, offset=0))

# 9: entries' magics
change("09-entry-magic-of-neither-order", set_in(1, magic=b"\1\2\3\4"), both=True)
change("09-root-magic-zero", set_in(0, magic=bytes(4)))
change("09-order-that-is-not-the-data's", set_in(1, magic=struct.pack(">I", MAGIC)))


def orders_mixed(order):
    f = File(order)
    other = f.record(">" if order == "<" else "<")
    f.add("tbGroup", f.record().group([1], name="root"))
    f.add("tbTransform", other.transform(type=4, elements=[1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 5, 6, 7, 1]))
    return f


add("09-orders-mixed", orders_mixed, both=True)

# 10: where the data lies
for name, offset, both in (
    ("zero", 0, True),
    ("one", 1, False),
    ("in-header", 40, False),
    ("in-tags", 100, False),
    ("in-directory", 96 + 68 + 24, False),
    ("table-end-less-1", 96 + 68 + 48 - 1, False),
    ("2-31-less-1", 0x7FFFFFFF, False),
    ("negative", 0x80000000, False),
    ("wraps", 0xFFFFFFF0, True),
):
    change("10-offset-" + name, set_in(1, offset=offset), both)
change("10-root-offset-zero", set_in(0, offset=0))
change("10-offset-file-length", lambda f: setattr(f.entries[1], "offset", len(f.build())))
change("10-one-byte-too-far", lambda f: setattr(f.entries[1], "offset", f.data_start() + len(f.entries[0].data) + 1))
# Zeros are a group without anything: neither this nor a file without a gap breaks a rule.
change("10-data-in-gap", lambda f: setattr(f.entries[1], "offset", f.table_size()))
change("10-no-gap", lambda f: setattr(f, "gap", 0))


# 11: many entries on the same bytes
def all_in_one_place(order):
    f = File(order)
    for _ in range(6):
        f.add("tbGroup", f.record().group(range(1, 6)))
    for entry in f.entries:
        entry.offset = f.data_start()
    return f


def packed_in_one_place(number, pairs):
    """Objects with an array each, the arrays all on the same packed bytes."""

    def make(order):
        f = File(order)
        f.add("FileNode", f.record().base().int(0).double(0).int(-1, number, *range(1, number + 1)))
        for i in range(number):
            f.add("FileNode", f.record().base().int(0).double(0).int(number + 1 + i, 0))
        words = f.record().short(1).int((255 * pairs - 8) // 3).data
        head = b"".join(bytes((1, byte)) for byte in words)
        packed = head + bytes((255, 3)) * pairs + b"\0"
        for i in range(number):
            entry = f.packed("tbArray", b"", packed, len(words) + 255 * pairs)
            if i > 0:
                entry.data = b""
        place = f.data_start() + sum(len(entry.data) for entry in f.entries[: number + 1])
        for entry in f.entries[number + 1 :]:
            entry.offset = place
        return f

    return make


add("11-all-in-one-place", all_in_one_place)
add("11-packed-in-one-place", packed_in_one_place(60, 4000), both=True)
add("11-packed-in-one-place-few", packed_in_one_place(3, 20))
