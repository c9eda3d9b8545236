"""The class tables: reads <folder>/QORX.toml of every folder and checks them against each other."""

import re
import tomllib
from dataclasses import dataclass, field
from pathlib import Path

from enumerations import TableError

FOLDERS = ("kernel", "model", "olap", "mapping", "report", "directory", "diagram")
CLASS_KEYS = {"class", "doc", "id", "base", "abstract", "handwritten", "fields", "attribute", "link", "custom"}
ATTRIBUTE_KEYS = {"id", "name", "type", "default", "first", "compare", "assign", "accessor", "virtual_setter", "doc"}
LINK_KEYS = {"id", "role", "kind", "far", "container", "view", "left_to_destructor", "find", "doc"}
CUSTOM_KEYS = {"member", "declare", "doc", "reason"}
# What the value of a key must be; a key that isn't named here holds a text.
TYPES = {
    "id": (int, "a number"), "abstract": (bool, "true or false"), "handwritten": (bool, "true or false"),
    "compare": (bool, "true or false"), "assign": (bool, "true or false"), "virtual_setter": (bool, "true or false"),
    "left_to_destructor": (bool, "true or false"), "find": (bool, "true or false"), "fields": (list, "a list"),
    "attribute": (list, "a list of tables"), "link": (list, "a list of tables"), "custom": (list, "a list of tables"),
}
NAME = re.compile(r"[a-z][A-Za-z0-9]*")
# Members that every class has anyway; a table may take them over as custom ones.
RECIPE_MEMBERS = {"constructor", "copy-constructor", "operator=", "finalEquals", "isolate", "setName"}
PLAIN_TYPES = {"bool", "short", "int", "QORString", "QORDate"}
KINDS = {"ref": "back-ref", "back-ref": "ref", "parent": "child", "child": "parent"}
TREES = {
    "QORPtrLinkTree", "QORNameLinkTree", "QOROptionalNameLinkTree", "QORNamePtrLinkTree",
    "QORNameElementTypeLinkTree", "QORTypeValueLinkTree", "QORFormatLinkTree", "QORModelElementLinkTree",
}
# The ends of a class and its bases: each has a bit in QORObject::linked, below QORRecipe::spare.
MAXIMAL_ENDS = 62
VECTORS = {"QORPtrLinkVector", "QORNameLinkVector"}
# Views that are other names of the one of QORFeature.
VIEW_ALIASES = {"QORAttributeByPosition", "QORSQLViewAttributeByPosition"}


def upper_first(name):
    return name[0].upper() + name[1:]


@dataclass
class Attribute:
    id: int
    name: str
    type: str
    default: str
    doc: str
    first: str
    compare: bool
    assign: bool
    accessor: str
    virtual_setter: bool

    @property
    def field(self):
        return self.name + "_"

    @property
    def is_enum(self):
        return self.type not in PLAIN_TYPES

    @property
    def by_reference(self):
        return self.type in ("QORString", "QORDate")


@dataclass
class Link:
    id: int
    role: str
    kind: str
    far_class: str
    far_role: str
    container: str | None
    view: str | None
    left_to_destructor: bool
    find: bool
    doc: str
    owner: "Class" = None
    far: "Link" = None
    enumerator: str = ""

    @property
    def field(self):
        return self.role + "_"

    @property
    def accessor(self):
        return upper_first(self.role)

    @property
    def shape(self):
        if self.container is None:
            return "UNARY"
        return "TREE" if self.container in TREES else "VECTOR"

    @property
    def held(self):
        """Whether this is a unary end that is answered by a tree."""
        return self.shape == "UNARY" and self.far.shape == "TREE"


@dataclass
class Class:
    path: Path
    folder: str
    name: str
    doc: str
    id: int
    base_name: str | None
    abstract: bool
    handwritten: bool
    fields: list
    attributes: list
    links: list
    custom: list
    base: "Class" = None
    enumerator: str = ""

    @property
    def display(self):
        return self.name.removeprefix("QOR")

    def is_custom(self, member):
        return any(entry.get("member") == member for entry in self.custom)

    def attributes_in_field_order(self):
        return sorted(self.attributes, key=lambda a: self.fields.index(a.name))

    def links_in_field_order(self):
        return sorted(self.links, key=lambda link: self.fields.index(link.role))

    def lineage(self):
        """This class and its bases, up to the root."""
        level = self
        while level:
            yield level
            level = level.base


@dataclass
class Metamodel:
    classes: list
    enumerations: dict
    by_name: dict = field(default_factory=dict)
    links: list = field(default_factory=list)


def load(root, enumerations) -> Metamodel:
    """Reads all class tables below `root`; raises TableError for the first thing that is wrong."""
    texts = {entry["name"]: entry["texts"] for entry in enumerations["enumeration"]}
    model = Metamodel([], texts)
    for folder in FOLDERS:
        for path in sorted((root / folder).glob("*.toml")):
            _add(model, _read(path, folder))
    model.classes.sort(key=lambda c: c.name)
    for cls in model.classes:
        _resolve_base(model, cls)
    for cls in model.classes:
        _check_class(model, cls)
    _check_ids(model)
    model.links = [link for cls in model.classes for link in cls.links_in_field_order()]
    for link in model.links:
        _resolve_far(model, link)
    for link in model.links:
        _check_answer(model, link)
    for cls in model.classes:
        _check_custom(root, cls)
    _check_units(root, model)
    return model


def _read(path, folder) -> Class:
    try:
        table = tomllib.loads(path.read_text(encoding="utf-8"))
    except (tomllib.TOMLDecodeError, UnicodeDecodeError) as error:
        raise TableError(path, "file", f"is not TOML: {error}") from error
    _check_keys(path, "class", table, CLASS_KEYS, {"class", "doc", "id"})
    cls = Class(path, folder, table["class"], table["doc"], table["id"], table.get("base"),
                table.get("abstract", False), table.get("handwritten", False), table.get("fields", []), [], [],
                table.get("custom", []))
    if path.stem != cls.name:
        raise TableError(path, "class", f"'{cls.name}' stands in a file of another name")
    for entry in table.get("attribute", []):
        cls.attributes.append(_read_attribute(path, entry))
    for entry in table.get("link", []):
        cls.links.append(_read_link(path, entry))
        cls.links[-1].owner = cls
    for entry in cls.custom:
        what = _entry_name("custom", entry, "member", "declare")
        _check_keys(path, what, entry, CUSTOM_KEYS, {"reason"})
        if ("member" in entry) == ("declare" in entry):
            raise TableError(path, what, "needs either 'member' or 'declare'")
        if "declare" in entry and member_name(entry["declare"]) is None:
            raise TableError(path, what, "declares no member function")
        if "declare" in entry and not entry.get("doc", "").strip():
            raise TableError(path, what, "missing doc")
    return cls


def _check_keys(path, entry, table, known, needed):
    if not isinstance(table, dict):
        raise TableError(path, entry, "is not a table")
    for key, value in table.items():
        if key not in known:
            raise TableError(path, entry, f"unknown key '{key}'")
        kind, what = TYPES.get(key, (str, "a text"))
        if type(value) is not kind:
            raise TableError(path, entry, "missing doc" if key == "doc" else f"'{key}' must be {what}")
    for key in sorted(needed):
        if key not in table:
            raise TableError(path, entry, f"missing {key}")
    doc = table.get("doc")
    if "doc" in needed and (not isinstance(doc, str) or not doc.strip()):
        raise TableError(path, entry, "missing doc")
    if isinstance(doc, str) and (len(doc.splitlines()) > 1 or doc.endswith("\\")):
        raise TableError(path, entry, "doc must be one line that a comment can hold")


def _entry_name(kind, entry, *keys):
    """How an error calls an entry: its kind and its name, as far as it has one."""
    names = [entry[key] for key in keys if isinstance(entry.get(key), str)] if isinstance(entry, dict) else []
    return " ".join([kind, *names[:1]]).strip()


def _check_form(path, entry, name):
    if not NAME.fullmatch(name):
        raise TableError(path, entry, "name must begin with a small letter and hold letters and digits only")


def _read_attribute(path, entry) -> Attribute:
    what = _entry_name("attribute", entry, "name")
    _check_keys(path, what, entry, ATTRIBUTE_KEYS, {"id", "name", "type", "default", "doc"})
    _check_form(path, what, entry["name"])
    return Attribute(entry["id"], entry["name"], entry["type"], entry["default"], entry["doc"],
                     entry.get("first", entry["default"]), entry.get("compare", entry["type"] != "QORDate"),
                     entry.get("assign", True), entry.get("accessor", upper_first(entry["name"])),
                     entry.get("virtual_setter", False))


def _read_link(path, entry) -> Link:
    what = _entry_name("link", entry, "role")
    _check_keys(path, what, entry, LINK_KEYS, {"id", "role", "kind", "far", "doc"})
    _check_form(path, what, entry["role"])
    if entry["kind"] not in KINDS:
        raise TableError(path, what, f"unknown kind '{entry['kind']}'")
    container = entry.get("container")
    if container is not None and container not in TREES | VECTORS:
        raise TableError(path, what, f"unknown container '{container}'")
    if entry["far"].count(".") != 1:
        raise TableError(path, what, "far must have the form QORClass.role")
    if container and entry["kind"] == "parent":
        raise TableError(path, what, "an end of kind parent is unary")
    for key in ("view", "find", "left_to_destructor"):
        if key in entry and not container:
            raise TableError(path, what, f"'{key}' needs a container")
    far_class, far_role = entry["far"].split(".")
    return Link(entry["id"], entry["role"], entry["kind"], far_class, far_role, container, entry.get("view"),
                entry.get("left_to_destructor", False), entry.get("find", False), entry["doc"])


def _add(model, cls):
    if cls.name in model.by_name:
        raise TableError(cls.path, "class", f"'{cls.name}' has a table in {model.by_name[cls.name].path} too")
    model.by_name[cls.name] = cls
    model.classes.append(cls)


def _resolve_base(model, cls):
    if cls.base_name is None:
        if cls.name != "QORObject":
            raise TableError(cls.path, "base", "missing base")
        return
    cls.base = model.by_name.get(cls.base_name)
    if cls.base is None:
        raise TableError(cls.path, "base", f"unknown class '{cls.base_name}'")
    seen = {cls.name}
    for level in list(_bases(model, cls)):
        if level in seen:
            raise TableError(cls.path, "base", "the bases go round in a circle")
        seen.add(level)


def _bases(model, cls):
    name = cls.base_name
    steps = 0
    while name and steps <= len(model.classes):
        yield name
        name = model.by_name[name].base_name if name in model.by_name else None
        steps += 1


def _text_of(model, enumeration, path, entry, number):
    texts = model.enumerations.get(enumeration, [])
    if not 0 <= number < len(texts) or texts[number] == "":
        raise TableError(path, entry, f"id {number} is not in use in {enumeration}")
    return texts[number]


def _check_name(path, entry, text, cls, name):
    prefix = cls.enumerator + "__"
    if not text.startswith(prefix) or text[len(prefix):].replace("_", "") != name.upper():
        raise TableError(path, entry, f"id belongs to {text}")


def _check_class(model, cls):
    cls.enumerator = _text_of(model, "QORElementType", cls.path, "class", cls.id)
    if cls.enumerator.replace("_", "") != cls.display.upper():
        raise TableError(cls.path, "class", f"id {cls.id} belongs to {cls.enumerator}")
    _check_fields(cls)
    for attribute in cls.attributes:
        _check_attribute(model, cls, attribute)
    for link in cls.links:
        entry = f"link {link.role}"
        link.enumerator = _text_of(model, "QORAssociationType", cls.path, entry, link.id)
        _check_name(cls.path, entry, link.enumerator, cls, link.role)
    ends = sum(len(each.links) for each in cls.lineage())
    if ends > MAXIMAL_ENDS:
        raise TableError(cls.path, "class", f"has {ends} link ends with those of its bases; {MAXIMAL_ENDS} is the limit")


def _check_fields(cls):
    entries = {}
    for name, entry in [(a.name, "attribute") for a in cls.attributes] + [(link.role, "link") for link in cls.links]:
        if name in entries:
            raise TableError(cls.path, f"{entry} {name}", "the name stands twice in the class")
        entries[name] = entry
    for name in entries:
        if cls.fields.count(name) != 1:
            raise TableError(cls.path, "fields", f"must list '{name}' once")
    for name in cls.fields:
        if name not in entries:
            raise TableError(cls.path, "fields", f"'{name}' is no attribute or role of the class")


def _check_attribute(model, cls, attribute):
    entry = f"attribute {attribute.name}"
    text = _text_of(model, "QORAttributeType", cls.path, entry, attribute.id)
    _check_name(cls.path, entry, text, cls, attribute.name)
    if attribute.is_enum and attribute.type not in model.enumerations:
        raise TableError(cls.path, entry, f"unknown type '{attribute.type}'")
    for value in (attribute.default, attribute.first):
        if not _fits(model, attribute.type, value):
            raise TableError(cls.path, entry, f"{value!r} is no value of {attribute.type}")


def _fits(model, kind, value):
    if kind == "bool":
        return value in ("true", "false")
    if kind in ("short", "int"):
        limit = 2**15 if kind == "short" else 2**31
        return re.fullmatch(r"-?\d+", value) is not None and -limit <= int(value) < limit
    if kind == "QORDate":
        return value == "00:00:00 "
    if kind == "QORString":
        return value.isprintable()
    return value != "" and value in model.enumerations[kind]


def _check_ids(model):
    used = {"class": {}, "attribute": {}, "link": {}}
    for cls in model.classes:
        entries = [("class", cls.id, "class")]
        entries += [("attribute", a.id, f"attribute {a.name}") for a in cls.attributes]
        entries += [("link", link.id, f"link {link.role}") for link in cls.links]
        for kind, number, entry in entries:
            if number in used[kind]:
                raise TableError(cls.path, entry, f"id {number} is used by {used[kind][number]} too")
            used[kind][number] = f"{cls.name} ({entry})"


def _resolve_far(model, link):
    path, entry = link.owner.path, f"link {link.role}"
    far_class = model.by_name.get(link.far_class)
    if far_class is None:
        raise TableError(path, entry, f"unknown class '{link.far_class}'")
    link.far = next((each for each in far_class.links if each.role == link.far_role), None)
    if link.far is None:
        raise TableError(path, entry, f"{link.far_class} has no end '{link.far_role}'")


def _check_answer(model, link):
    path, entry = link.owner.path, f"link {link.role}"
    if (link.far.far_class, link.far.far_role) != (link.owner.name, link.role):
        raise TableError(path, entry, f"{link.far_class}.{link.far_role} answers another end")
    if link.far.kind != KINDS[link.kind]:
        raise TableError(path, entry, f"{link.kind} is answered by {link.far.kind}")
    if link.view and link.view not in VIEW_ALIASES and link.view not in {f"{c.name}ByPosition" for c in views(model)}:
        raise TableError(path, entry, f"unknown view '{link.view}'")
    if link.left_to_destructor and link.kind != "child":
        raise TableError(path, entry, "only a child end can be left to the destructor")


def _check_custom(root, cls):
    unit = root / cls.folder / f"{cls.name}.cpp"
    setters = {"set" + a.accessor for a in cls.attributes}
    source = unit.read_text(encoding="utf-8") if unit.exists() else ""
    for entry in cls.custom:
        member = entry.get("member") or member_name(entry["declare"])
        what = f"custom {member}"
        if "member" in entry and member not in RECIPE_MEMBERS | setters:
            raise TableError(cls.path, what, "no member of that name is generated; use 'declare'")
        if "declare" in entry and re.search(r"=\s*0$", entry["declare"]):
            continue
        if not _defines(source, cls.name, member):
            raise TableError(cls.path, what, f"nothing in {cls.folder}/{cls.name}.cpp defines it")


def member_name(declaration):
    """The name of the member that a declaration declares; None if that is no function."""
    found = re.search(r"([\w~]+|operator\S+)\s*\(", declaration)
    return found and found.group(1)


def _defines(source, name, member):
    if member == "constructor":
        return re.search(rf"\b{name}::{name}\(\)", source) is not None
    if member == "copy-constructor":
        return re.search(rf"\b{name}::{name}\({name} const&", source) is not None
    return re.search(rf"\b{name}::{re.escape(member)}\(", source) is not None


def views(model):
    """The classes with a short attribute `position`: each has a view sorted by it."""
    return [c for c in model.classes if any(a.name == "position" and a.type == "short" for a in c.attributes)]


def _check_units(root, model):
    for folder in FOLDERS[1:]:
        for unit in sorted((root / folder).glob("QOR*.cpp")):
            if unit.stem.endswith("LinkTree"):
                continue  # the order of a container, which reads attributes of classes
            cls = model.by_name.get(unit.stem)
            if cls is None or cls.folder != folder:
                raise TableError(unit, "unit", "no table stands beside it")
            if not cls.custom:
                raise TableError(unit, "unit", "its table names no custom member")
