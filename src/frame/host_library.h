// The host's console library HOSTIO6, which the Windows program imports by ordinal; hostio6.def maps these
// names, which are ours, to the ordinals.
#pragma once

#include <windows.h>

extern "C" {

constexpr int kMostArguments = 101; // pointers of a command line, including the program's name

// Ordinal 8: splits a command line. Writes the number of arguments and that many pointers; the host owns the
// texts.
void HostSplitCommandLine(const char *command_line, int *count, char **arguments);
// Ordinal 7: registers the running program.
void HostRegisterInstance(HINSTANCE instance);
// Ordinal 1: starts the console for a program with these arguments.
void HostStart(int count, char **arguments);
// Ordinal 3: formats and prints to the host's console.
int HostPrint(const char *format, ...);
}
