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


def objects_within(value):
    """Every object within an output."""
    if isinstance(value, dict):
        yield value
        for member in value.values():
            yield from objects_within(member)
    elif isinstance(value, list):
        for member in value:
            yield from objects_within(member)


def refuse_constant(name):
    raise ValueError(f"{name} is no JSON")


with open(sys.argv[1], encoding="utf-8") as file:
    schema = json.load(file)
validator_class = jsonschema.validators.validator_for(schema)
validator_class.check_schema(schema)
validator = validator_class(schema)
failures = 0


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

    # One member more, one less, or one of another kind is noticed wherever it is.
    count = len(list(objects_within(output)))
    for position in range(count):
        for change in ("more", "less", "other"):
            changed = copy.deepcopy(output)
            target = list(objects_within(changed))[position]
            name = next(iter(target))
            if change == "more":
                target["surplus"] = 1
            elif change == "less":
                del target[name]
            else:
                target[name] = {"of": "another kind"}
            expect(not validator.is_valid(changed), f"{path}: {change} at {name} is not noticed")

sys.exit(1 if failures else 0)
