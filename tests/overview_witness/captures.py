#!/usr/bin/env python3
"""Captures of real broadcasts: valid JSON, and the same counts as a count of its own.

captures.py PROGRAM SCHEMA RECORDING...: mpeg_ts_overview, docs/overview.schema.json, recordings that are in sync from
their first byte to their last. Those of the folder that the environment variable MPEG_TS_STREAMS names come too; of
them only the beginning is looked at. Exit status 77 when python3-jsonschema is not there.
"""
import json
import os
import subprocess
import sys

from transport_counts import Packets, expect_same_counts

MOST_BYTES = 192 * 204 * 188  # whole packets of each size


def captures():
    folder = os.environ.get("MPEG_TS_STREAMS")
    if not folder:
        return []
    paths = [os.path.join(place, name) for place, _, names in os.walk(folder) for name in names]
    return sorted(path for path in paths if path.endswith((".ts", ".m2ts", ".mts")))


def check(program, validator, path):
    with open(path, "rb") as file:
        recording = file.read(MOST_BYTES)
    shown = subprocess.run([program, "--json=-", "-"], input=recording, check=True, stdout=subprocess.PIPE,
                           timeout=600).stdout
    overview = json.loads(shown)
    validator.validate(overview)
    facts = overview["recording"]
    assert facts["bytes"] == len(recording)
    slots = facts["packets"] * facts["packet_size"]
    assert facts["leading_bytes"] + slots + facts["skipped_bytes"] + facts["trailing_bytes"] == facts["bytes"]
    bad_slots = facts["sync_byte_errors"] - 2 * facts["sync_losses"]
    assert sum(row["packets"] for row in overview["pids"]) + bad_slots == facts["packets"]
    if facts["leading_bytes"] or facts["sync_byte_errors"]:
        print(path, "is valid; it is not in sync throughout")
        return
    expect_same_counts(overview, Packets(recording))
    print(path, "agrees:", facts["packets"], "packets")


def main(program, schema_path, recordings):
    try:
        import jsonschema
    except ImportError:
        print("python3-jsonschema is not there")
        return 77
    with open(schema_path, encoding="utf-8") as file:
        schema = json.load(file)
    validator = jsonschema.validators.validator_for(schema)(schema)
    for path in [*recordings, *captures()]:
        check(program, validator, path)
    return 0


if __name__ == "__main__":
    sys.exit(main(sys.argv[1], sys.argv[2], sys.argv[3:]))
