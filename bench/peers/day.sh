#!/bin/sh
# day.sh PROGRAM.jq FOLDER TOKEN ADDRESS: the day by curl and jq, as one line of JSON.
set -e
cd "$2"
curl -q -Z --silent --fail -H "Authorization: Bearer $3" -H 'Accept: application/json' \
  -o tasks "$4/moje/zadania" -o inbox "$4/skrzynka" -o meetings "$4/spotkania-planowane" 2>/dev/null
exec jq -c -n -f "$1" --slurpfile tasks tasks --slurpfile inbox inbox --slurpfile meetings meetings
