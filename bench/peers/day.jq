# The day as the board selects and sorts it, of three bodies: jq -n -f day.jq --slurpfile tasks ... inbox ... meetings
def offset:
  if . == "Z" then 0
  else (if .[0:1] == "-" then -1 else 1 end) * ((.[1:3] | tonumber) * 3600 + (.[4:6] | tonumber) * 60)
  end;
# Seconds since 1970. A date alone is midnight in Warsaw, here without daylight saving.
def instant:
  capture("^(?<date>[0-9-]{10})(T(?<time>[0-9:]{8})([.][0-9]+)?(?<zone>Z|[+-][0-9:]{5}))?$")
  | if .time then ("\(.date)T\(.time)Z" | fromdateiso8601) - (.zone | offset)
    else ("\(.date)T00:00:00Z" | fromdateiso8601) - 3600
    end;
def day: localtime | strftime("%Y-%m-%d");

now as $now
| ($now | day) as $today
| ($now + 86400 | day) as $tomorrow
| {
    zadania: [
      $tasks[0][]
      | select(.status != "zrobione" and .status != "odrzucone" and .termin != null)
      | .termin |= instant
      | select((.termin | day) <= $today)
    ] | sort_by(.termin | day),
    spotkania: [
      $meetings[0][] | .kiedy |= instant | select(.kiedy >= $now and (.kiedy | day) <= $tomorrow)
    ] | sort_by(.kiedy),
    doDecyzji: ($inbox[0].zadania | length)
  }
