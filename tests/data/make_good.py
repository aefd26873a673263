#!/usr/bin/env python3
"""Makes the good files in tests/data/good: every class that a file can hold, each graph in both byte orders, plain and
run-length packed. They are frozen: every later release reads them as this one does. What they hold stands in the
.txt files beside them, which are kept by hand.

usage: make_good.py [--check]     --check compares what is there and writes nothing
"""

import os
import sys

import nativefile
import output


class Obj:
    """An object of a graph: its class, and what writes its record. `ref` gives the entry's number of an object, or the
    numbers of several."""

    def __init__(self, tag, write):
        self.tag, self.write = tag, write


def save(root, order):
    file = nativefile.File(order)
    numbers = {}

    def ref(obj):
        if not isinstance(obj, Obj):
            return [ref(each) for each in obj]
        if obj not in numbers:
            numbers[obj] = len(file.entries)
            entry = file.add(obj.tag, b"")
            record = file.record()
            obj.write(record, ref)
            entry.data, entry.size = record.data, len(record.data)
        return numbers[obj]

    ref(root)
    return file


def node(tag, name, children=(), more=lambda r, ref: None, trav=0x03, node=0, attributes=()):
    """A group, and what the class writes behind that."""

    def write(r, ref):
        r.group(attributes=ref(attributes), children=ref(children), trav=trav, node=node, name=name)
        more(r, ref)

    return Obj(tag, write)


def trait(tag, extra, mode=1, shareable=0, name=None):
    return Obj(tag, lambda r, ref: extra(r.trait(mode, shareable, name=name)))


def listed(traits):
    return lambda r, ref: r.int(len(traits), *ref(traits))


IDENTITY = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]
MOVED = IDENTITY[:12] + [1.5, -2, 1e6, 1]
SCALED = [2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 0.5, 0, 0, 1]


def transform(name, type, elements, children=(), attributes=(), trav=0x33):
    place = lambda r, ref: r.int(type).float(*elements)
    return node("tbTransform", name, children, place, trav, attributes=attributes)


def some_nodes(names):
    return [node("tbGroup", name) for name in names]


def kernel():
    leaf = node("tbGroup", "shared leaf", trav=0x0B, node=1)
    event = Obj("tbEvent", lambda r, ref: r.base(name="event").int(1))
    plain = Obj("tbBase", lambda r, ref: r.base(name="", flags=0x8001))
    traits = [
        trait("tbAudioLevelScale", lambda r: r.float(0.25), mode=2, shareable=1),
        trait("tbAudioPriorityScale", lambda r: r.float(-3)),
        trait("tbColliderMask", lambda r: r.int(0xF0F0F0F0), name="mask"),
        trait("tbColliderTarget", lambda r: r.int(0x30000), mode=3),
        trait("tbCull", lambda r: r.int(0x1500)),
        trait("tbSort", lambda r: r.int(0x100000)),
        trait("tbPrune", lambda r: r.int(1), mode=0),
        trait("tbTransition", lambda r: r.float(0.75).int(2)),
    ]
    style = node("tbStyle", "style", [leaf], listed(traits), trav=0x0B)

    def switched(r, ref):
        r.int(3).byte(1, 0, 2).int(3).float(0.5, 10.25, 2)

    def ranged(r, ref):
        r.int(2).byte(1, 1).int(1).float(0, 0, 1)
        r.int(2).float(10, 2, 0.5, 250, 0, 1e8).int(1).float(1, 2, 3).int(1)

    def timed(r, ref):
        r.int(2).byte(0, 1).int(1).float(0, 0, 1)
        r.int(1).iterator(2, current=1, step=-1, modes=(1, 2, 0, 1), time=3, times=(1, 2))

    def framed(r, ref):
        r.int(1).byte(1).int(1).float(0, 0, 1)
        r.int(0).iterator(1, modes=(0, 0, 1, 0), time=1, times=(0.0333333351,), frames=12, counts=(12,), current_frame=5)

    def sounding(r, ref):
        r.int(0x18).float(7, 8, 9).text("horn.wav").float(1, 100, 0.5, 2, 1.25, -0.5).int(1)

    def modelled(r, ref):
        r.int(0x14).float(*SCALED).text("house.glb").int(1).int(0x7FFFFFFF)

    emitter = node("tbEmitter", "emitter", (), sounding, trav=0x403)
    still = transform("still", 1, IDENTITY, [leaf], trav=0x3B)
    moved = transform("moved", 4, MOVED, [still, emitter], [event, plain], trav=0x43B)
    nodes = [
        style,
        node("tbSwitch", "switch", some_nodes(["first", "second", "third"]), switched),
        node("tbRangeSwitch", "ranges", some_nodes(["near", "far"]), ranged),
        node("tbAutoSwitch", "auto", some_nodes([None, None]), timed),
        node("tbAutoSwitch", "frames", some_nodes([None]), framed),
        node("tbBillboard", "billboard", (), lambda r, ref: r.int(2).float(0, 0, 1, 4, 5, 6), trav=0x33),
        node("tbSphereFence", "sphere fence", (), lambda r, ref: r.int(1).float(1, 2, 3, 4.5), trav=0x23),
        node("tbBoxFence", "box fence", (), lambda r, ref: r.int(0).float(-1, -2, -3, 1, 2, 3), trav=0x23),
        node("tbModel", "model", [moved], modelled, trav=0x43B),
    ]
    return node("tbScene", "scene", nodes, listed([]), trav=0x43B)


def portable():
    def vertices(r, ref):
        r.short(0x01 | 0x02 | 0x04 | 0x10 | 0x100).int(4)
        for i in range(4):
            r.float(i, -i, 0.5, 0, 0, 1).int(0x804020 + i).float(0, i, 1, 2 * i)

    positions = Obj("tbVertexArray", lambda r, ref: r.short(0x01).int(3).float(0, 0, 0, 1, 0, 0, 0, 1, 0))
    full = Obj("tbVertexArray", vertices)
    pixels = bytes(range(16)) + bytes(240)
    traits = [
        trait("tbMaterial", lambda r: r.float(0, 0, 0, 1, 0.5, 0.25, 1, 1, 1, 0, 0, 0.125, 32, 0.5), name="glass"),
        trait("tbTexture", lambda r: r.int(1, 2, 2).text("brick.png").int(8, 8).bytes(bytes(9)).int(256).bytes(pixels)),
    ]
    image = b"\xff\xd8..."
    carried = [
        trait("tbTexture", lambda r: r.int(0, 0, 1, 0, 0, 0).bytes(b"jpg".ljust(9, b"\0")).int(5).bytes(image), mode=2),
        trait("tbBlend", lambda r: r.int(1, 6, 7)),
        trait("tbFaceCull", lambda r: r.int(1)),
    ]

    def mesh(name, primitive, vertices, indices):
        more = lambda r, ref: r.int(primitive, ref(vertices) if vertices else -1, len(indices), *indices)
        return node("tbMesh", name, (), more, trav=0x263, node=1)

    meshes = [
        mesh("triangle", 2, positions, (0, 1, 2)),
        mesh("lines", 1, full, (0, 1, 2, 3)),
        mesh("points", 0, full, (3,)),
        mesh("empty", 2, None, ()),
    ]
    drawn = node("tbStyle", "drawn", meshes[:2], listed(carried), trav=0x263)
    painted = node("tbStyle", "painted", [drawn] + meshes[2:], listed(traits), trav=0x263)
    target = transform("target", 1, IDENTITY, trav=0x33)

    def motion(r, ref, speed, time):
        return r.base(name="motion").float(speed, time).int(1, 1, ref(target))

    def path(r, ref):
        motion(r, ref, 1, 0).int(1, 1, 4).float(0, 0, 0, 1, 0, 0, 1, 1, 0, 0, 1, 1).float(5).int(1, 1, 0)

    def keys(r, ref):
        motion(r, ref, 2, 0.5).int(1, 0, 2).float(0, 0, 0, 0).float(1, 4, 5, 6)
        r.int(1, 1, 1).float(0.5, 0, 0, 0, 1)
        r.int(0, 2, 0)

    actions = [Obj("tbPathAction", path), Obj("tbKeyFrameAction", keys)]
    mover = transform("mover", 4, MOVED, [painted, target], actions, trav=0x273)
    return node("tbGroup", "root", [mover], trav=0x273)


def collider():
    traits = [trait("tbColliderMask", lambda r: r.int(3)), trait("tbPrune", lambda r: r.int(0))]

    def write(r, ref):
        r.base(name="probe").float(1, 2, 3, 90, 0, -45).int(0xFFFFFFFF, 7, 2, 1, 2)
        r.int(2).float(0, 0, 0, 0, 1, 0, 100).float(1, 0, 0, 0, 0, -1, 0.5)
        listed(traits)(r, ref)

    return Obj("tbCollider", write)


def arrays():
    """Objects of the tests' class FileNode, each with an array of one of the nine types."""
    values = [
        lambda r: r.short(1, -2, 3),
        lambda r: r.byte(1, 2, 3, 4, 5, 6, 7, 8, 9),
        lambda r: r.byte(*range(12)),
        lambda r: r.int(1, -2, 3),
        lambda r: r.float(0.1, -1e30, 3),
        lambda r: r.float(*range(6)),
        lambda r: r.float(*range(9)),
        lambda r: r.float(*range(12)),
        lambda r: r.double(0.1, -1e300, 3),
    ]

    def array(type):
        return Obj("tbArray", lambda r, ref: values[type](r.short(type).int(3)))

    def node(value, data, children):
        def write(r, ref):
            r.base(name="node").int(value).double(value / 3).int(ref(data) if data else -1)
            listed(children)(r, ref)

        return Obj("FileNode", write)

    return node(-1, None, [node(type, array(type), ()) for type in range(len(values))])


def files():
    for name, make in (("kernel", kernel), ("portable", portable), ("collider", collider), ("arrays", arrays)):
        for suffix, order in (("", "<"), ("-swapped", ">")):
            yield name + suffix + ".tb", save(make(), order).build()
            yield name + suffix + "-packed.tb", save(make(), order).pack_all().build()


if __name__ == "__main__":
    sys.exit(output.write(os.path.join(os.path.dirname(os.path.abspath(__file__)), "good"), files()))
