"""Composes native files byte by byte, in either byte order and with any fault. Knows nothing of the library."""

import struct

MAGIC = 0xBA773265
RELEASE = 0x01020000  # the version word that the files carry
NO_COMPRESSION, RLE = 0, 1


class Record:
    """The data of one entry, with the gaps that its alignment needs."""

    def __init__(self, order):
        self.order = order  # "<" or ">"
        self.data = b""

    def _put(self, form, value, alignment):
        self.data += bytes(-len(self.data) % alignment) + struct.pack(self.order + form, value)
        return self

    def byte(self, *values):
        for value in values:
            self._put("B", value & 0xFF, 1)
        return self

    def short(self, *values):
        for value in values:
            self._put("H", value & 0xFFFF, 1)
        return self

    def int(self, *values):
        for value in values:
            self._put("I", value & 0xFFFFFFFF, 4)
        return self

    def float(self, *values):
        for value in values:
            self._put("f", value, 4)
        return self

    def double(self, *values):
        for value in values:
            self._put("d", value, 8)
        return self

    def bytes(self, data):
        self.data += data
        return self

    def text(self, text):
        """A length with the terminating zero, then the text; nothing but the length 0 for None."""
        if text is None:
            return self.int(0)
        return self.int(len(text) + 1).bytes(text.encode("latin-1") + b"\0")

    # What the classes begin with.
    def base(self, name=None, flags=0, attributes=()):
        return self.text(name).short(flags).int(len(attributes), *attributes)

    def group(self, children=(), trav=0x01, node=1, **base):
        return self.base(**base).short(trav, node).int(len(children), *children)

    def style(self, children=(), traits=(), **group):
        return self.group(children, **group).int(len(traits), *traits)

    def transform(self, children=(), type=1, elements=None, **group):
        elements = elements or [1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1, 0, 0, 0, 0, 1]
        return self.group(children, **group).int(type).float(*elements)

    def switch(self, children=(), states=None, flags=0, fraction=0, start=0, time=0, **group):
        states = [1] * len(children) if states is None else states
        return self.group(children, **group).int(len(states)).byte(*states).int(flags).float(fraction, start, time)

    def trait(self, mode=1, shareable=0, **base):
        return self.base(**base).short(mode, shareable)

    def iterator(self, items, current=-1, step=1, modes=(0, 1, 0, 0), time=1.0, times=(), frames=0, counts=(), current_time=0, current_frame=0):
        self.byte(*modes).int(current, step).float(time, current_time).int(len(times)).float(*times)
        return self.int(frames, current_frame, len(counts), *counts).int(items)


def pack(data):
    """Run-length packed as the library packs; None when that does not pay."""
    if len(data) < 10:
        return None
    pairs = []
    run = 0
    for i, value in enumerate(data):
        run += 1
        if i + 1 == len(data) or data[i + 1] != value or run == 255:
            pairs.append(bytes((run, value)))
            run = 0
            if i + 1 < len(data) and 3 + 2 * len(pairs) >= len(data):
                return None
    return b"".join(pairs) + b"\0"


class Entry:
    def __init__(self, tag, data, magic):
        self.tag, self.data, self.magic = tag, data, magic
        self.size = len(data)
        self.compression = NO_COMPRESSION
        self.version = RELEASE
        self.offset = None  # where the data is put, unless it is set


class File:
    def __init__(self, order="<", version=RELEASE):
        self.order, self.version = order, version
        self.tags, self.entries = [], []
        self.tag_indices = None
        self.num_entries = self.num_tags = None  # instead of the true numbers
        self.magic = MAGIC
        self.gap = 88

    def record(self, order=None):
        return Record(order or self.order)

    def add(self, tag, record):
        """Appends an entry, and its tag when it is new; its fields may be changed before build()."""
        if tag not in self.tags:
            self.tags.append(tag)
        data = record.data if isinstance(record, Record) else record
        order = record.order if isinstance(record, Record) else self.order
        entry = Entry(self.tags.index(tag), data, struct.pack(order + "I", MAGIC))
        self.entries.append(entry)
        return entry

    def packed(self, tag, record, packed, size):
        """An entry whose packed bytes are these."""
        entry = self.add(tag, struct.pack(self.order + "I", len(packed)) + packed)
        entry.compression, entry.size = RLE, size
        return entry

    def pack_all(self):
        for entry in self.entries:
            packed = pack(entry.data)
            if packed is not None:
                entry.data = struct.pack(self.order + "I", len(packed)) + packed
                entry.compression = RLE
        return self

    def words(self, *values):
        return b"".join(struct.pack(self.order + "I", value & 0xFFFFFFFF) for value in values)

    def table_size(self):
        return 96 + 68 * len(self.tags) + 24 * len(self.entries)

    def data_start(self):
        return self.table_size() + self.gap * len(self.entries)

    def build(self):
        num_entries = len(self.entries) if self.num_entries is None else self.num_entries
        num_tags = len(self.tags) if self.num_tags is None else self.num_tags
        out = self.words(self.magic, self.version) + bytes(64) + self.words(num_entries, num_tags) + bytes(16)
        for i, tag in enumerate(self.tags):
            name = tag if isinstance(tag, bytes) else tag.encode("latin-1")
            out += self.words(self.tag_indices[i] if self.tag_indices else i) + name[:64].ljust(64, b"\0")
        place = self.data_start()
        body = b""
        for entry in self.entries:
            offset = place if entry.offset is None else entry.offset
            out += entry.magic + self.words(entry.tag, offset, entry.compression, entry.size, entry.version)
            body += entry.data
            place += len(entry.data)
        return out + bytes(self.gap * len(self.entries)) + body
