// The observation-event library.
#pragma once

#include <string>
#include <utility>

// The event text starts with this marker, then the event id and ")".
inline constexpr const char kNoxMarker[] = "@&!*@*@(";

// 0 when the event service can take events, an error code otherwise: the
// answer of the installed platform hooks' start-up check (the simulated host
// fails with the fault "noxUserLib.init" and its "errorCode"); the machine's
// own hooks answer 0.
int NoxUserLib_Init();
// Formats the event and hands it, split into id and message, to the installed
// platform hooks (the machine's: a syslog line "event <id>: <message>"; a
// simulated root's: a line "<UTC time> <event id> <message>" in
// <root>/var/log/noxd.log); text without the marker gets the id "-".
int NoxUserLib_AddNox(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
void NoxUserLib_Close();

namespace Tesk::Platform {
// Splits "@&!*@*@(id)message" into id and message; ("-", text) without the marker.
std::pair<std::string, std::string> SplitNoxText(const std::string& text);
}  // namespace Tesk::Platform
