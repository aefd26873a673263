#!/usr/bin/env python3
"""Writes town.glb, the sample model: a small town whose buildings are instances of a few shared meshes.

usage: make_town.py [OUTPUT]        default: town.glb beside this script

The town is a hierarchy of districts, blocks and plots. Every plot places a house, a shop, a tower or a tree of
which one mesh exists; the file therefore stays small while the graph holds a few hundred buildings. The same
input gives the same bytes, so the committed model can be compared with a fresh one.
"""
import json
import math
import os
import random
import struct
import sys
import zlib

DISTRICTS = 4  # along each side of the town
BLOCKS = 2  # along each side of a district
PLOTS = 3  # along each side of a block
PLOT_SIZE = 16.0
STREET = 10.0


class Shape:
    """Triangles with flat normals, by material. Y is up, as glTF wants it."""

    def __init__(self):
        self.parts = {}

    def face(self, material, points, uvs):
        """A flat polygon, counter-clockwise seen from outside, as a fan of triangles."""
        u = [points[1][i] - points[0][i] for i in range(3)]
        v = [points[-1][i] - points[0][i] for i in range(3)]
        n = [u[1] * v[2] - u[2] * v[1], u[2] * v[0] - u[0] * v[2], u[0] * v[1] - u[1] * v[0]]
        length = math.sqrt(sum(x * x for x in n))
        part_points, part_normals, part_uvs, indices = self.parts.setdefault(material, ([], [], [], []))
        first = len(part_points)
        part_points += points
        part_normals += [[x / length for x in n]] * len(points)
        part_uvs += uvs
        for i in range(1, len(points) - 1):
            indices += [first, first + i, first + i + 1]

    def quad(self, material, a, b, c, d, tiles=(1.0, 1.0)):
        self.face(material, [a, b, c, d], [(0.0, tiles[1]), (tiles[0], tiles[1]), (tiles[0], 0.0), (0.0, 0.0)])

    def triangle(self, material, a, b, c):
        self.face(material, [a, b, c], [(0.0, 1.0), (1.0, 1.0), (0.5, 0.0)])

    def walls(self, material, half_x, half_z, low, high, tiles=(1.0, 1.0)):
        x, z = half_x, half_z
        corners = [(-x, z), (x, z), (x, -z), (-x, -z)]
        for i in range(4):
            (x0, z0), (x1, z1) = corners[i], corners[(i + 1) % 4]
            self.quad(material, (x0, low, z0), (x1, low, z1), (x1, high, z1), (x0, high, z0), tiles)

    def lid(self, material, half_x, half_z, height, tiles=(1.0, 1.0)):
        x, z = half_x, half_z
        self.quad(material, (-x, height, z), (x, height, z), (x, height, -z), (-x, height, -z), tiles)

    def gable(self, material, half_x, half_z, low, high):
        x, z = half_x, half_z
        self.quad(material, (-x, low, z), (x, low, z), (x, high, 0.0), (-x, high, 0.0))
        self.quad(material, (x, low, -z), (-x, low, -z), (-x, high, 0.0), (x, high, 0.0))
        self.triangle(material, (x, low, z), (x, low, -z), (x, high, 0.0))
        self.triangle(material, (-x, low, -z), (-x, low, z), (-x, high, 0.0))

    def cone(self, material, radius, low, high, sides):
        ring = [(radius * math.cos(2 * math.pi * i / sides), radius * math.sin(2 * math.pi * i / sides))
                for i in range(sides)]
        for i in range(sides):
            (x0, z0), (x1, z1) = ring[i], ring[(i + 1) % sides]
            self.triangle(material, (x1, low, z1), (x0, low, z0), (0.0, high, 0.0))


def make_shapes():
    shapes = {}

    cottage = shapes["cottage"] = Shape()
    cottage.walls("facade", 4.5, 3.5, 0.0, 3.5, (3.0, 1.0))
    cottage.gable("tiles", 5.0, 4.0, 3.5, 6.5)

    house = shapes["house"] = Shape()
    house.walls("facade", 5.0, 4.5, 0.0, 6.5, (4.0, 2.0))
    house.gable("tiles", 5.4, 4.9, 6.5, 10.0)
    house.walls("brick", 0.5, 0.5, 6.5, 11.0)

    shop = shapes["shop"] = Shape()
    shop.walls("glass", 6.0, 5.0, 0.0, 3.0, (4.0, 1.0))
    shop.walls("brick", 6.0, 5.0, 3.0, 5.0)
    shop.lid("concrete", 6.0, 5.0, 5.0)

    tower = shapes["tower"] = Shape()
    tower.walls("facade", 5.5, 5.5, 0.0, 30.0, (5.0, 10.0))
    tower.lid("concrete", 5.5, 5.5, 30.0)
    tower.walls("concrete", 2.0, 2.0, 30.0, 33.0)
    tower.lid("concrete", 2.0, 2.0, 33.0)

    church = shapes["church"] = Shape()
    church.walls("stone", 5.0, 9.0, 0.0, 9.0)
    church.gable("tiles", 5.2, 9.2, 9.0, 14.0)
    church.walls("stone", 2.5, 2.5, 9.0, 22.0)
    church.cone("tiles", 3.6, 22.0, 34.0, 8)

    tree = shapes["tree"] = Shape()
    tree.walls("bark", 0.3, 0.3, 0.0, 2.0)
    tree.cone("leaves", 2.0, 1.8, 5.0, 7)
    tree.cone("leaves", 1.5, 3.6, 6.5, 7)

    ground = shapes["ground"] = Shape()
    half = (PLOTS * PLOT_SIZE) / 2
    ground.lid("grass", half, half, 0.0, (8.0, 8.0))

    road = shapes["road"] = Shape()
    half = town_size() / 2 + STREET
    road.lid("asphalt", half, half, -0.05, (40.0, 40.0))
    return shapes


MATERIALS = {  # base colour, roughness; "facade" also has a picture, "glass" lets light through
    "facade": ((0.87, 0.82, 0.72, 1.0), 0.9),
    "tiles": ((0.60, 0.25, 0.18, 1.0), 0.8),
    "brick": ((0.55, 0.30, 0.24, 1.0), 0.9),
    "concrete": ((0.62, 0.62, 0.60, 1.0), 0.95),
    "stone": ((0.72, 0.70, 0.65, 1.0), 0.9),
    "glass": ((0.55, 0.72, 0.80, 0.6), 0.1),
    "bark": ((0.35, 0.25, 0.16, 1.0), 1.0),
    "leaves": ((0.22, 0.45, 0.20, 1.0), 1.0),
    "grass": ((0.38, 0.55, 0.28, 1.0), 1.0),
    "asphalt": ((0.25, 0.25, 0.27, 1.0), 1.0),
}


def png(width, height, pixel):
    """An 8-bit RGB picture of what pixel(x, y) gives."""
    def chunk(kind, data):
        return struct.pack(">I", len(data)) + kind + data + struct.pack(">I", zlib.crc32(kind + data))

    rows = b"".join(b"\0" + b"".join(bytes(pixel(x, y)) for x in range(width)) for y in range(height))
    header = struct.pack(">IIBBBBB", width, height, 8, 2, 0, 0, 0)
    return b"\x89PNG\r\n\x1a\n" + chunk(b"IHDR", header) + chunk(b"IDAT", zlib.compress(rows, 9)) + chunk(b"IEND", b"")


def facade_pixel(x, y):
    """One bay of a facade: a window with a cross in a plain wall."""
    if 9 <= x < 23 and 8 <= y < 26:
        return (235, 235, 230) if x in (9, 15, 16, 22) or y in (8, 16, 25) else (70, 90, 110)
    return (250, 246, 238)


class Buffers:
    """The binary chunk with its views and accessors."""

    def __init__(self):
        self.data, self.views, self.accessors = bytearray(), [], []

    def view(self, data, target=None):
        self.data += b"\0" * (-len(self.data) % 4)
        view = {"buffer": 0, "byteOffset": len(self.data), "byteLength": len(data)}
        if target:
            view["target"] = target
        self.data += data
        self.views.append(view)
        return len(self.views) - 1

    def vectors(self, rows, bounds=False):
        size = len(rows[0])
        rows = [struct.unpack(f"<{size}f", struct.pack(f"<{size}f", *row)) for row in rows]
        accessor = {
            "bufferView": self.view(b"".join(struct.pack(f"<{size}f", *row) for row in rows), 34962),
            "componentType": 5126,
            "count": len(rows),
            "type": f"VEC{size}",
        }
        if bounds:
            accessor["min"] = [min(row[i] for row in rows) for i in range(size)]
            accessor["max"] = [max(row[i] for row in rows) for i in range(size)]
        self.accessors.append(accessor)
        return len(self.accessors) - 1

    def indices(self, values):
        view = self.view(struct.pack(f"<{len(values)}H", *values), 34963)
        self.accessors.append({"bufferView": view, "componentType": 5123, "count": len(values), "type": "SCALAR"})
        return len(self.accessors) - 1


def make_meshes(buffers, materials):
    meshes = []
    for name, shape in make_shapes().items():
        primitives = []
        for material, (points, normals, uvs, indices) in shape.parts.items():
            attributes = {
                "POSITION": buffers.vectors(points, bounds=True),
                "NORMAL": buffers.vectors(normals),
                "TEXCOORD_0": buffers.vectors(uvs),
            }
            primitives.append({
                "attributes": attributes,
                "indices": buffers.indices(indices),
                "material": materials.index(material),
            })
        meshes.append({"name": name, "primitives": primitives})
    return meshes


def make_materials():
    materials = []
    for name, (colour, roughness) in MATERIALS.items():
        pbr = {"baseColorFactor": list(colour), "metallicFactor": 0.0, "roughnessFactor": roughness}
        if name == "facade":
            pbr["baseColorTexture"] = {"index": 0}
        material = {"name": name, "pbrMetallicRoughness": pbr}
        if colour[3] < 1.0:
            material["alphaMode"] = "BLEND"
        if name == "leaves":
            material["doubleSided"] = True
        materials.append(material)
    return materials


def block_size():
    return PLOTS * PLOT_SIZE


def district_size():
    return BLOCKS * (block_size() + STREET)


def town_size():
    return DISTRICTS * district_size()


class Graph:
    def __init__(self, mesh_names):
        self.nodes, self.mesh_names, self.random = [], mesh_names, random.Random(7)

    def node(self, name, x=0.0, z=0.0, turn=0.0, scale=1.0, mesh=None):
        node = {"name": name}
        if x or z:
            node["translation"] = [round(x, 3), 0.0, round(z, 3)]
        if turn:
            half = math.radians(turn) / 2
            node["rotation"] = [0.0, round(math.sin(half), 6), 0.0, round(math.cos(half), 6)]
        if scale != 1.0:
            node["scale"] = [round(scale, 3)] * 3
        if mesh:
            node["mesh"] = self.mesh_names.index(mesh)
        self.nodes.append(node)
        return len(self.nodes) - 1

    def grid(self, parent, count, pitch, make):
        """A square of children, centred on the parent."""
        first = -(count - 1) * pitch / 2
        for row in range(count):
            for column in range(count):
                child = make(row * count + column, first + column * pitch, first + row * pitch)
                self.nodes[parent].setdefault("children", []).append(child)

    def plot(self, name, x, z, kind):
        plot = self.node(name, x, z, turn=self.random.choice([0, 90, 180, 270]))
        building = self.node(kind, scale=self.random.uniform(0.85, 1.1), mesh=kind)
        tree = self.node("tree", 6.2, 6.2, turn=self.random.uniform(1, 359), scale=self.random.uniform(0.6, 1.2),
                         mesh="tree")
        self.nodes[plot]["children"] = [building, tree]
        return plot

    def block(self, name, x, z, central, with_church):
        block = self.node(name, x, z, mesh="ground")
        kinds = ["tower", "tower", "shop", "house"] if central else ["cottage", "house", "house", "shop"]

        def plot(i, px, pz):
            kind = "church" if with_church and i == 4 else self.random.choice(kinds)
            return self.plot(f"{name}.plot{i + 1}", px, pz, kind)

        self.grid(block, PLOTS, PLOT_SIZE, plot)
        return block

    def district(self, i, x, z):
        row, column = divmod(i, DISTRICTS)
        central = 0 < row < DISTRICTS - 1 and 0 < column < DISTRICTS - 1
        name = f"district{i + 1}"
        district = self.node(name, x, z)
        self.grid(district, BLOCKS, block_size() + STREET,
                  lambda j, bx, bz: self.block(f"{name}.block{j + 1}", bx, bz, central, with_church=j == 0))
        return district

    def town(self):
        town = self.node("town")
        self.nodes[town]["children"] = [self.node("roads", mesh="road")]
        self.grid(town, DISTRICTS, district_size(), self.district)
        return town


def make_document():
    buffers = Buffers()
    meshes = make_meshes(buffers, list(MATERIALS))
    picture = buffers.view(png(32, 32, facade_pixel))
    graph = Graph([mesh["name"] for mesh in meshes])
    town = graph.town()
    document = {
        "asset": {"version": "2.0", "generator": "make_town.py"},
        "scene": 0,
        "scenes": [{"name": "town", "nodes": [town]}],
        "nodes": graph.nodes,
        "meshes": meshes,
        "materials": make_materials(),
        "textures": [{"source": 0, "sampler": 0}],
        "samplers": [{"magFilter": 9729, "minFilter": 9987, "wrapS": 10497, "wrapT": 10497}],
        "images": [{"name": "facade", "mimeType": "image/png", "bufferView": picture}],
        "accessors": buffers.accessors,
        "bufferViews": buffers.views,
        "buffers": [{"byteLength": len(buffers.data)}],
    }
    return document, bytes(buffers.data)


def write_glb(path, document, data):
    text = json.dumps(document, separators=(",", ":")).encode()
    text += b" " * (-len(text) % 4)
    data += b"\0" * (-len(data) % 4)
    length = 12 + 8 + len(text) + 8 + len(data)
    with open(path, "wb") as out:
        out.write(struct.pack("<4sII", b"glTF", 2, length))
        out.write(struct.pack("<I4s", len(text), b"JSON") + text)
        out.write(struct.pack("<I4s", len(data), b"BIN\0") + data)


def main():
    path = sys.argv[1] if len(sys.argv) > 1 else os.path.join(os.path.dirname(os.path.abspath(__file__)), "town.glb")
    document, data = make_document()
    write_glb(path, document, data)
    buildings = sum(1 for node in document["nodes"] if node["name"] in ("cottage", "house", "shop", "tower", "church"))
    print(f"{path}: {len(document['nodes'])} nodes, {buildings} buildings, {len(document['meshes'])} meshes")


if __name__ == "__main__":
    main()
