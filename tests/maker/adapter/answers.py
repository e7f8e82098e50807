# answers.py SCHEMA NAME: whether each line of standard input is an object as the schema has it under that name, or, for
# several names joined by "|", under one of them. Prints what is wrong.
import json
import sys

import jsonschema

with open(sys.argv[1], encoding="utf-8") as file:
    schema = json.load(file)
jsonschema.Draft7Validator.check_schema(schema)
names = sys.argv[2].split("|")
checked = {"definitions": schema["definitions"], "anyOf": [{"$ref": "#/definitions/" + name} for name in names]}
validator = jsonschema.Draft7Validator(checked)
lines = [line for line in sys.stdin if line.strip()]
problems = [] if lines else ["nothing was answered"]
for line in lines:
    try:
        answer = json.loads(line)
    except ValueError as problem:
        problems.append(f"{problem}: {line}")
        continue
    for problem in validator.iter_errors(answer):
        told = problem.context or [problem]
        problems += [f"{'/'.join(map(str, each.absolute_path))}: {each.message}" for each in told]
print("\n".join(problems), end="")
sys.exit(1 if problems else 0)
