"""Faults of what single classes keep: flags, states, ranges, times, matrices, volumes, names."""

from cases import Cases

cases = Cases()
graph, root = cases.graph, cases.root

NAN, INF = float("nan"), float("inf")
IDENTITY = [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]
TWO = (("tbGroup", []), ("tbGroup", []))
MESH = ("tbMesh", lambda r: r.group(trav=0).int(2, -1, 0))

# 32: flags
graph("32-no-flag-above-geometry", ("tbGroup", lambda r: r.group([1], trav=0)), MESH, both=True)
graph("32-no-flag-above-emitter", ("tbGroup", lambda r: r.group([1], trav=0)), ("tbEmitter", lambda r: r.group(trav=0)))
graph("32-every-flag", ("tbGroup", lambda r: r.group([1], trav=0xFFFF, node=0)), ("tbGroup", lambda r: r.group(trav=0xFFFF)))
graph("32-content-that-is-not-there", ("tbGroup", lambda r: r.group([1], trav=0x7E00)), ("tbGroup", []))
for node in (3, 0x7FFF, 0xFFFF):
    graph(
        "32-node-flag-%04x" % node,
        ("tbGroup", [1, 2]),
        ("tbGroup", [3]),
        ("tbGroup", [3]),
        ("tbGroup", lambda r, node=node: r.group(node=node, name="shared")),
    )


# 33: switches
def switch(name, states, number=None, flags=0, times=(0, 0, 0), both=False):
    def record(r):
        r.group([1, 2], name="switch")
        return r.int(len(states) if number is None else number).byte(*states).int(flags).float(*times)

    graph(name, ("tbSwitch", record), *TWO, both=both)


switch("33-no-states", [])
switch("33-one-state-missing", [1])
switch("33-states-too-many", [1, 0, 1, 1, 1, 1, 1], both=True)
switch("33-states-negative", [1, 1], number=-1)
switch("33-states-of-none-of-the-values", [3, 255])
switch("33-every-switch-flag", [1, 0], flags=-1)
switch("33-transition-not-a-number", [1, 2], flags=3, times=(NAN, INF, NAN), both=True)
switch("33-transition-negative", [2, 1], flags=3, times=(-5, 1e30, -1))


# 34: range switches
def ranges(name, records, number=None, center=(0, 0, 0), both=False):
    def record(r):
        r.switch([1, 2], name="ranges")
        r.int(len(records) if number is None else number)
        for values in records:
            r.float(*values)
        return r.int(1).float(*center).int(1)

    graph(name, ("tbRangeSwitch", record), *TWO, both=both)


ranges("34-no-records", [])
ranges("34-one-record-missing", [(10, 1, 1)], both=True)
ranges("34-records-too-many", [(10, 1, 1), (20, 1, 1), (30, 1, 1), (40, 1, 1)])
ranges("34-records-negative", [(10, 1, 1), (20, 1, 1)], number=-2)
ranges("34-not-numbers", [(NAN, NAN, NAN), (NAN, INF, -INF)], center=(NAN, NAN, NAN), both=True)
ranges("34-infinite", [(INF, 0, INF), (INF, 0, INF)], center=(INF, -INF, INF))
ranges("34-falling", [(20, 1, 1), (-10, -1, -1)])
ranges("34-transition-of-no-width", [(10, 0, INF), (10, 0, NAN)])
ranges("34-transition-wider-than-range", [(1, 1e30, 0), (2, 1e30, 0)])


# 35: iterators
def auto(name, make, both=False):
    def record(r):
        r.switch([1, 2], name="auto").int(1)
        return make(r)

    graph(name, ("tbAutoSwitch", record), *TWO, both=both)


auto("35-times-2-31-less-1", lambda r: r.byte(0, 1, 0, 0).int(0, 1).float(1, 0).int(0x7FFFFFFF).float(1), both=True)
auto("35-counts-2-31-less-1", lambda r: r.byte(0, 1, 1, 0).int(0, 1).float(1, 0).int(0, 1, 0, 0x7FFFFFFF, 1))
auto("35-capacity-negative", lambda r: r.byte(0, 1, 0, 0).int(0, 1).float(1, 0).int(-1, 1, 0, -1, 2))
auto("35-items-beyond-arrays", lambda r: r.iterator(2000000000, times=(1, 1)))
auto("35-items-negative", lambda r: r.iterator(-3, times=(1, 1)))
auto("35-item-beyond", lambda r: r.iterator(2, current=2, times=(1, 1)), both=True)
auto("35-item-beyond-the-end", lambda r: r.iterator(2, current=7, modes=(0, 0, 0, 0), times=(1, 1)))
auto("35-item-negative", lambda r: r.iterator(2, current=-7, times=(1, 1)))
auto("35-time-zero", lambda r: r.iterator(2, current=0, time=0, times=(0, 0)))
auto("35-time-negative", lambda r: r.iterator(2, current=0, time=-1, times=(-1, -1)))
auto("35-time-not-a-number", lambda r: r.iterator(2, current=0, time=NAN, times=(NAN, NAN), current_time=NAN), both=True)
auto("35-time-infinite", lambda r: r.iterator(2, current=0, time=INF, times=(INF, -INF), current_time=INF))
auto("35-time-tiny", lambda r: r.iterator(2, current=0, time=1e-30, times=(1e-30, 1e-30), current_time=1e30))
auto("35-frames-zero", lambda r: r.iterator(2, current=0, modes=(0, 1, 1, 0), frames=0, counts=(0, 0)))
auto("35-frames-negative", lambda r: r.iterator(2, current=0, modes=(0, 1, 1, 0), frames=-9, counts=(-9, -9), current_frame=-99))
auto("35-frames-negative-without-end", lambda r: r.iterator(2, current=0, modes=(0, 1, 1, 0), frames=-0x7FFFFFFF, counts=(-0x7FFFFFFF, -0x7FFFFFFF), current_frame=0))
auto("35-step-zero", lambda r: r.iterator(2, current=0, step=0, times=(1, 1)))
auto("35-step-2-31-less-1", lambda r: r.iterator(2, current=1, step=0x7FFFFFFF, times=(1, 1)))
auto("35-cycle-7", lambda r: r.iterator(2, current=0, modes=(0, 7, 0, 0), times=(0.001, 0.001)))
auto("35-every-mode-wrong", lambda r: r.iterator(2, current=0, modes=(9, 0x80, 0xFF, 0x7F), times=(1, 1)), both=True)


# 36: matrices
def matrix(name, type, elements, both=False):
    transform = ("tbTransform", lambda r: r.transform([1], type=type, elements=elements, name="t"))
    graph(name, transform, ("tbMesh", lambda r: r.group(trav=0x200).int(2, 2, 3, 0, 1, 2)), TRIANGLE, both=both)


TRIANGLE = ("tbVertexArray", lambda r: r.short(1).int(3).float(0, 0, 0, 1, 0, 0, 0, 1, 0))
MOVED = IDENTITY[:12] + [5, 6, 7, 1]
matrix("36-identity-that-moves", 1, MOVED, both=True)
matrix("36-translation-that-scales", 4, [2, 0, 0, 0, 0, 3, 0, 0, 0, 0, 4, 0, 5, 6, 7, 1])
matrix("36-every-type-bit", 0xFFFFFFFF, IDENTITY)
matrix("36-no-type", 0, MOVED)
matrix("36-unknown-type-bits", 0x7FFFFFC0, MOVED)
matrix("36-not-numbers", 4, [NAN] * 16, both=True)
matrix("36-identity-of-not-numbers", 1, [NAN] * 16)
matrix("36-infinite", 4, IDENTITY[:12] + [INF, -INF, INF, 1])
matrix("36-zeros", 16, [0] * 16)
matrix("36-w-zero", 32, IDENTITY[:15] + [0])
matrix("36-huge", 63, [3e38] * 16)


# 39: volumes, fences, emitters, cameras
def fence(name, tag, values, mode=1, both=False):
    node = (tag, lambda r: r.group([2], name="fence").int(mode).float(*values))
    graph(name, ("tbGroup", [1]), node, MESH, both=both)


fence("39-radius-not-a-number", "tbSphereFence", (NAN, NAN, NAN, NAN), both=True)
fence("39-radius-negative", "tbSphereFence", (0, 0, 0, -5))
fence("39-radius-infinite", "tbSphereFence", (INF, -INF, 0, INF))
fence("39-box-inside-out", "tbBoxFence", (1, 2, 3, -1, -2, -3))
fence("39-box-not-numbers", "tbBoxFence", (NAN, 0, 0, 1, NAN, 1), both=True)
fence("39-fence-mode-7", "tbSphereFence", (0, 0, 0, 1), mode=7)
fence("39-fence-mode-negative", "tbBoxFence", (0, 0, 0, 1, 1, 1), mode=-1)


def emitter(name, values, flags=8, both=False):
    record = lambda r: r.group(name="emitter").int(flags).float(*values[:3]).text("a.wav").float(*values[3:]).int(1)
    graph(name, ("tbScene", lambda r: r.style([1])), ("tbEmitter", record), both=both)


emitter("39-emitter-not-numbers", [NAN] * 9, both=True)
emitter("39-emitter-far-before-near", [0, 0, 0, 100, -1, -1, -1e30, 0, 9])
emitter("39-emitter-that-plays", [0, 0, 0, 1, 2, 1, 0, 1, 0], flags=0xFFFFFFFF)
graph(
    "39-billboard-without-axis",
    ("tbBillboard", lambda r: r.group([1]).int(99).float(0, 0, 0, NAN, INF, 0)),
    ("tbMesh", lambda r: r.group(trav=0x200).int(2, 2, 3, 0, 1, 2)),
    TRIANGLE,
)
root(
    "39-collider-of-anything",
    lambda r: r.base().float(*[NAN] * 6).int(-1, 0xFF, 99, 3, -1, 2).float(*[NAN] * 7, *[0] * 6, -1).int(0),
    tag="tbCollider",
    both=True,
)
root("39-material-not-numbers", lambda r: r.trait(mode=-9).float(*[NAN] * 12, INF, -1), tag="tbMaterial")
root("39-trait-values-of-no-enumeration", lambda r: r.trait(mode=77).int(-1, 99, 1 << 20), tag="tbBlend")
root("39-spline-of-no-type", lambda r: r.base().float(NAN, INF).int(0, 0, 77, 1, 2).float(*[NAN] * 7).int(9, 9, 9), tag="tbPathAction")
root(
    "39-keys-out-of-order",
    lambda r: r.base().float(1, 0).int(0, 0, 1, 0, 3).float(5, 1, 1, 1, NAN, 2, 2, 2, -5, 3, 3, 3).int(9, 9, 0, 1, 1, 0),
    tag="tbKeyFrameAction",
)

# 40: names of other files
for name, text in (
    ("up", "../../../../etc/passwd"),
    ("absolute", "/etc/passwd"),
    ("drive", "C:\\Windows\\win.ini"),
    ("share", "\\\\server\\share\\model.glb"),
    ("device", "CON"),
    ("itself", "40-model-itself.tb"),
):
    root("40-model-" + name, lambda r, text=text: r.transform().text(text).int(1, 1), tag="tbModel")
root("40-wave-up", lambda r: r.group().int(8).float(0, 0, 0).text("../../a.wav").float(1, 2, 1, 1, 1, 0).int(0), tag="tbEmitter")
root("40-texture-share", lambda r: r.trait().int(0, 0, 0).text("\\\\server\\t.png").int(0, 0).bytes(bytes(9)).int(0), tag="tbTexture")

# 41: roots that are no objects
for tag in ("tbTrait", "tbNobodysClass", "tbVertexArray", ""):
    graph("41-root-is-%s" % (tag or "of-no-name"), (tag, lambda r: r.base()), ("tbGroup", []))
root("41-root-is-a-trait", lambda r: r.trait().int(1), tag="tbCull")
root("41-root-is-a-base", lambda r: r.base(name="base"), tag="tbBase", both=True)
root("41-root-fails", lambda r: r.int(9), tag="tbGroup")


# 42: the list of plug-ins
def plug_ins(name, make, times=1, both=False):
    graph(name, ("tbGroup", lambda r: r.group(name="root")), *[("tbPlugIns", make)] * times, both=both)


def plug_in(r, module):
    return r.text("QRM").text("name").text("date").text(module).int(1, 2, 3)


plug_ins("42-number-negative", lambda r: r.int(-1))
plug_ins("42-number-2-31-less-1", lambda r: r.int(0x7FFFFFFF), both=True)
plug_ins("42-number-257", lambda r: r.int(257).bytes(bytes(28 * 257)))
plug_ins("42-text-2-31-less-1", lambda r: r.int(1, 0x7FFFFFFF).bytes(bytes(40)), both=True)
plug_ins("42-text-negative", lambda r: r.int(1, -1, -1, -1, -1, 1, 2, 3))
plug_ins("42-nothing", lambda r: r.bytes(b""))
for name, module in (
    ("up", "../../tbEvil.dll"),
    ("absolute", "/tmp/tbEvil.so"),
    ("drive", "C:\\tbEvil.dll"),
    ("share", "\\\\server\\share\\tbEvil.dll"),
    ("not-a-plug-in", "libc.so.6"),
    ("device", "CON"),
    ("zero-inside", "tbEvil.dll\0.so"),
    ("4000-characters", "tb" + "E" * 4000 + ".dll"),
    ("absent", "tbAbsentModule.dll"),
    ("format", "tb%s%n.dll"),
):
    plug_ins("42-module-" + name, lambda r, module=module: plug_in(r.int(1), module))


def same_many_times(r):
    r.int(256)
    for _ in range(256):
        plug_in(r, "tbAbsentModule.dll")
    return r


plug_ins("42-same-module-256-times", same_many_times)
plug_ins("42-two-lists", lambda r: plug_in(r.int(1), "tbAbsentModule.dll"), times=2)
