#!/usr/bin/env python3
"""Holds the table of the record classes in docs/records.md against their headers: each class, the
label of its record, and of each field the label with its getter and setter.

    classes.py ROOT [--update]
"""
import re
import sys

root = sys.argv[1]
HEADERS = ["values", "entries", "lists", "tree", "bodies", "envelope"]
HEAD = "| label | class | label of a field: getter, setter |\n|---|---|---|\n"


def read(name):
    with open(f"{root}/{name}", encoding="utf-8") as file:
        return re.sub(r"\s+", " ", re.sub(r"//.*", "", file.read()))


# The label of each structure is that of its message, or what the first element that holds it has.
schema = read("quarn/foundation/schema.h")
labels = {name: label for label, name in re.findall(r'label::(\w+), "[^"]+", (k\w+)\}', schema)}
for name, label in re.findall(r"Of\((?:Tree::)?(k\w+), label::(\w+)\)", schema):
    labels.setdefault(name, label)
of_element = dict(re.findall(r"Element (k\w+) = .*?label::(\w+)", schema))
of_list = {name: of_element[element] for name, element in
           re.findall(r"(k\w+) = ListOf\((k\w+)\)", schema)}

source = " ".join(read(f"quarn/records/{name}.h") for name in HEADERS)
structures = dict(
    re.findall(r"using (\w+) = ObjectOf< ?CLASS_\w+, schema::(?:Tree::)?(k\w+)", source))
structures.update(TimeObject="kTime", ListTypeObject="kListType",
                  ProcParValueObject="kProcParValue")


def fields(body):
    """The fields of a class, each with its getter and setter; behind them the other operations."""
    found = {}
    getter_or_setter = r"bool ((?:Get|Set)\w*)\([^)]*\) (?:const )?noexcept \{(.*?)\}"
    for name, code in re.findall(getter_or_setter, body):
        told = re.findall(r"\b(?:Get|Set)<quarn::label::(\w+)>", code)
        own = ", ".join(told) if len(told) in (1, 3) else ""
        found.setdefault(own, [])
        if f"`{name}`" not in found[own]:
            found[own].append(f"`{name}`")
    others = found.pop("", [])
    return "; ".join([f"{label}: {', '.join(names)}" for label, names in found.items()] +
                     ([", ".join(others)] if others else []))


made = HEAD
for name, base, body in re.findall(r"class QUARN_API (\w+) : public quarn::detail::(.*?) ?\{ public: (.*?) \};", source):
    element = re.search(r"schema::(?:Tree::)?(k\w+)>", base)
    if element:
        names = re.findall(r"bool (\w+)\(", body)
        made += f"| {labels[element[1]]} | `{name}` | {of_list[element[1]]}: "
        made += ", ".join(f"`{each}`" for each in names) + " |\n"
    else:
        made += f"| {labels.get(structures.get(base), 'value')} | `{name}` | {fields(body)} |\n"

page_name = f"{root}/docs/records.md"
with open(page_name, encoding="utf-8") as file:
    page = file.read()
start = page.index(HEAD)
end = page.index("\n\n", start) + 1
if "--update" in sys.argv:
    with open(page_name, "w", encoding="utf-8") as file:
        file.write(page[:start] + made + page[end:])
elif page[start:end] != made:
    stale = [line for line in made.split("\n") if line not in page[start:end].split("\n")]
    sys.exit("docs/records.md does not tell of the classes as they are: classes.py ROOT --update\n" +
             "\n".join(stale))
