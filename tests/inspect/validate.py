"""Tests JSON on standard input, an array of pairs of a schema's path and an answer, each against its schema. Prints what is
wrong with each answer, the number of the pair first; the exit status tells whether anything is."""
import json
import sys

from jsonschema import Draft202012Validator

found = False
for number, (path, answer) in enumerate(json.load(sys.stdin)):
    with open(path, encoding="utf-8") as file:
        schema = json.load(file)
    Draft202012Validator.check_schema(schema)
    for error in Draft202012Validator(schema).iter_errors(answer):
        print(number, "/".join(map(str, error.absolute_path)), error.message)
        found = True
sys.exit(found)
