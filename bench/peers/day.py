"""day.py TOKEN ADDRESS: the day by a script with three threads, as one line of JSON."""

import json
import sys
from concurrent.futures import ThreadPoolExecutor
from datetime import datetime, timedelta, timezone
from urllib.request import Request, urlopen
from zoneinfo import ZoneInfo

token, address = sys.argv[1:]


def fetch(path):
    headers = {"Authorization": "Bearer " + token, "Accept": "application/json"}
    with urlopen(Request(address + path, headers=headers), timeout=12) as answer:
        return json.load(answer)


def instant(text):
    if len(text) == 10:
        return datetime.strptime(text, "%Y-%m-%d").replace(tzinfo=ZoneInfo("Europe/Warsaw"))
    return datetime.fromisoformat(text.replace("Z", "+00:00"))


def day(when):
    return when.astimezone().date()


with ThreadPoolExecutor(3) as threads:
    tasks, inbox, meetings = threads.map(fetch, ["/moje/zadania", "/skrzynka", "/spotkania-planowane"])

now = datetime.now(timezone.utc)
shown = [
    {**task, "termin": instant(task["termin"])}
    for task in tasks
    if task["status"] not in ("zrobione", "odrzucone") and task["termin"]
]
shown = sorted((task for task in shown if day(task["termin"]) <= day(now)), key=lambda task: day(task["termin"]))
coming = [{**meeting, "kiedy": instant(meeting["kiedy"])} for meeting in meetings]
tomorrow = day(now) + timedelta(days=1)
coming = sorted(
    (meeting for meeting in coming if meeting["kiedy"] >= now and day(meeting["kiedy"]) <= tomorrow),
    key=lambda meeting: meeting["kiedy"],
)
print(json.dumps({"zadania": shown, "spotkania": coming, "doDecyzji": len(inbox["zadania"])}, default=str))
