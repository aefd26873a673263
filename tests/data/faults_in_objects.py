"""Faults of objects and of the references between them."""

from cases import Cases

cases = Cases()
root, graph = cases.root, cases.graph


# 20: names
root("20-name-2-31-less-1", lambda r: r.int(0x7FFFFFFF).bytes(b"name"), both=True)
root("20-name-negative", lambda r: r.int(-1).short(0).int(0).short(1, 1).int(0))
root("20-name-most-negative", lambda r: r.int(0x80000000).short(0).int(0).short(1, 1).int(0))
root("20-name-1-without-text", lambda r: r.int(1))
root("20-name-of-nothing-but-zero", lambda r: r.int(1).byte(0).short(0).int(0).short(1, 1).int(0))

# 21: counts
BIG = 0x7FFFFFFF
root("21-attributes-2-31-less-1", lambda r: r.int(0).short(0).int(BIG), both=True)
root("21-attributes-negative", lambda r: r.int(0).short(0).int(-2).short(1, 1).int(0))
root("21-attributes-one-too-many", lambda r: r.int(0).short(0).int(2, -1).short(1))
root("21-children-2-31-less-1", lambda r: r.base().short(1, 1).int(BIG), both=True)
root("21-children-negative", lambda r: r.base().short(1, 1).int(0x80000000))
root("21-children-times-4-wraps", lambda r: r.base().short(1, 1).int(0x40000001, -1, -1))
root("21-traits-2-31-less-1", lambda r: r.group().int(BIG), tag="tbStyle")
root("21-states-2-31-less-1", lambda r: r.group().int(BIG).byte(1), tag="tbSwitch", both=True)
root("21-ranges-2-31-less-1", lambda r: r.switch().int(BIG).float(1, 1, 1), tag="tbRangeSwitch")
root("21-ranges-times-12-wraps", lambda r: r.switch().int(0x15555556).float(*[1] * 9), tag="tbRangeSwitch")
root("21-rays-2-31-less-1", lambda r: r.base().float(*[0] * 6).int(-1, 7, 1, 0, 0, BIG).float(*[1] * 7), tag="tbCollider")
root("21-collider-traits-2-31-less-1", lambda r: r.base().float(*[0] * 6).int(-1, 7, 1, 0, 0, 0, BIG), tag="tbCollider")
root("21-indices-2-31-less-1", lambda r: r.group().int(2, -1, BIG), tag="tbMesh")
root("21-image-2-31-less-1", lambda r: r.trait().int(0, 0, 1, 0, 4, 4).bytes(bytes(9)).int(BIG), tag="tbTexture")
root("21-image-of-wrong-size", lambda r: r.trait().int(0, 0, 1, 0, 4, 4).bytes(bytes(9)).int(8, 1, 2), tag="tbTexture")
root("21-image-sides-wrap", lambda r: r.trait().int(0, 0, 1, 0, 65536, 65536).bytes(bytes(9)).int(4, 1), tag="tbTexture")
root("21-spline-2-31-less-1", lambda r: r.base().float(1, 0).int(0, 0, 1, 0, BIG), tag="tbPathAction")
root("21-keys-2-31-less-1", lambda r: r.base().float(1, 0).int(0, 0, 1, 0, BIG).float(0, 1, 2, 3), tag="tbKeyFrameAction")

# 22: references out of range, to themselves and to what is being read
graph("22-index-beyond", ("tbGroup", [2, 1]), ("tbGroup", []), both=True)
graph("22-index-2-31-less-1", ("tbGroup", [BIG]))
graph("22-index-negative", ("tbGroup", [-1, -2, 0x80000000]))
graph("22-child-of-itself", ("tbGroup", [0]))
graph("22-cycle-of-two", ("tbGroup", [1]), ("tbGroup", [0]), both=True)
graph("22-cycle-of-three-below-root", ("tbGroup", [1]), ("tbGroup", [2]), ("tbGroup", [3, 3]), ("tbGroup", [1]))
graph("22-two-cycles-share-a-node", ("tbGroup", [1, 2]), ("tbGroup", [2, 0]), ("tbGroup", [1, 0]))
graph("22-root-is-not-first", ("tbGroup", []), ("tbGroup", [0, 2]), ("tbGroup", [1]))

# 23: cycles through attributes and traits
graph("23-attribute-of-itself", ("tbGroup", lambda r: r.group(attributes=[0, 0])))
graph(
    "23-attributes-of-each-other",
    ("tbGroup", lambda r: r.group(attributes=[1], name="a")),
    ("tbBase", lambda r: r.base(attributes=[0, 1], name="b")),
    both=True,
)
graph(
    "23-trait-with-its-style-as-attribute",
    ("tbStyle", lambda r: r.style(traits=[1], name="style")),
    ("tbCull", lambda r: r.trait(attributes=[0]).int(1)),
)
graph(
    "23-child-and-attribute",
    ("tbGroup", lambda r: r.group([1], name="a")),
    ("tbGroup", lambda r: r.group(attributes=[0], name="b")),
)

# 24: one kind of thing taken for another
graph("24-vertices-that-are-a-group", ("tbMesh", lambda r: r.group().int(2, 1, 0)), ("tbGroup", []), both=True)
graph(
    "24-vertices-that-are-an-array",
    ("tbMesh", lambda r: r.group().int(2, 1, 0)),
    ("tbArray", lambda r: r.short(3).int(1, 1)),
)
graph("24-child-that-is-an-array", ("tbGroup", [1]), ("tbArray", lambda r: r.short(3).int(1, 1)))
graph("24-child-that-is-a-vertex-array", ("tbGroup", [1]), ("tbVertexArray", lambda r: r.short(1).int(0)), both=True)
graph("24-child-that-is-the-plug-in-list", ("tbGroup", [1]), ("tbPlugIns", lambda r: r.int(0)))
graph(
    "24-array-that-is-vertices",
    ("FileNode", lambda r: r.base().int(1).double(0).int(1, 0)),
    ("tbVertexArray", lambda r: r.short(1).int(0)),
)
graph(
    "24-vertices-as-child-once-read",
    ("tbGroup", [1, 2, 3]),
    ("tbMesh", lambda r: r.group().int(2, 3, 0)),
    ("tbGroup", []),
    ("tbVertexArray", lambda r: r.short(1).int(0)),
)
graph("24-root-is-an-array", ("tbArray", lambda r: r.short(3).int(1, 1)))

# 25: classes that a file must not make
NOT_MADE = (
    ["tbThread", "tbFlushThread", "tbLock", "tbQueue", "tbSemaphore", "tbWindow", "tbCamera", "tbListener"]
    + ["tbRenderContext", "tbTravContext", "tbTraitStack", "tbMouse", "tbKeyboard"]
)
ABSTRACT = ["tbAction", "tbTrait", "tbTravTrait", "tbVisualTrait", "tbAudioTrait", "tbFence", "tbGeometry", "tbActionNode"]
for names, kind in ((NOT_MADE, "services"), (ABSTRACT, "abstract")):
    attributes = list(range(1, len(names) + 1))
    graph(
        "25-" + kind,
        ("tbGroup", lambda r, attributes=attributes: r.group(attributes=attributes)),
        *[(name, lambda r: r.base()) for name in names],
        both=kind == "services"
    )
for name in ("tbThread", "tbWindow", "tbPlugIns"):
    graph("25-root-is-a-" + name, (name, lambda r: r.base()))
graph("25-no-class-of-objects", ("tbGroup", [1, 2, 3]), ("tbPlugIn", []), ("tbMemory", []), ("tbFile", []))
graph("25-scene-below-a-scene", ("tbGroup", [1, 2]), ("tbGroup", [3]), ("tbScene", lambda r: r.style([1])),
      ("tbScene", lambda r: r.style()))
graph("25-scene-in-a-scene", ("tbScene", lambda r: r.style([1, 2])), ("tbScene", lambda r: r.style()), ("tbGroup", []))

# 26: objects of the wrong family
TRAIT = ("tbCull", lambda r: r.trait().int(0x1500))
graph("26-child-that-is-a-trait", ("tbGroup", [1, 2]), TRAIT, ("tbGroup", []), both=True)
graph("26-trait-that-is-a-node", ("tbStyle", lambda r: r.style(traits=[1, 2])), ("tbGroup", []), TRAIT)
graph(
    "26-child-that-a-style-holds-as-trait",
    ("tbGroup", [1, 2, 3]),
    ("tbStyle", lambda r: r.style(traits=[2, 2])),
    TRAIT,
    ("tbStyle", lambda r: r.style([2], traits=[2])),
)
graph(
    "26-ray-trait-of-a-collider-that-is-visual",
    ("tbCollider", lambda r: r.base().float(*[0] * 6).int(-1, 7, 1, 0, 0, 0, 2, 1, 2)),
    ("tbMaterial", lambda r: r.trait().float(*[1] * 14)),
    TRAIT,
)
graph(
    "26-target-of-a-motion-that-is-a-trait",
    ("tbTransform", lambda r: r.transform(attributes=[1])),
    ("tbPathAction", lambda r: r.base().float(1, 0).int(0, 1, 2, 1, 0, 0).float(1).int(0, 0, 0)),
    TRAIT,
)
graph(
    "26-target-that-only-its-motion-names",
    ("tbTransform", lambda r: r.transform(attributes=[1])),
    ("tbPathAction", lambda r: r.base().float(1, 0).int(0, 1, 2, 1, 0, 0).float(1).int(0, 0, 0)),
    ("tbTransform", lambda r: r.transform(name="target")),
)
graph("26-node-as-attribute-and-child", ("tbGroup", lambda r: r.group([1], attributes=[1])), ("tbGroup", []))

# 27: objects whose reading fails
FAILS = ("tbGroup", lambda r: r.base().short(1, 1).int(1000))
graph("27-child-fails", ("tbGroup", [1, 2]), FAILS, ("tbGroup", []), both=True)
graph("27-referred-to-twice", ("tbGroup", [1, 2, 1]), FAILS, ("tbGroup", [1]))
graph("27-fails-with-children", ("tbGroup", [1]), ("tbStyle", lambda r: r.group([2]).int(5)), ("tbGroup", []))
graph("27-fails-with-shared-child", ("tbGroup", [1, 2]), ("tbStyle", lambda r: r.group([2]).int(5)), ("tbGroup", []))
graph("27-root-fails", FAILS)
graph("27-root-fails-with-children", ("tbStyle", lambda r: r.group([1]).int(5)), ("tbGroup", []))
graph("27-trait-fails", ("tbStyle", lambda r: r.style(traits=[1, 1])), ("tbCull", lambda r: r.int(99)))


# 28: many references to one thing
graph(
    "28-one-child-many-times",
    ("FileNode", lambda r: r.base().int(1).double(0).int(-1, 2000, *[1] * 2000)),
    ("FileNode", lambda r: r.base().int(1).double(0).int(-1, 0)),
    both=True,
)
graph(
    "28-one-attribute-many-times",
    ("tbBase", lambda r: r.base(attributes=[0x01010101] * 3 + [1] * 2000)),
    ("tbBase", lambda r: r.base(name="one")),
)

# 29: nesting
graph("29-as-deep-as-a-program-likes", *[("tbGroup", [i + 1]) for i in range(39)], ("tbGroup", []))


def chain(name, depth, link):
    below = [[i + 1] for i in range(depth - 1)] + [[]]
    graph(name, *[("tbGroup", lambda r, next=next: link(r, next)) for next in below], gap=0)


chain("29-children-too-deep", 1100, lambda r, next: r.group(next))
chain("29-attributes-too-deep", 1100, lambda r, next: r.group(attributes=next))
chain("29-both-too-deep", 600, lambda r, next: r.group(next, attributes=next))


# 30: two paths more for each level
def lattice(name, levels, node, both=False):
    below = [[1, 2]]
    for level in range(1, levels):
        below += [[2 * level + 1, 2 * level + 2]] * 2
    below += [[]] * 2
    graph(name, *[("tbGroup", lambda r, next=next: r.group(next, node=node)) for next in below], both=both)


lattice("30-lattice-of-40-levels", 40, 1, both=True)
lattice("30-lattice-that-is-cloned", 10, 0)
lattice("30-lattice-that-is-copied", 10, 2)
lattice("30-lattice-of-undefined-flags", 8, 0x7FFF)
graph(
    "30-lattice-of-attributes",
    *[("tbBase", lambda r, i=i: r.base(attributes=[i + 1] * 2)) for i in range(40)],
    ("tbBase", lambda r: r.base())
)

# 31: a child twice
graph("31-child-twice", ("tbGroup", [1, 1]), ("tbGroup", []), both=True)
graph("31-child-twice-among-others", ("tbGroup", [1, 2, 1, 3, 2, 1]), ("tbGroup", []), ("tbGroup", []), ("tbGroup", [1]))
graph("31-trait-twice", ("tbStyle", lambda r: r.style(traits=[1, 1])), TRAIT)
