// The observation-event library.
#pragma once

#include <string>

// The event text starts with this marker, then the event id and ")".
inline constexpr const char kNoxMarker[] = "@&!*@*@(";

// 0 when the event service can take events, an error code otherwise: the
// answer of the start-up check the host backend installed (the simulated host
// fails with the fault "noxUserLib.init" and its "errorCode"); without one,
// 0.
int NoxUserLib_Init();
// Formats the event and hands it to the event service. Under a simulated root
// the event becomes a line "<UTC time> <event id> <message>" in
// <root>/var/log/noxd.log; text without the marker gets the id "-".
int NoxUserLib_AddNox(const char* fmt, ...) __attribute__((format(printf, 1, 2)));
void NoxUserLib_Close();

namespace Tesk::Platform {
// The event service's start-up check: 0 or an error code.
using NoxInitCheck = int (*)();
// Installs the check (null: none).
void SetNoxInitCheck(NoxInitCheck check);

// Splits "@&!*@*@(id)message" into id and message; ("-", text) without the marker.
std::pair<std::string, std::string> SplitNoxText(const std::string& text);
}  // namespace Tesk::Platform
