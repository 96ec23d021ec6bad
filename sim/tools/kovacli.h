// kovacli's commands outside the "network" namespace, defined beside the
// network commands' dispatcher (sim/tools/kovacli.cpp hands them over).
#pragma once

// Runs a kovacli command line that is not a network command; argv as the
// tool got it. Returns the exit status.
int KovacliOther(int argc, char** argv);
