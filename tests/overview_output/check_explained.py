"""Every member of the JSON is explained: check_explained.py SCHEMA EXPLANATION

The explanation names each, as code, in the section of its top-level member or in the introduction.
"""
import json
import re
import sys


def names_of(schema, definitions, seen=()):
    """The names of the members of an object, and of all objects in it."""
    if isinstance(schema, list):
        return set().union(*(names_of(each, definitions, seen) for each in schema))
    if not isinstance(schema, dict):
        return set()
    names = set(schema.get("properties", {}))
    reference = schema.get("$ref")
    if reference and reference not in seen:
        names |= names_of(definitions[reference.rsplit("/", 1)[1]], definitions, (*seen, reference))
    return names.union(*(names_of(each, definitions, seen) for each in schema.values()))


def words_in_code(text):
    return {word for code in re.findall(r"`([^`]+)`", text) for word in re.findall(r"\w+", code)}


with open(sys.argv[1], encoding="utf-8") as file:
    schema = json.load(file)
with open(sys.argv[2], encoding="utf-8") as file:
    introduction, *sections = re.split(r"^## ", file.read(), flags=re.MULTILINE)
definitions = schema.get("$defs", schema.get("definitions", {}))


def section_of(member):
    """The one whose heading has the name, else the first that names it, else the introduction."""
    headed = [section for section in sections if member in re.findall(r"\w+", section.split("\n")[0])]
    naming = [section for section in sections if member in words_in_code(section)]
    return (headed + naming + [introduction])[0]


failures = 0
checked = 0
for member, described in schema["properties"].items():
    known = words_in_code(section_of(member)) | words_in_code(introduction)
    wanted = names_of(described, definitions)
    checked += len(wanted)
    if missing := sorted(wanted - known):
        print(f"{member}: not explained: {', '.join(missing)}")
        failures += 1
    if section_of(member) is introduction and member not in known:
        print(f"{member} has no section and is not in the introduction")
        failures += 1
if checked < 150:
    print(f"only {checked} names were found: this check looks in the wrong place")
    failures += 1
sys.exit(1 if failures else 0)
