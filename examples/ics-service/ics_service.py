#!/usr/bin/python3
"""A service for the Vamba day widget over folders of .ics files, as vdirsyncer and calendar programs keep them.

It answers the three resources of docs/service.md on loopback: meetings are the events with a time, tasks the todos with
a due date, and the inbox is empty. A file is read again once it has changed. One that cannot be read is named on
standard error and passed over.
"""

import argparse
import datetime
import hmac
import http.server
import json
import os
import pathlib
import secrets
import stat
import sys
import threading
import uuid
import zlib

import icalendar
import recurring_ical_events

LARGEST_FILE = 16 << 20
# Reaches the end of tomorrow in every time zone.
DAYS_AHEAD = 3
NAMESPACE = uuid.UUID("5b1f3b52-6f0e-4d0c-9a52-0d8f5f3a7c11")
# The parser drops a property that it cannot read. Without one of these an event would be shown at a wrong time.
NEEDED = {"DTSTART", "DTEND", "DUE", "DURATION", "RRULE", "RDATE", "EXDATE", "RECURRENCE-ID"}
STATUSES = {"COMPLETED": "zrobione", "CANCELLED": "odrzucone", "IN-PROCESS": "w_toku"}


def complain(sentence):
    print(f"ics-service: {sentence}", file=sys.stderr, flush=True)


def has_time(value):
    return isinstance(value, datetime.datetime)


def instant(value):
    """A date or time of a calendar as an instant. What names no zone is meant in the device's."""
    if not has_time(value):
        value = datetime.datetime(value.year, value.month, value.day)
    return value.astimezone(datetime.timezone.utc)


def written(moment):
    # strftime() does not pad years before 1000.
    return moment.replace(tzinfo=None).isoformat(timespec="seconds") + "Z"


def text(component, name, default=""):
    return str(component.get(name, default)).strip() or default


def identity(*parts):
    return str(uuid.uuid5(NAMESPACE, "/".join(parts)))


class Calendar:
    """One .ics file."""

    def __init__(self, path):
        if path.stat().st_size > LARGEST_FILE:
            raise ValueError("the file is larger than 16 MiB")
        self.components = icalendar.Calendar.from_ical(path.read_bytes(), multiple=True)
        if not self.components:
            raise ValueError("the file holds no calendar")
        for component in self.components:
            for part in component.walk():
                for name, fault in getattr(part, "errors", []):
                    if name in NEEDED:
                        raise ValueError(f"{name}: {fault}")
        self.name = next((text(each, "X-WR-CALNAME") for each in self.components if "X-WR-CALNAME" in each), "")
        self.name = self.name or self.name_of(path.parent)

    @staticmethod
    def name_of(folder):
        """As vdirsyncer keeps it, else the folder's own."""
        try:
            name = (folder / "displayname").read_text(encoding="utf-8").strip()
        except (OSError, UnicodeDecodeError):
            name = ""
        # A folder's name can be any bytes, but an answer is UTF-8.
        return name or os.fsencode(folder.name).decode("utf-8", "replace")

    def meetings(self, begin, end):
        for component in self.components:
            for event in recurring_ical_events.of(component).between(begin, end):
                start = event["DTSTART"].dt
                if not has_time(start) or text(event, "STATUS").upper() == "CANCELLED":
                    continue
                moment = instant(start)
                lasts = instant(event["DTEND"].dt) - moment
                yield {
                    "id": identity(text(event, "UID"), written(moment)),
                    "tytul": text(event, "SUMMARY", "(bez tytułu)"),
                    "kiedy": written(moment),
                    "czas_trwania_min": max(0, round(lasts.total_seconds() / 60)),
                    "projekt_nazwa": self.name,
                }

    def tasks(self):
        for component in self.components:
            for todo in component.walk("VTODO"):
                if "DUE" in todo:
                    due = todo["DUE"].dt
                elif "DTSTART" in todo and "DURATION" in todo:
                    due = todo["DTSTART"].dt + todo["DURATION"].dt
                else:
                    continue
                uid = text(todo, "UID")
                done = "COMPLETED" in todo or text(todo, "PERCENT-COMPLETE") == "100"
                status = text(todo, "STATUS").upper()
                yield {
                    "id": identity(uid, written(instant(due))),
                    "numer": zlib.crc32(uid.encode()) % 900 + 100,
                    "tytul": text(todo, "SUMMARY", "(bez tytułu)"),
                    "termin": written(instant(due)),
                    "status": "zrobione" if done else STATUSES.get(status, "otwarte"),
                    "projekt_nazwa": self.name,
                }


class Folders:
    """The calendars of some folders. A file is parsed again once it has changed."""

    def __init__(self, roots, now):
        self.roots, self.now = roots, now
        self.entries = {}  # path: (stamp, calendar, or None for a bad file)
        self.lock = threading.Lock()  # several requests of the widget run at once

    def paths(self):
        """Of all that is named as a calendar. Folders that cannot be read are left out."""
        found = {pathlib.Path(folder, name) for root in self.roots for folder, _, names in os.walk(root)
                 for name in names if name.endswith(".ics")}
        return sorted(found)

    def current_entries(self):
        with self.lock:
            known, self.entries = self.entries, {}
            for path in self.paths():
                entry = (None, None)
                try:
                    status = path.stat()
                    if not stat.S_ISREG(status.st_mode):
                        continue
                    entry = ((status.st_mtime_ns, status.st_size, status.st_ino), None)
                    if path in known and known[path][0] == entry[0]:
                        self.entries[path] = known[path]
                    else:
                        self.entries[path] = (entry[0], Calendar(path))
                except FileNotFoundError:  # removed in the meantime, or a link to nothing
                    continue
                except Exception as fault:  # whatever the parser stumbles over
                    self.entries[path] = entry
                    if known.get(path) != entry:
                        complain(f"{path} is passed over: {fault}")
            return dict(self.entries)

    def collect(self, records_of):
        records = []
        for path, entry in self.current_entries().items():
            try:
                records += records_of(entry[1]) if entry[1] else []
            except Exception as fault:
                self.pass_over(path, entry, fault)
        return records

    def pass_over(self, path, entry, fault):
        """Unless the file has changed or is gone by now."""
        with self.lock:
            if self.entries.get(path) is entry:
                self.entries[path] = (entry[0], None)
                complain(f"{path} is passed over: {type(fault).__name__}: {fault}")

    def meetings(self):
        begin = self.now()
        end = begin + datetime.timedelta(days=DAYS_AHEAD)
        found = self.collect(lambda calendar: list(calendar.meetings(begin, end)))
        return sorted(found, key=lambda meeting: (meeting["kiedy"], meeting["tytul"]))

    def tasks(self):
        found = self.collect(lambda calendar: list(calendar.tasks()))
        return sorted(found, key=lambda task: (task["termin"], task["tytul"]))


class Handler(http.server.BaseHTTPRequestHandler):
    """`folders` and `token` are set by `serve`."""

    protocol_version = "HTTP/1.1"
    server_version = "ics-service"

    def do_GET(self):
        resources = {
            "/api/moje/zadania": self.folders.tasks,
            "/api/skrzynka": lambda: {"zadania": []},
            "/api/spotkania-planowane": self.folders.meetings,
        }
        given = self.headers.get("Authorization", "").encode("utf-8", "replace")
        if not hmac.compare_digest(given, f"Bearer {self.token}".encode()):
            self.answer(401, {"error": "the token is not the one that this service printed"})
        elif self.path not in resources:
            self.answer(404, {"error": "no such resource"})
        else:
            self.answer(200, resources[self.path]())

    def answer(self, status, value):
        body = json.dumps(value, ensure_ascii=False).encode()
        self.send_response(status)
        self.send_header("Content-Type", "application/json")
        self.send_header("Content-Length", str(len(body)))
        self.end_headers()
        self.wfile.write(body)

    def log_message(self, *_):
        pass


def moment(word):
    parsed = datetime.datetime.fromisoformat(word.replace("Z", "+00:00"))
    if parsed.tzinfo is None:
        raise ValueError("an instant needs a zone")
    return parsed.astimezone(datetime.timezone.utc)


def port(word):
    number = int(word)
    if not 0 <= number <= 65535:
        raise argparse.ArgumentTypeError("a port is a number from 0 to 65535")
    return number


def main():
    parser = argparse.ArgumentParser(
        description="Answers the widget's three resources from folders of .ics files, on loopback. Prints its address "
        "and the token that it asks for, each on a line, once it listens. Ends on SIGINT or SIGTERM.")
    parser.add_argument("folders", nargs="+", metavar="FOLDER", type=pathlib.Path, help="with .ics files, at any depth")
    parser.add_argument("--port", type=port, default=0, help="of 127.0.0.1 (default: a free one)")
    parser.add_argument("--now", type=moment, metavar="INSTANT", help="instead of the clock, such as 2025-03-14T08:00:00Z")
    parser.add_argument("--until-input-ends", action="store_true", help="end also when standard input does")
    arguments = parser.parse_args()
    for folder in arguments.folders:
        if not folder.is_dir():
            parser.error(f"{folder} is not a folder")

    fixed = arguments.now
    now = (lambda: fixed) if fixed else lambda: datetime.datetime.now(datetime.timezone.utc)
    Handler.folders = Folders(arguments.folders, now)
    Handler.token = secrets.token_hex(16)
    try:
        server = http.server.ThreadingHTTPServer(("127.0.0.1", arguments.port), Handler)
    except OSError as fault:
        complain(f"port {arguments.port} cannot be used: {fault.strerror}")
        return 1
    server.daemon_threads = True
    print(f"http://127.0.0.1:{server.server_port}/api", Handler.token, sep="\n", flush=True)
    if arguments.until_input_ends:
        threading.Thread(target=lambda: (sys.stdin.buffer.read(), server.shutdown()), daemon=True).start()
    try:
        server.serve_forever()
    except KeyboardInterrupt:
        pass
    return 0


if __name__ == "__main__":
    sys.exit(main())
