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
# What has no macro: a set of fields of its own, or a choice.
CORES = {"cSmlTime": "TimeFields", "cSmlListType": "ListTypeFields", "cSmlValue": "ValueCore",
         "cSmlProcParValue": "ProcParValueCore"}


def read(name):
    with open(f"{root}/{name}", encoding="utf-8") as file:
        return re.sub(r"//.*|\\$", "", file.read(), flags=re.M)


source = re.sub(r"\s+", " ", " ".join(read(f"quarn/records/{name}.h") for name in HEADERS))
fields = {name: f"{label}: `{getter}`" for name, getter, label in
          re.findall(r"QUARN_FIELD\((\w+), (\w+), [\w: ]+, (\w+)\)", source)}
fields["SmlVersion"] = "smlVersion"
for name, setter in re.findall(r"QUARN_SETTER\((\w+), (\w+)\)", source):
    fields["Settable" + name] = f"{fields[name]}, `{setter}`"
tupel = {name: f"{label}: `Get{name}`, `Set{name}`" for name, label in
         re.findall(r"QUARN_TUPEL_FIELD\((\w+), [\w: ]+, (\w+)\)", source)}
tupel.update({"USV_" + name: f"unit_{name}, scaler_{name}, value_{name}: `GetUSV_{name}`, `SetUSV_{name}`"
              for name in re.findall(r"QUARN_TUPEL_TRIPLE\((\w+)\)", source)})


def operations(start):
    """Those of the class whose declaration starts so, each once."""
    body = source[source.index(start):]
    body = body[:body.index("}; ")]
    found = re.findall(r"bool ((?:Get|Set)\w*)\(", body.split("protected:")[0])
    return [f"`{name}`" for name in dict.fromkeys(found)]


def cell(name):
    element = re.search(rf"QUARN_LIST\({name}, \w+, [\w ]+, (\w+), \w+\)", source)
    if element:
        what = element[1]
        return f"{elements[name]}: `Get{what}Entry`, `Get{what}Count`, `Set{what}Entry`"
    if name in CORES:
        own = operations(f"class QUARN_API {name} ") if f"class QUARN_API {name} " in source else []
        inherited = operations(f"class {CORES[name]} ")
        named = re.findall(r"field::(\w+)", source[source.index(f"class {CORES[name]} "):][:200])
        told = [fields[field] for field in named if field in fields]
        return "; ".join(told + [", ".join(dict.fromkeys(inherited + own))])
    if name == "cSmlTupelEntry":
        declared, table = re.search(r"struct Fields : FieldSet<(.*?)> \{", source)[1], tupel
    else:
        declared = re.search(rf"QUARN_CLASS\( ?{name}, ?(Structure<.*?>) ?\)", source)
        declared = declared[1] if declared else re.search(r"using GetListRes = (Structure<.*?>);", source)[1]
        table = fields
    told = [table[word] for word in re.findall(r"\w+", declared) if word in table]
    return "; ".join(told)


descriptions = re.sub(r"\s+", " ", read("quarn/records/engine.cpp"))
classes = re.findall(r"<(cSml\w+)[^>]*>\(\{?\"\w+\", label::(\w+)", descriptions)
elements = dict(re.findall(r"Listed<(\w+)>\(\"\w+\", label::\w+, \{label::(\w+)", descriptions))
made = HEAD + "".join(f"| {label} | `{name}` | {cell(name)} |\n" for name, label in classes)

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
