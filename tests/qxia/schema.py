"""Holds a JSON text against a schema; says what does not fit, and ends with 1 then.

usage: schema.py SCHEMA FILE
"""
import json
import sys

import jsonschema


def main():
    with open(sys.argv[1], encoding='utf-8') as text:
        schema = json.load(text)
    with open(sys.argv[2], encoding='utf-8') as text:
        instance = json.load(text)
    jsonschema.Draft7Validator.check_schema(schema)
    errors = list(jsonschema.Draft7Validator(schema).iter_errors(instance))
    for error in errors:
        print('/'.join(map(str, error.absolute_path)) or '(the whole)', error.message)
    sys.exit(1 if errors else 0)


main()
