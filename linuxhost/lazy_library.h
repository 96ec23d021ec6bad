// Shared libraries that the Linux backend opens at their first use rather than
// at every start of the program: libsystemd (the bus and the journal) and
// libvirt pull in dozens of libraries, and the welcome screen needs none of
// them, nor libcrypto or libpcsclite (docs/benchmarks.md). A call goes
// through TESK_LAZY:
//
//     auto open = TESK_LAZY(kLibsystemd, sd_bus_open_system);
//     if (open == nullptr) ...   // the library or the call is missing (logged)
//     open(&bus);
//
// The library's header gives the call's type; nothing of the library is
// linked.
#pragma once

#include <mutex>

namespace LinuxHost {

class LazyLibrary {
public:
    explicit LazyLibrary(const char* soname) : soname_(soname) {}

    // The library's function name, loading the library first when needed;
    // null when either is missing (logged once per name).
    void* Symbol(const char* name) const;
    // Whether the library can be loaded (loads it).
    bool Available() const;

private:
    void* Handle() const;

    const char* soname_;
    mutable std::once_flag once_;
    mutable void* handle_ = nullptr;
};

extern const LazyLibrary kLibsystemd;
extern const LazyLibrary kLibvirt;
extern const LazyLibrary kLibcrypto;
extern const LazyLibrary kLibpcsclite;

}  // namespace LinuxHost

// The function fn of library, looked up once per call site.
#define TESK_LAZY(library, fn)                                                               \
    ([] {                                                                                    \
        static const auto resolved = reinterpret_cast<decltype(&fn)>((library).Symbol(#fn)); \
        return resolved;                                                                     \
    }())
