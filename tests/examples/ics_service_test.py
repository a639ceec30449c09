#!/usr/bin/python3
"""ics_service_test.py SERVICE: the service of examples/ics-service over real files. Its clock is fixed by --now."""

import contextlib
import importlib.util
import io
import json
import os
import pathlib
import subprocess
import sys
import tempfile
import unittest
import urllib.error
import urllib.request

SERVICE = sys.argv.pop(1)
sys.dont_write_bytecode = True  # beside the service, in the source tree
OPENER = urllib.request.build_opener(urllib.request.ProxyHandler({}))

EVENT = """BEGIN:VEVENT
UID:{uid}
DTSTAMP:20250101T000000Z
{lines}
END:VEVENT
"""
TODO = EVENT.replace("VEVENT", "VTODO")


def calendar(*components, head=""):
    return "BEGIN:VCALENDAR\nVERSION:2.0\nPRODID:-//test//EN\n" + head + "".join(components) + "END:VCALENDAR\n"


def event(lines, uid="event@test"):
    return EVENT.format(uid=uid, lines=lines)


def todo(lines, uid="todo@test"):
    return TODO.format(uid=uid, lines=lines)


class Service:
    """The running program; a context, which ends it and keeps what it said in `errors`."""

    def __init__(self, folder, now, zone="Europe/Vilnius"):
        environment = {**os.environ, "TZ": zone}
        self.process = subprocess.Popen(
            [SERVICE, "--now", now, "--until-input-ends", str(folder)], env=environment, text=True,
            stdin=subprocess.PIPE, stdout=subprocess.PIPE, stderr=subprocess.PIPE)
        self.address = self.process.stdout.readline().strip()
        self.token = self.process.stdout.readline().strip()

    def __enter__(self):
        return self

    def __exit__(self, *_):
        _, self.errors = self.process.communicate()
        self.status = self.process.returncode

    def get(self, resource, token=None):
        request = urllib.request.Request(self.address + resource)
        request.add_header("Authorization", "Bearer " + (token or self.token))
        with OPENER.open(request) as answer:
            return json.load(answer)

    def status_of(self, resource, token=None):
        with self.assert_fails() as failure:
            self.get(resource, token)
        return failure.exception.code

    @staticmethod
    def assert_fails():
        return unittest.TestCase().assertRaises(urllib.error.HTTPError)

    def meetings(self):
        return [(each["kiedy"], each["tytul"], each["czas_trwania_min"]) for each in self.get("/spotkania-planowane")]

    def tasks(self):
        return [(each["termin"], each["tytul"], each["status"]) for each in self.get("/moje/zadania")]


class IcsService(unittest.TestCase):
    def setUp(self):
        place = tempfile.TemporaryDirectory()
        self.addCleanup(place.cleanup)
        self.folder = pathlib.Path(place.name) / "calendars"
        (self.folder / "work").mkdir(parents=True)

    def write(self, name, text):
        (self.folder / name).write_bytes(text.replace("\n", "\r\n").encode())

    def meetings(self, text, now, **more):
        self.write("work/one.ics", text)
        with Service(self.folder, now, **more) as service:
            found = service.meetings()
        self.assertEqual(service.errors, "")
        self.assertEqual(service.status, 0)
        return found

    def test_repeats_an_event_without_its_exceptions_and_with_the_moved_one(self):
        series = event("DTSTART;TZID=Europe/Warsaw:20250303T090000\nDTEND;TZID=Europe/Warsaw:20250303T094500\n"
                       "RRULE:FREQ=DAILY\nEXDATE;TZID=Europe/Warsaw:20250315T090000\nSUMMARY:Narada")
        moved = event("RECURRENCE-ID;TZID=Europe/Warsaw:20250316T090000\nDTSTART;TZID=Europe/Warsaw:20250316T113000\n"
                      "DURATION:PT1H\nSUMMARY:Narada przesunięta")
        self.assertEqual(self.meetings(calendar(series, moved), "2025-03-14T06:00:00Z"),
                         [("2025-03-14T08:00:00Z", "Narada", 45), ("2025-03-16T10:30:00Z", "Narada przesunięta", 60)])

    def test_keeps_the_hour_of_an_events_zone_over_a_clock_change(self):
        series = event("DTSTART;TZID=Europe/Warsaw:20250329T090000\nDTEND;TZID=Europe/Warsaw:20250329T100000\n"
                       "RRULE:FREQ=DAILY;COUNT=2\nSUMMARY:Narada")
        self.assertEqual(self.meetings(calendar(series), "2025-03-29T00:00:00Z"),
                         [("2025-03-29T08:00:00Z", "Narada", 60), ("2025-03-30T07:00:00Z", "Narada", 60)])

    def test_reads_a_time_without_a_zone_in_the_devices(self):
        text = calendar(event("DTSTART:20250314T120000\nDTEND:20250314T130000\nSUMMARY:Obiad"))
        for zone, moment in (("Europe/Vilnius", "2025-03-14T10:00:00Z"), ("America/Santiago", "2025-03-14T15:00:00Z")):
            self.assertEqual(self.meetings(text, "2025-03-14T06:00:00Z", zone=zone), [(moment, "Obiad", 60)])

    def test_reads_a_zone_that_the_file_itself_describes(self):
        zone = ("BEGIN:VTIMEZONE\nTZID:Our Office\nBEGIN:STANDARD\nDTSTART:19700101T000000\nTZOFFSETFROM:+0300\n"
                "TZOFFSETTO:+0300\nTZNAME:OUR\nEND:STANDARD\nEND:VTIMEZONE\n")
        one = event("DTSTART;TZID=Our Office:20250314T120000\nDURATION:PT30M\nSUMMARY:Zebranie")
        self.assertEqual(self.meetings(calendar(zone, one), "2025-03-14T06:00:00Z"),
                         [("2025-03-14T09:00:00Z", "Zebranie", 30)])

    def test_leaves_out_all_day_events_cancelled_ones_and_those_of_other_days(self):
        parts = [event("DTSTART;VALUE=DATE:20250314\nSUMMARY:Urodziny", "a"),
                 event("DTSTART:20250314T120000Z\nDURATION:PT1H\nSTATUS:CANCELLED\nSUMMARY:Odwołane", "b"),
                 event("DTSTART:20250312T120000Z\nDURATION:PT1H\nSUMMARY:Przedwczoraj", "c"),
                 event("DTSTART:20250401T120000Z\nDURATION:PT1H\nSUMMARY:Za dwa tygodnie", "d"),
                 event("DTSTART:20250315T120000Z\nSUMMARY:Jutro", "e")]
        self.assertEqual(self.meetings(calendar(*parts), "2025-03-14T06:00:00Z"), [("2025-03-15T12:00:00Z", "Jutro", 0)])

    def test_gives_a_record_the_form_that_the_widget_reads(self):
        self.write("work/one.ics", calendar(event("DTSTART:20250314T120000Z\nDURATION:PT1H"),
                                            todo("DUE:20250314T150000Z\nSUMMARY:Raport")))
        (self.folder / "work/displayname").write_text("Praca\n")
        with Service(self.folder, "2025-03-14T06:00:00Z") as service:
            meeting, = service.get("/spotkania-planowane")
            task, = service.get("/moje/zadania")
            again, = service.get("/spotkania-planowane")
            self.assertEqual(service.get("/skrzynka"), {"zadania": []})
        self.assertEqual(sorted(meeting), ["czas_trwania_min", "id", "kiedy", "projekt_nazwa", "tytul"])
        self.assertEqual(sorted(task), ["id", "numer", "projekt_nazwa", "status", "termin", "tytul"])
        self.assertEqual((meeting["projekt_nazwa"], meeting["tytul"]), ("Praca", "(bez tytułu)"))
        self.assertEqual(meeting["id"], again["id"])
        self.assertRegex(task["id"], "^[0-9a-f]{8}-([0-9a-f]{4}-){3}[0-9a-f]{12}$")

    def test_takes_the_todos_that_have_a_due_date_as_tasks(self):
        self.write("work/todos.ics", calendar(
            todo("DUE;VALUE=DATE:20250314\nSUMMARY:Podatek", "a"),
            todo("DUE;TZID=Europe/Warsaw:20250314T150000\nSUMMARY:Raport\nSTATUS:IN-PROCESS", "b"),
            todo("DTSTART:20250315T100000Z\nDURATION:PT2H\nSUMMARY:Paczka\nSTATUS:COMPLETED", "c"),
            todo("DUE:20250316T100000Z\nSUMMARY:Bilet\nPERCENT-COMPLETE:100", "d"),
            todo("DUE:20250317T100000Z\nSUMMARY:Wyjazd\nSTATUS:CANCELLED", "e"),
            todo("SUMMARY:Kiedyś", "f")))
        with Service(self.folder, "2025-03-14T06:00:00Z") as service:
            self.assertEqual(service.tasks(), [
                ("2025-03-13T22:00:00Z", "Podatek", "otwarte"),  # the day's first instant in Vilnius
                ("2025-03-14T14:00:00Z", "Raport", "w_toku"), ("2025-03-15T12:00:00Z", "Paczka", "zrobione"),
                ("2025-03-16T10:00:00Z", "Bilet", "zrobione"), ("2025-03-17T10:00:00Z", "Wyjazd", "odrzucone")])
        self.assertEqual(service.errors, "")

    def test_names_each_bad_file_once_and_passes_it_over(self):
        good = calendar(event("DTSTART:20250314T120000Z\nDURATION:PT1H\nSUMMARY:Zebranie"))
        self.write("work/good.ics", good)
        bad = {"empty.ics": "", "words.ics": "no calendar\n", "open.ics": "BEGIN:VCALENDAR\nBEGIN:VEVENT\n",
               "rule.ics": calendar(event("DTSTART:20250314T120000Z\nRRULE:FREQ=SOMETIMES")),
               "start.ics": calendar(event("SUMMARY:Bez początku"))}
        for name, text in bad.items():
            self.write(name, text)
        (self.folder / "bytes.ics").write_bytes(b"BEGIN:VCALENDAR\r\n\xff\xfe\x00\r\n")
        (self.folder / "folder.ics").mkdir()
        with Service(self.folder, "2025-03-14T06:00:00Z") as service:
            for _ in range(2):
                self.assertEqual(service.meetings(), [("2025-03-14T12:00:00Z", "Zebranie", 60)])
                service.tasks()
        for name in [*bad, "bytes.ics"]:
            self.assertEqual(service.errors.count(f"ics-service: {self.folder / name} is passed over: "), 1, service.errors)
        self.assertEqual(len(service.errors.splitlines()), len(bad) + 1, service.errors)

    def test_writes_a_year_with_four_digits(self):
        self.write("work/one.ics", calendar(todo("DUE:00010101T000000Z\nSUMMARY:Dawno")))
        with Service(self.folder, "2025-03-14T06:00:00Z") as service:
            self.assertEqual(service.tasks(), [("0001-01-01T00:00:00Z", "Dawno", "otwarte")])

    def test_answers_with_a_folder_whose_name_is_not_text(self):
        folder = self.folder / os.fsdecode(b"w\xf3r")
        folder.mkdir()
        self.write(folder / "one.ics", calendar(todo("DUE:20250314T150000Z\nSUMMARY:Raport")))
        with Service(self.folder, "2025-03-14T06:00:00Z") as service:
            self.assertEqual([each["projekt_nazwa"] for each in service.get("/moje/zadania")], ["w\N{REPLACEMENT CHARACTER}r"])

    def test_passes_over_a_file_whose_status_cannot_be_read(self):
        self.write("work/good.ics", calendar(todo("DUE:20250314T150000Z\nSUMMARY:Raport")))
        bad = self.folder / "bad.ics"
        bad.symlink_to("x" * 300)  # longer than a name can be
        (self.folder / "gone.ics").symlink_to("nowhere")
        with Service(self.folder, "2025-03-14T06:00:00Z") as service:
            for _ in range(2):
                self.assertEqual(service.tasks(), [("2025-03-14T15:00:00Z", "Raport", "otwarte")])
        self.assertEqual(service.errors.count(f"ics-service: {bad} is passed over: "), 1, service.errors)
        self.assertEqual(len(service.errors.splitlines()), 1, service.errors)

    def test_judges_a_file_that_changes_during_a_request_by_its_new_content(self):
        module = self.service_module()
        folders = module.Folders([self.folder], lambda: module.moment("2025-03-14T06:00:00Z"))
        good, bad = (calendar(todo(f"DUE:20250314T150000Z\nSUMMARY:{title}")) for title in ("Nowe", "Stare i dłuższe"))
        self.write("work/one.ics", bad)

        def fails_after(change):
            def records_of(_):
                change()
                folders.current_entries()  # as another request does
                raise ValueError("no such day")
            return records_of

        errors = io.StringIO()
        with contextlib.redirect_stderr(errors):
            self.assertEqual(folders.collect(fails_after(lambda: self.write("work/one.ics", good))), [])
            self.assertEqual([task["tytul"] for task in folders.tasks()], ["Nowe"])
            self.assertEqual(folders.collect(fails_after((self.folder / "work/one.ics").unlink)), [])
        self.assertEqual(errors.getvalue(), "")

    @staticmethod
    def service_module():
        spec = importlib.util.spec_from_file_location("ics_service", SERVICE)
        module = importlib.util.module_from_spec(spec)
        spec.loader.exec_module(module)
        return module

    def test_reads_a_file_again_once_it_has_changed(self):
        self.write("work/one.ics", calendar())
        with Service(self.folder, "2025-03-14T06:00:00Z") as service:
            self.assertEqual(service.meetings(), [])
            self.write("work/two.ics", calendar(event("DTSTART:20250314T120000Z\nDURATION:PT1H\nSUMMARY:Nowe")))
            self.assertEqual(service.meetings(), [("2025-03-14T12:00:00Z", "Nowe", 60)])
            (self.folder / "work/two.ics").unlink()
            self.assertEqual(service.meetings(), [])

    def test_answers_nobody_without_the_token(self):
        with Service(self.folder, "2025-03-14T06:00:00Z") as service:
            self.assertEqual(service.status_of("/skrzynka", token="another"), 401)
            self.assertEqual(service.status_of("/elsewhere"), 404)

    def test_refuses_a_wrong_command_line(self):
        folder = str(self.folder)
        for arguments in (["/nowhere"], [folder, "--now", "2025-03-14"], [folder, "--port", "x"],
                          [folder, "--port", "65536"], [folder, "--port", "-1"], []):
            run = subprocess.run([SERVICE, *arguments], capture_output=True, text=True, stdin=subprocess.DEVNULL)
            self.assertEqual(run.returncode, 2, run.stderr)


if __name__ == "__main__":
    unittest.main()
