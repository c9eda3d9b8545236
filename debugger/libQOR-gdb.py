"""Shows objects of libQOR in gdb: class and name, then the attributes and links that are set.

    (gdb) source libQOR-gdb.py        unless gdb has loaded it beside libQOR.so
    (gdb) print *object
    $1 = QORClass "customer" = {designPackage = QORDesignPackage "shop", feature = 2 {QORAttribute "id", ...}}

An attribute that isn't shown is empty, 0 or false, and a link end that isn't shown is unset. `print /r` shows the
fields as they are. gdb reads the classes from libQOR.so, unless it has been stripped.
"""

import itertools
import re

import gdb
import gdb.printing

SHOWN = 5  # elements of a nary end
LONGEST = 60  # characters of a name
HIGHEST = 64  # levels of a tree
LIBRARY_CLASS = re.compile(r"QOR[A-Z]\w*")


def name_of(kind):
    return kind.strip_typedefs().unqualified().name or ""


def is_below(kind, base):
    """Whether a type is a class or derived from it."""
    kind = kind.strip_typedefs()
    if kind.code != gdb.TYPE_CODE_STRUCT:
        return False
    return name_of(kind) == base or any(is_below(field.type, base) for field in kind.fields() if field.is_base_class)


def shown(read):
    """The text that a function makes of the program's memory; another one where that can't be read."""
    try:
        return read()
    except (gdb.error, gdb.MemoryError) as error:
        return f"<{error}>"


def text_of(string):
    return string["chars"].string(errors="replace", length=int(string["length"]))


def quoted(text):
    escaped = text[:LONGEST].replace("\\", "\\\\").replace('"', '\\"').replace("\n", "\\n")
    return f'"{escaped}{"..." if len(text) > LONGEST else ""}"'


def most_derived(value):
    """An object as one of its own class, as far as gdb knows that class."""
    try:
        pointer = value.address
        return pointer.cast(pointer.dynamic_type).dereference() if pointer is not None else value
    except gdb.error:  # what lies there isn't an object, or not any more
        return value


def title(value):
    """Class and name of an object."""
    return f"{name_of(value.type)} {quoted(text_of(value['name']))}"


def title_at(item):
    """Class and name of the object that a pointer leads to."""
    root = gdb.lookup_type("QORObject").pointer()
    return shown(lambda: title(most_derived(item.cast(root).dereference())))


def following(node):
    """The node after one of a tree. No tree is as high as the steps counted here, unless its memory is damaged."""
    if node["right"]:
        node = node["right"]
        for _ in range(HIGHEST):
            if not node["left"]:
                break
            node = node["left"]
        return node
    for _ in range(HIGHEST):
        if not node["parent"] or node["parent"]["right"] != node:
            break
        node = node["parent"]
    return node["parent"]


def tree_items(tree):
    node = tree["_first"]
    while node:
        yield node["item"]
        node = following(node)


def vector_items(vector):
    """Reads `QORVector::Block`: capacity, first, end and live as ints, two pointers, then the slots."""
    block = vector["block"]
    if not block:
        return
    number = gdb.lookup_type("int")
    slot = gdb.lookup_type("void").pointer()
    address = int(block)
    first, end = (int(gdb.Value(address + place * number.sizeof).cast(number.pointer()).dereference()) for place in (1, 2))
    slots = gdb.Value(address + 4 * number.sizeof + 2 * slot.sizeof).cast(slot.pointer())
    for place in range(first, end):
        item = slots[place]
        if item:  # a slot is null after its item was removed
            yield item


def nary_text(container):
    size = int(container["size"])
    items = vector_items(container) if is_below(container.type, "QORVector") else tree_items(container)
    titles = [title_at(item) for item in itertools.islice(items, SHOWN)]
    rest = ", ..." if size > len(titles) else ""
    return f"{size} {{{', '.join(titles)}{rest}}}"




class ObjectPrinter:
    """An object: class and name; then, from the root class down, what it holds."""

    def __init__(self, value):
        self.value = most_derived(value)

    def to_string(self):
        return shown(lambda: title(self.value))

    def children(self):
        if self.value["id"]:
            yield "id", self.value["id"]
        yield from self.level(self.value, self.value.type.strip_typedefs())

    def level(self, value, kind):
        if kind.name == "QORObject":
            return
        own = [field for field in kind.fields() if not field.artificial and hasattr(field, "bitpos")]
        for field in own:
            if field.is_base_class:
                yield from self.level(value[field], field.type.strip_typedefs())
        for field in own:
            if not field.is_base_class and field.name and not field.name.startswith("_vptr"):
                yield from self.member(kind, field, value[field])

    def member(self, kind, field, value):
        """One member, unless it is one of the library's classes and isn't set."""
        if not LIBRARY_CLASS.fullmatch(kind.name or "") or not field.name.endswith("_"):
            yield field.name, value
            return
        role, code, name = field.name[:-1], field.type.strip_typedefs().code, name_of(field.type)
        if name.startswith("QORNoDestructor<"):
            if int(value["container"]["size"]):
                yield role, shown(lambda: nary_text(value["container"]))
        elif name == "QORHeldEnd" or code == gdb.TYPE_CODE_PTR:
            far = value["far"] if name == "QORHeldEnd" else value
            if far:
                yield role, title_at(far)
        elif code == gdb.TYPE_CODE_ENUM:
            yield role, str(value).rpartition("::")[2]
        elif name == "QORString" and int(value["length"]) or name == "QORDate" and date_text(value):
            yield role, value
        elif code != gdb.TYPE_CODE_STRUCT and value:
            yield role, value


class StringPrinter:
    """A text."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return self.value["chars"].lazy_string(length=int(self.value["length"]))

    def display_hint(self):
        return "string"


def date_text(value):
    """The text of a date; empty if it is unset."""
    text = value["text"].string()
    return "" if text == "00:00:00 " else text


class DatePrinter:
    """A date and time."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        return date_text(self.value) or "unset"


class EndPrinter:
    """A field of a link end by itself."""

    def __init__(self, value):
        self.value = value

    def to_string(self):
        if name_of(self.value.type) == "QORHeldEnd":
            return title_at(self.value["far"]) if self.value["far"] else "unset"
        return shown(lambda: nary_text(self.value["container"]))


class Printers(gdb.printing.PrettyPrinter):
    """Finds the printer of a value by its type."""

    BY_NAME = {"QORString": StringPrinter, "QORDate": DatePrinter, "QORHeldEnd": EndPrinter}

    def __call__(self, value):
        kind = value.type.strip_typedefs()
        if kind.code != gdb.TYPE_CODE_STRUCT:
            return None
        name = name_of(kind)
        if name.startswith("QORNoDestructor<"):
            return EndPrinter(value)
        if name in self.BY_NAME:
            return self.BY_NAME[name](value)
        return ObjectPrinter(value) if is_below(kind, "QORObject") else None


gdb.printing.register_pretty_printer(gdb.current_objfile(), Printers("libQOR"), replace=True)
