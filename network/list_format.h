// List rows and detail texts of switches and physical NICs, made from the
// host's records: fixed-width columns in markup, long values cut with "...".
#pragma once

#include <cstdint>
#include <string>

#include "host/queries.h"

namespace Tesk {

// The markup of a column width cells wide holding text.
std::string Column(const std::string& text, int width);

// A whole number as text.
std::string Count(std::int64_t n);

// A text for a list column of width cells: whole when it has at most
// width - 2 characters, else its first width - 5 and "...".
std::string FitColumn(const std::string& text, int width);

// A host text fitted to a column of width cells, escaped for markup.
std::string FittedColumn(const std::string& text, int width);

std::string FormatSwitchDetails(const SwitchSummary& s);
std::string FormatSwitchRow(const SwitchSummary& s);
std::string FormatPnicDetails(const PnicSummary& p);
std::string FormatPnicRow(const PnicSummary& p);

// The headers the switch and adapter lists are drawn under.
extern const char* const kSwitchRowHeader;
extern const char* const kPnicRowHeader;

}  // namespace Tesk
