// Where our networkd files live. Normally in /etc/systemd/network under
// kOurFilePrefix. While a network change is on trial (between the change
// record's Begin and its Finish or PutBack) they are written to networkd's
// volatile folder /run/systemd/network instead, under kTrialFilePrefix: those
// names sort before ours in /etc, so networkd takes them first for the same
// link, and a file of ours in /etc that the change drops gets a trial file
// that configures nothing on its link. /etc keeps the previous configuration
// throughout, so a host that restarts during the trial comes up on it without
// the console. Keeping the change moves the trial files into /etc; putting it
// back removes them. The trial is marked by kTrialMarker (also under /run).
#pragma once

#include <string>
#include <vector>

#include "linuxhost/networkd_config.h"

namespace LinuxHost {

inline constexpr char kNetworkdDir[] = "/etc/systemd/network";
inline constexpr char kNetworkdRunDir[] = "/run/systemd/network";
inline constexpr char kTrialFilePrefix[] = "59-tesk-";
inline constexpr char kTrialMarker[] = "/run/tesk/network-trial";

// Our files as networkd reads them now, under their names in /etc: the
// trial's during a trial (without the files that configure nothing), /etc's
// otherwise.
NetworkdFiles ReadOurFiles();

// Our files in /etc, whatever is on trial.
NetworkdFiles ReadOurInstalledFiles();
// Their host paths ("/etc/systemd/network/60-tesk-br0.network"), whatever
// kind of file each is.
std::vector<std::string> OurInstalledPaths();

// Makes files the whole set of our files: each written atomically, any other
// file of ours removed. During a trial the /etc files stay as they are.
// Throws (logged) when a file cannot be written or removed.
void WriteOurFiles(const NetworkdFiles& files);

bool OnTrial();

// Starts a trial whose files are, until the first write, /etc's.
void BeginTrial();

// Ends the trial keeping its files: they replace ours in /etc. networkd
// already runs them, so it is not asked to read its files again.
void KeepTrial();

// Ends the trial dropping its files; /etc's are ours again. The caller has
// networkd read its files again.
void DropTrial();

}  // namespace LinuxHost
