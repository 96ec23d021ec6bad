// The numbered fixed texts of the screens.
#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <string_view>

namespace Tesk {

class StringFactory {
public:
    virtual ~StringFactory() = default;
    // The text with that id; valid for the life of the process. Unknown ids
    // give the empty text.
    virtual const char* get(std::uint32_t id) = 0;

    // The process-wide table. The first call decides which: "en_US" makes the
    // English table, any other locale gives none (null) while none exists;
    // once one exists it is returned whatever the name.
    static StringFactory* GetFactory(std::string_view locale);
};

// The English table, ids 0 to 289. Id 2 is the product line, which the host
// knows: it is asked of the source on first use and kept; while the source
// answers empty (or there is none) the text is empty and the next request
// asks again.
class en_US_Factory : public StringFactory {
public:
    static constexpr std::uint32_t kCount = 290;
    static constexpr std::uint32_t kProductLine = 2;

    // Where the product line comes from (the screens set the host's).
    static void SetProductLineSource(std::function<std::string()> source);

    const char* get(std::uint32_t id) override;
};

// The English table's text with that id, for code that has no frame to ask
// (Frame::str gives the same).
const char* Str(std::uint32_t id);

}  // namespace Tesk
