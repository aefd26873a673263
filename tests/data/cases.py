"""Named files, some of them in both byte orders."""

from nativefile import File


class Cases:
    def __init__(self):
        self.makers = []  # name, and what makes the bytes from a byte order
        self.in_both_orders = set()

    def add(self, name, make, both=False):
        """For a function that makes the bytes, or a File, from a byte order."""
        self.makers.append((name, make))
        if both:
            self.in_both_orders.add(name)

    def change(self, name, change, both=False):
        """The good file after `change`, or what `change` returns of it."""

        def make(order):
            f = good(order)
            result = change(f)
            return result if isinstance(result, bytes) else f

        self.add(name, make, both)

    def graph(self, name, *nodes, both=False, **fields):
        """Entries of a tag each, whose records are made by what stands behind it: a function, or a group's children.
        The file gets the fields."""

        def build(order):
            f = File(order)
            for i, (tag, make) in enumerate(nodes):
                r = f.record()
                f.add(tag, make(r) if callable(make) else r.group(make, name="n%d" % i))
            for field, value in fields.items():
                setattr(f, field, value)
            return f

        self.add(name, build, both)

    def root(self, name, make, tag="tbGroup", both=False):
        """A file of one entry."""
        self.graph(name, (tag, make), both=both)

    def child(self, name, tag, make, both=False, root="tbGroup"):
        """A root with one child."""
        self.graph(name, (root, lambda r: r.group([1], name="root")), (tag, make), both=both)

    def files(self):
        for name, make in self.makers:
            orders = ("<", ">") if name in self.in_both_orders else ("<",)
            for order in orders:
                made = make(order)
                data = made.build() if isinstance(made, File) else made
                yield name + ("-swapped.tb" if order == ">" else ".tb"), data


def good(order):
    """A root with a name and one child."""
    f = File(order)
    f.add("tbGroup", f.record().group([1], name="root"))
    f.add("tbGroup", f.record().group(name="child"))
    return f
