"""Tests JSON on standard input, an array of answers, against the schema named by the argument."""
import json
import sys

from jsonschema import Draft202012Validator

with open(sys.argv[1], encoding="utf-8") as file:
    schema = json.load(file)
Draft202012Validator.check_schema(schema)
found = False
for answer in json.load(sys.stdin):
    for error in Draft202012Validator(schema).iter_errors(answer):
        print("/".join(map(str, error.absolute_path)), error.message)
        found = True
sys.exit(found)
