// What the host says to a person on standard error, with the priority that a journal keeps.
#pragma once

#include <string_view>

namespace host {

/// As in syslog(3): numbers that systemd's journal reads from the start of a line ("<4>").
enum class Priority { error = 3, warning = 4, notice = 5, info = 6, debug = 7 };

/// One line "vamba-host: SENTENCE" on standard error. Where that is the journal (`JOURNAL_STREAM`), the priority stands
/// before it.
void say(Priority priority, std::string_view sentence);

/// Whether `descriptor` leads to the journal by what systemd says in `JOURNAL_STREAM` (systemd.exec(5)).
bool leadsToJournal(int descriptor);

/// The priority as a line for the journal begins with it: "<4>".
std::string_view prefixOf(Priority priority);

}  // namespace host
