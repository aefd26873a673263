"""Faults of entries: their sizes, packing, values and arrays."""

from cases import Cases
from nativefile import RLE, File, pack
from faults_in_tables import set_in

cases = Cases()
add, change, child, graph, root = cases.add, cases.change, cases.child, cases.graph, cases.root

# 12: sizes; 13: compression
for name, size, both in (
    ("zero", 0, True),
    ("negative", 0xFFFFFFFF, False),
    ("2-31", 0x80000000, False),
    ("2-31-less-1", 0x7FFFFFFF, True),
    ("one-too-many", 25, False),
    ("one", 1, False),
):
    change("12-size-" + name, set_in(1, size=size), both)
change("12-root-size-zero", set_in(0, size=0))
for name, compression, both in (("2", 2, True), ("negative", 0xFFFFFFFF, False), ("256", 256, False)):
    change("13-compression-" + name, set_in(1, compression=compression), both)


# 14: packing that breaks its rules; 15: packing that gives less
def packed(name, both=False, size=None, length=None):
    """A case whose child's packed bytes, which stand for its record, are what the function makes of them."""

    def define(make):
        def build(order):
            f = File(order)
            f.add("tbGroup", f.record().group([1], name="root"))
            record = f.record().group(name="a" * 60)
            data = make(pack(record.data))
            entry = f.packed("tbGroup", record, data, size(data) if size else len(record.data))
            if length:
                entry.data = f.words(length(data)) + data
            return f

        add(name, build, both)

    return define


packed("14-length-zero", length=lambda data: 0)(lambda data: data)
packed("14-length-negative", length=lambda data: -1)(lambda data: data)
packed("14-length-one-too-many", both=True, length=lambda data: len(data) + 1)(lambda data: data)
packed("14-length-2-31", length=lambda data: 0x80000000)(lambda data: data)
packed("14-odd-tail")(lambda data: data[:-2])
packed("14-no-end", both=True)(lambda data: data[:-1])
packed("14-ends-in-a-pair-of-zeros")(lambda data: data + b"\0\0\0")
packed("14-one-byte-more", both=True)(lambda data: data[:-1] + b"\1\0\0")
packed("14-far-too-much")(lambda data: b"\xff\0" * 400 + b"\0")
packed("14-size-beyond-any-packing", size=lambda data: 0x7FFFFFFF)(lambda data: data)
packed("14-size-128-times", size=lambda data: 128 * len(data) + 1)(lambda data: data)
packed("14-nothing-but-the-end")(lambda data: b"\0")
packed("15-half", both=True)(lambda data: data[: len(data) // 4 * 2] + b"\0")
packed("15-one-byte-less")(lambda data: data[:-3] + b"\0")
packed("15-longer-than-its-pairs", size=lambda data: 128 * len(data))(lambda data: data)
change("14-marked-as-packed", set_in(1, compression=RLE))
change("14-marked-as-packed-short", set_in(1, compression=RLE, size=3))


# 16: values across the end
child("16-short-across-the-end", "tbGroup", lambda r: r.base().short(1).byte(7), both=True)
child("16-int-across-the-end", "tbTransform", lambda r: r.group().int(4).float(1).short(7))
child("16-float-at-aligned-end", "tbAudioLevelScale", lambda r: r.trait(), root="tbStyle")
child("16-bool-across-the-end", "tbModel", lambda r: r.transform().text(None).short(0))
root("16-double-across-the-end", lambda r: r.base().int(5, 6, 7), tag="FileNode", both=True)

# 17: lengths of texts and chunks
child("17-text-without-zero", "tbGroup", lambda r: r.int(4).bytes(b"four").short(0).int(0).short(1, 1).int(0))
child("17-text-with-zero-inside", "tbGroup", lambda r: r.int(8).bytes(b"ab\0cdef\0").short(0).int(0).short(1, 1).int(0))
child("17-text-as-long-as-the-entry", "tbGroup", lambda r: r.int(6).bytes(b"abcdef"), both=True)
child("17-text-one-longer", "tbGroup", lambda r: r.int(7).bytes(b"abcdef"), both=True)
child("17-text-not-ascii", "tbGroup", lambda r: r.group(name="\x80\xff\x1b[0m"))
child("17-file-name-too-long", "tbModel", lambda r: r.transform().int(100).bytes(b"short"))
child("17-wave-name-negative", "tbEmitter", lambda r: r.group().int(8).float(0, 0, 0).int(-5).float(1, 2, 1, 1, 1, 0).int(0))
child("17-wave-name-too-long", "tbEmitter", lambda r: r.group().int(8).float(0, 0, 0).int(0x7FFFFFFF).float(1))

# 18: alignment
child("18-name-that-leaves-odd-places", "tbGroup", lambda r: r.group(name="odd"), both=True)
child(
    "18-data-at-odd-place-of-file",
    "tbTransform",
    lambda r: r.transform(type=4, elements=[1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 1, 2, 3, 1], name="o"),
)
graph(
    "18-doubles-at-odd-place-of-file",
    ("FileNode", lambda r: r.base(name="x").int(1).double(0.1).int(2, 1, 1).byte(0)),
    ("FileNode", lambda r: r.base().int(1).double(1e300).int(-1, 0).byte(0)),
    ("tbArray", lambda r: r.short(8).int(2).double(0.1, -0.2)),
    both=True,
)

# 19: reading what is being read
root("19-entry-refers-to-itself", lambda r: r.group([0], name="self"))
child("19-same-entry-after-itself", "tbGroup", lambda r: r.group([1], attributes=[1, 1], name="self"), both=True)


# 37: arrays; 38: vertex arrays
def array(name, make, both=False):
    graph(name, ("FileNode", lambda r: r.base().int(1).double(0).int(1, 0)), ("tbArray", make), both=both)


array("37-type-9", lambda r: r.short(9).int(1, 1), both=True)
array("37-type-255", lambda r: r.short(255).int(0))
array("37-dynamic-bit", lambda r: r.short(0x8003).int(2, 5, 6))
array("37-count-negative", lambda r: r.short(3).int(-1, 7))
array("37-count-2-31-less-1", lambda r: r.short(8).int(0x7FFFFFFF).double(1))
array("37-count-times-size-wraps", lambda r: r.short(7).int(0x20000000).float(1, 2, 3, 4), both=True)
array("37-one-value-missing", lambda r: r.short(6).int(2).float(1, 2, 3, 4, 5))
array("37-bytes-one-missing", lambda r: r.short(1).int(3).byte(1, 2, 3, 4, 5, 6, 7, 8))
array("37-nothing-behind-type", lambda r: r.short(3))
array("37-doubles-need-their-gap", lambda r: r.short(8).int(1).bytes(bytes(7)))


def vertices(name, make, indices=(), primitive=2, both=False, tag="tbVertexArray"):
    root = ("tbGroup", lambda r: r.group([2], name="root"))
    mesh = ("tbMesh", lambda r: r.group(name="mesh").int(primitive, 1, len(indices), *indices))
    graph(name, root, (tag, make), mesh, both=both)


def triangle(r, type=1):
    return r.short(type).int(3).float(0, 0, 0, 1, 0, 0, 0, 1, 0)


vertices("38-number-negative", lambda r: r.short(1).int(-3).float(0, 0, 0))
vertices("38-number-wraps", lambda r: r.short(7).int(0x0DB6DB6E).float(0, 0, 0), both=True)
vertices("38-one-float-missing", lambda r: r.short(1).int(3).float(0, 0, 0, 1, 0, 0, 0, 1))
vertices("38-two-sets-in-one-type", lambda r: r.short(0x19).int(1).float(*range(11)), primitive=0, indices=(0,))
vertices("38-position-bit-missing", lambda r: triangle(r, 0), (0, 1, 2))
vertices("38-every-bit-set", lambda r: triangle(r, 0xFFFF), (0, 1, 2))
vertices("38-entry-longer-than-vertices", lambda r: triangle(r).float(9, 9), (0, 1, 2))
vertices("38-nothing", lambda r: r.short(1))
vertices("38-index-beyond", triangle, (0, 1, 3), both=True)
vertices("38-index-negative", triangle, (0, 1, -1))
vertices("38-indices-of-half-a-triangle", triangle, (0, 1, 2, 0))
vertices("38-primitive-7", triangle, (0, 1, 2), primitive=7)
vertices("38-not-numbers", lambda r: r.short(1).int(3).float(*[float("nan")] * 3, *[float("inf")] * 3, 1, 1, 1), (0, 1, 2))
vertices("38-mesh-without-vertices", lambda r: r.short(1).int(0), (0, 1, 2))
vertices("38-a-group-as-vertices", lambda r: r.group(), (), tag="tbGroup")
