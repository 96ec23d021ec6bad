// Typed reads of the simulated host's state: missing means the fallback, a
// wrong kind fails the operation.
#include "simhost/state_values.h"

#include "hostctl/exception.h"

namespace ZrkCtl::Sim {

namespace {

const Json& EmptyObject() {
    static const Json empty = Json::object();
    return empty;
}

const Json& EmptyArray() {
    static const Json empty = Json::array();
    return empty;
}

}  // namespace

void WrongValue(std::string_view key, const Json& value, std::string_view expected) {
    throw HostCtl::Lib::HostCtlException("Host state value '" + std::string(key) + "' is " +
                                         value.type_name() + ", expected " + std::string(expected));
}

const Json* Member(const Json& from, std::string_view key) {
    if (from.is_null()) return nullptr;
    if (!from.is_object()) WrongValue(key, from, "a member of an object");
    auto it = from.find(key);
    if (it == from.end() || it->is_null()) return nullptr;
    return &*it;
}

std::string Text(const Json& from, std::string_view key, std::string_view fallback) {
    const Json* value = Member(from, key);
    if (!value) return std::string(fallback);
    if (!value->is_string()) WrongValue(key, *value, "string");
    return value->get<std::string>();
}

bool Flag(const Json& from, std::string_view key, bool fallback) {
    const Json* value = Member(from, key);
    if (!value) return fallback;
    if (!value->is_boolean()) WrongValue(key, *value, "boolean");
    return value->get<bool>();
}

std::int64_t SignedValue(const Json& from, std::string_view key, std::int64_t fallback,
                         std::int64_t min, std::int64_t max) {
    const Json* value = Member(from, key);
    if (!value) return fallback;
    if (value->is_number_unsigned()) {
        const auto v = value->get<std::uint64_t>();
        if (v <= static_cast<std::uint64_t>(max)) return static_cast<std::int64_t>(v);
    } else if (value->is_number_integer()) {
        const auto v = value->get<std::int64_t>();
        if (v >= min && v <= max) return v;
    } else {
        WrongValue(key, *value, "integer");
    }
    throw HostCtl::Lib::HostCtlException("Host state value '" + std::string(key) + "' is " +
                                         value->dump() + ", out of range");
}

std::uint64_t UnsignedValue(const Json& from, std::string_view key, std::uint64_t fallback,
                            std::uint64_t max) {
    const Json* value = Member(from, key);
    if (!value) return fallback;
    if (value->is_number_unsigned()) {
        const auto v = value->get<std::uint64_t>();
        if (v <= max) return v;
    } else if (!value->is_number_integer()) {
        WrongValue(key, *value, "integer");
    }
    throw HostCtl::Lib::HostCtlException("Host state value '" + std::string(key) + "' is " +
                                         value->dump() + ", out of range");
}

const Json& Object(const Json& from, std::string_view key) {
    const Json* value = Member(from, key);
    if (!value) return EmptyObject();
    if (!value->is_object()) WrongValue(key, *value, "object");
    return *value;
}

const Json& Array(const Json& from, std::string_view key) {
    const Json* value = Member(from, key);
    if (!value) return EmptyArray();
    if (!value->is_array()) WrongValue(key, *value, "array");
    return *value;
}

std::vector<std::string> TextsOf(const Json& array, std::string_view what) {
    std::vector<std::string> out;
    if (array.is_null()) return out;
    if (!array.is_array()) WrongValue(what, array, "array");
    for (const auto& element : array) {
        if (!element.is_string()) WrongValue(what, element, "string in the list");
        out.push_back(element.get<std::string>());
    }
    return out;
}

std::vector<std::string> Texts(const Json& from, std::string_view key) {
    return TextsOf(Array(from, key), key);
}

const Json& Entries(const Json& from, std::string_view key) {
    const Json& list = Array(from, key);
    for (const auto& entry : list)
        if (!entry.is_object()) WrongValue(key, entry, "object in the list");
    return list;
}

}  // namespace ZrkCtl::Sim
