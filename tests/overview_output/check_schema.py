"""Holds JSON outputs against the schema: check_schema.py SCHEMA OUTPUT..."""
import copy
import json
import sys

import jsonschema


def objects_of(schema):
    """Every schema of an object within a schema."""
    if isinstance(schema, dict):
        if schema.get("type") == "object":
            yield schema
        for value in schema.values():
            yield from objects_of(value)
    elif isinstance(schema, list):
        for value in schema:
            yield from objects_of(value)


def objects_within(value, place=()):
    """Every object within an output, and its place: the names of the members that lead to it."""
    if isinstance(value, dict):
        yield value, place
        for name, member in value.items():
            yield from objects_within(member, place + (name,))
    elif isinstance(value, list):
        for member in value:
            yield from objects_within(member, place)


def refuse_constant(name):
    raise ValueError(f"{name} is no JSON")


with open(sys.argv[1], encoding="utf-8") as file:
    schema = json.load(file)
validator_class = jsonschema.validators.validator_for(schema)
validator_class.check_schema(schema)
validator = validator_class(schema)
failures = 0
changed_kinds = set()


def expect(condition, what):
    global failures
    if not condition:
        print(what)
        failures += 1


for described in objects_of(schema):
    expect(described.get("additionalProperties") is False, f"more is allowed in {described.get('properties')}")
    expect(described.get("required") == list(described["properties"]), f"less is allowed in {described['properties']}")
    for name, member in described["properties"].items():
        expect("description" in member or "$ref" in member, f"{name} is not described")

for path in sys.argv[2:]:
    with open(path, encoding="utf-8") as file:
        output = json.load(file, parse_constant=refuse_constant)
    for error in validator.iter_errors(output):
        expect(False, f"{path}: {list(error.absolute_path)}: {error.message}")
    expect(list(output) == schema["required"], f"{path}: members are not in the order of the schema")

    # One member more, one less, or one of another kind is noticed in every kind of object.
    for position, (described, place) in enumerate(objects_within(output)):
        kind = place, tuple(described)
        if kind in changed_kinds:
            continue
        changed_kinds.add(kind)
        for change in ("more", "less", "other"):
            changed = copy.deepcopy(output)
            target = list(objects_within(changed))[position][0]
            name = next(iter(target))
            if change == "more":
                target["surplus"] = 1
            elif change == "less":
                del target[name]
            else:
                target[name] = {"of": "another kind"}
            expect(not validator.is_valid(changed), f"{path}: {change} at {name} is not noticed")

sys.exit(1 if failures else 0)
