"""The schemas of the files that the program hands over, and what is wrong with a file by them."""
import json
import pathlib

import jsonschema

FOLDER = pathlib.Path(__file__).resolve().parents[2] / "docs" / "schemas"
NAMES = ("photon-selected", "photon-search", "stations", "import-choice")


def schema(name):
    return json.loads((FOLDER / f"{name}.schema.json").read_text(encoding="utf-8"))


def example_bytes(name):
    return (FOLDER / "examples" / f"{name}.json").read_bytes()


def example(name):
    return read(example_bytes(name).decode("utf-8"))


def read(text):
    """The document, read as strictly as JSON is meant: no NaN, no member twice."""
    def no_constant(constant):
        raise ValueError(f"{constant} is no JSON")

    def once(pairs):
        members = dict(pairs)
        if len(members) != len(pairs):
            raise ValueError(f"a member stands twice: {[key for key, _ in pairs]}")
        return members
    return json.loads(text, parse_constant=no_constant, object_pairs_hook=once)


def problems(name, document):
    """What the schema of that name has against the document, a line each; nothing if it fits."""
    found = jsonschema.Draft202012Validator(schema(name)).iter_errors(document)
    return [f"{error.json_path}: {error.message}" for error in found]
