#include "linuxhost/lazy_library.h"

#include <dlfcn.h>

#include "platform/syslog.h"

namespace LinuxHost {

const LazyLibrary kLibsystemd("libsystemd.so.0");
const LazyLibrary kLibvirt("libvirt.so.0");
const LazyLibrary kLibcrypto("libcrypto.so.3");
const LazyLibrary kLibpcsclite("libpcsclite.so.1");

void* LazyLibrary::Handle() const {
    std::call_once(once_, [this] {
        handle_ = ::dlopen(soname_, RTLD_NOW | RTLD_LOCAL);
        if (handle_ == nullptr) {
            const char* why = ::dlerror();
            Tesk::Platform::Log(LOG_ERR, "Loading %s failed: %s", soname_, why ? why : "unknown");
        }
    });
    return handle_;
}

bool LazyLibrary::Available() const {
    return Handle() != nullptr;
}

void* LazyLibrary::Symbol(const char* name) const {
    void* handle = Handle();
    if (handle == nullptr) return nullptr;
    void* symbol = ::dlsym(handle, name);
    if (symbol == nullptr) Tesk::Platform::Log(LOG_ERR, "%s has no %s", soname_, name);
    return symbol;
}

}  // namespace LinuxHost
