// Host and user text on its way into markup. A host name, a vendor string, an
// address, the support file, a log title or a user name is text, never markup:
// its braces show as braces and never become tags, and its control characters
// neither move the cursor nor break the layout. Every screen passes such values
// through one of these before joining them with its own markup.
//
//     text += "https://" + EscapeHostText(hostName) + "/ ";
#pragma once

#include <string>
#include <string_view>

namespace Tesk {

// One line of text: every "{" made literal ("{{}"), every control character
// (line feeds and tabs included) and DEL replaced by a blank.
std::string EscapeHostText(std::string_view text);

// Text of several lines (a file): as EscapeHostText, but line feeds are kept.
std::string EscapeHostLines(std::string_view text);

}  // namespace Tesk
