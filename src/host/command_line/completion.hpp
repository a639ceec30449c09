// What a shell offers after the words that are already typed. The parser itself is the source.
#pragma once

#include <string>
#include <vector>

namespace CLI {
class App;
}

namespace host {

/// One candidate a line, "WORD\tEXPLANATION", for the last of the words, which may be empty; the program's name is not
/// among them. A line ":files" says that names of files are candidates too.
///
///   {"sh"} -> "show\tShow one board, once.\n"
///   {"show", "--family=s"} -> "--family=small\t\n"
std::string completions(const CLI::App& app, const std::vector<std::string>& words);

}  // namespace host
