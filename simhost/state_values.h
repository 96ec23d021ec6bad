// Typed reads of the simulated host's state. The backend reads every value
// through these: a missing member (or one set to null) gives the fallback, and
// a member of another type (or an integer out of range) fails the operation
// that reads it with HostCtl::Lib::HostCtlException naming the member, so one
// wrong value in the state fails one host query instead of the console.
//
//     std::string host = Text(dns, "hostname");             // "" when missing
//     std::int32_t n = Integer<std::int32_t>(cpu, "packages", 1);
//     for (const Json& pnic : Array(net, "pnics")) ...
//
// `from` is the object the member is looked up in; null counts as an empty
// object, anything else that is no object fails like a wrong member.
#pragma once

#include <concepts>
#include <cstdint>
#include <limits>
#include <string>
#include <string_view>
#include <vector>

#include "simhost/simhost.h"

namespace ZrkCtl::Sim {

// Throws the host-control exception for a member of the wrong kind:
// "Host state value 'hostname' is number, expected string".
[[noreturn]] void WrongValue(std::string_view key, const Json& value, std::string_view expected);

// The member, or null when `from` has none (or is null). Throws when `from`
// is neither an object nor null.
const Json* Member(const Json& from, std::string_view key);

std::string Text(const Json& from, std::string_view key, std::string_view fallback = {});
bool Flag(const Json& from, std::string_view key, bool fallback = false);

// An integer member that fits T.
std::int64_t SignedValue(const Json& from, std::string_view key, std::int64_t fallback,
                         std::int64_t min, std::int64_t max);
std::uint64_t UnsignedValue(const Json& from, std::string_view key, std::uint64_t fallback,
                            std::uint64_t max);
template <std::integral T>
T Integer(const Json& from, std::string_view key, T fallback) {
    if constexpr (std::is_signed_v<T>)
        return static_cast<T>(SignedValue(from, key, fallback, std::numeric_limits<T>::min(),
                                          std::numeric_limits<T>::max()));
    else
        return static_cast<T>(UnsignedValue(from, key, fallback, std::numeric_limits<T>::max()));
}

// Object and array members; an empty one when missing.
const Json& Object(const Json& from, std::string_view key);
const Json& Array(const Json& from, std::string_view key);

// An array member of texts (every element must be one); empty when missing.
std::vector<std::string> Texts(const Json& from, std::string_view key);
// The elements of an array that must all be texts; `what` names it in the
// failure.
std::vector<std::string> TextsOf(const Json& array, std::string_view what);

// The elements of an array member that must all be objects (list entries
// such as NICs and switches).
const Json& Entries(const Json& from, std::string_view key);

}  // namespace ZrkCtl::Sim
