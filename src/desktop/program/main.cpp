// `vamba-desktop`, which `vamba-host desktop` executes. It reads the same command line.
#include "desktop/program/run.hpp"
#include "host/command_line/run_program.hpp"

int main(int argc, char** argv) { return host::runProgram(argc, argv, desktop::run); }
