#!/usr/bin/env python3
"""protocol_test.py BIN LIBEXEC DOCS: what the extension answers fits docs/protocol.schema.json, and the host of
docs/host-in-python.md draws the sample service's day."""

import copy
import json
import os
import pathlib
import re
import subprocess
import sys
import tempfile
import unittest

import jsonschema

BIN, LIBEXEC, DOCS = (pathlib.Path(argument).resolve() for argument in sys.argv[1:4])
EXTENSION = LIBEXEC / "vamba-widzety"
SCHEMA = json.loads((DOCS / "protocol.schema.json").read_text())
KIND = "pl.ferol.vamba.widzety.dzien"
FAMILIES = ("systemSmall", "systemMedium", "systemLarge")


def validator(name):
    schema = {"$schema": SCHEMA["$schema"], "$defs": SCHEMA["$defs"], "$ref": f"#/$defs/{name}"}
    return jsonschema.Draft202012Validator(schema)


class SignedIn:
    """The sample service, and the environment of a device that is signed in to it."""

    def __init__(self, *options):
        self.options = options

    def __enter__(self):
        self.folder = tempfile.TemporaryDirectory()
        # One zone for both, which are in the same day then.
        environment = dict(os.environ, TZ="Europe/Warsaw")
        self.service = subprocess.Popen([BIN / "vamba-sample-service", "--until-input-ends", *self.options],
                                        env=environment, stdin=subprocess.PIPE, stdout=subprocess.PIPE, text=True)
        address, token = (self.service.stdout.readline().rstrip("\n") for _ in range(2))
        items = pathlib.Path(self.folder.name) / "QX4R2M7K9A.pl.ferol.vamba" / "pl.ferol.vamba"
        items.mkdir(parents=True, mode=0o700)
        items.parent.chmod(0o700)
        for name, text in (("adres-api", address), ("token-urzadzenia", token)):
            (items / name).touch(mode=0o600)
            (items / name).write_text(text)
        return dict(environment, VAMBA_KEYCHAIN_DIR=self.folder.name, no_proxy="127.0.0.1")

    def __exit__(self, *_):
        self.service.communicate()
        self.folder.cleanup()


def answers(environment, requests):
    """The extension's results in the order of the requests; all are asked at once."""
    lines = [json.dumps({"jsonrpc": "2.0", "id": i, "method": method, "params": params})
             for i, (method, params) in enumerate(requests)]
    process = subprocess.Popen([EXTENSION], stdin=subprocess.PIPE, stdout=subprocess.PIPE, env=environment)
    process.stdin.write(("\n".join(lines) + "\n").encode())
    process.stdin.flush()
    results = {}
    while len(results) < len(requests):
        answer = json.loads(process.stdout.readline())
        results[answer["id"]] = answer["result"]
    process.communicate()
    return [results[i] for i in range(len(requests))]


def board(family, **more):
    return {"kind": KIND, "family": family, **more}


def texts(node):
    if node["type"] == "text":
        yield node
    for child in node.get("children", []):
        yield from texts(child)


class Schema(unittest.TestCase):
    def test_is_a_schema(self):
        jsonschema.Draft202012Validator.check_schema(SCHEMA)

    def test_fits_what_the_extension_answers(self):
        for day in ("full", "busy", "empty"):
            with SignedIn("--day", day) as environment:
                for language in ("pl", "en", "lt"):
                    environment["LANGUAGE"] = language
                    widgets, sample, timeline = answers(environment, [
                        ("widgets", {}), ("placeholder", board("systemSmall")), ("timeline", board("systemMedium"))])
                    validator("widgets").validate(widgets)
                    validator("entry").validate(sample["entry"])
                    validator("timeline").validate(timeline)
                    self.assertNotIn("blad", timeline["entries"][0])
                    views = answers(environment, [("render", board(family, entry=entry)) for family in FAMILIES
                                                  for entry in (sample["entry"], timeline["entries"][0])])
                    for view in views:
                        validator("node").validate(view["view"])

    def test_fits_an_entry_with_a_sentence(self):
        with SignedIn("--fault", "server-error") as environment:
            timeline, = answers(environment, [("timeline", board("systemMedium"))])
            validator("timeline").validate(timeline)
            self.assertIn("blad", timeline["entries"][0])

    def test_refuses_an_entry_or_view_that_lacks_a_key_or_holds_another_type(self):
        with tempfile.TemporaryDirectory() as empty:
            environment = dict(os.environ, VAMBA_KEYCHAIN_DIR=empty)
            sample, = answers(environment, [("placeholder", board("systemMedium"))])
            view, = answers(environment, [("render", board("systemMedium", entry=sample["entry"]))])
        entry, root = sample["entry"], view["view"]
        header = root["children"][0]
        for name, good, part, key in [
                ("entry", entry, entry, "date"), ("entry", entry, entry, "zadania"),
                ("entry", entry, entry["zadania"][0], "numer"), ("entry", entry, entry["spotkania"][0], "kiedy"),
                ("node", root, root, "type"), ("node", root, root, "children"), ("node", root, header, "alignment"),
                ("node", root, header["children"][0], "key"), ("node", root, header["children"][0], "value")]:
            self.assertTrue(validator(name).is_valid(good))
            kept = part.pop(key)
            self.assertFalse(validator(name).is_valid(good), f"without {key}")
            part[key] = {"of": "another type"}
            self.assertFalse(validator(name).is_valid(good), f"{key} of another type")
            part[key] = kept
        self.assertFalse(validator("entry").is_valid(dict(entry, date="2025-03-14")))
        self.assertFalse(validator("widgets").is_valid({}))

    def test_value_is_the_key_in_the_extensions_language(self):
        with tempfile.TemporaryDirectory() as empty:
            for language, expected in (("pl", "3 do decyzji"), ("en", "3 to decide"), ("lt", "Spręsti: 3")):
                environment = dict(os.environ, VAMBA_KEYCHAIN_DIR=empty, LANGUAGE=language)
                sample, = answers(environment, [("placeholder", board("systemMedium"))])
                view, = answers(environment, [("render", board("systemMedium", entry=sample["entry"]))])
                values = [text["value"] for text in texts(view["view"]) if "key" in text]
                self.assertEqual(values, ["Vamba", expected, "#12", "#15"])


class HostInPython(unittest.TestCase):
    def test_is_forty_lines_that_draw_the_day(self):
        program = re.search(r"```python\n(.*?)```", (DOCS / "host-in-python.md").read_text(), re.S).group(1)
        written = [line for line in program.splitlines() if line.strip()]
        self.assertLessEqual(len(written), 40)
        with SignedIn() as environment, tempfile.NamedTemporaryFile("w", suffix=".py") as file:
            file.write(program)
            file.flush()
            done = subprocess.run([sys.executable, file.name, EXTENSION], env=dict(environment, LANGUAGE="en"),
                                  stdin=subprocess.DEVNULL, capture_output=True, text=True, check=True)
        lines = done.stdout.splitlines()
        self.assertEqual(lines[0], "Vamba  4 to decide")
        self.assertIn("-" * 40, lines)
        self.assertTrue(any(line.startswith("#41  ") and line.endswith("  overdue") for line in lines), done.stdout)
        self.assertEqual(lines[-2], "and 3 more")
        self.assertRegex(lines[-1], r"^Ask again at \d{4}-.*Z$")

    def test_says_why_it_could_not_ask(self):
        program = re.search(r"```python\n(.*?)```", (DOCS / "host-in-python.md").read_text(), re.S).group(1)
        broken = program.replace('"timeline", **board', '"timeline", kind="other", family="systemMedium"')
        self.assertNotEqual(broken, program)
        done = subprocess.run([sys.executable, "-c", broken, EXTENSION], stdin=subprocess.DEVNULL, capture_output=True,
                              text=True)
        self.assertEqual((done.returncode, done.stderr), (1, "timeline: kind: not one of the extension's widgets\n"))


if __name__ == "__main__":
    unittest.main(argv=sys.argv[:1])
