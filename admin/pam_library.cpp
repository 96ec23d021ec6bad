// Loading libpam on demand and resolving the calls the console makes.
#include "admin/pam_library.h"

#include <dlfcn.h>

#include "platform/syslog.h"

namespace Tesk {

namespace {

constexpr const char kLibrary[] = "libpam.so.0";

// Resolves name in the global scope: the program, the preloaded libraries,
// then the libraries loaded with RTLD_GLOBAL (libpam among them). The handle
// of libpam would find libpam's own definition and bypass a preloaded one.
template <typename Call>
bool Resolve(Call& call, const char* name) {
    call = reinterpret_cast<Call>(::dlsym(RTLD_DEFAULT, name));
    if (call != nullptr) return true;
    const char* error = ::dlerror();
    Platform::Log(LOG_ERR, "Loading PAM failed: %s", error ? error : name);
    return false;
}

}  // namespace

const PamCalls* LoadPam() {
    static PamCalls calls{};
    static bool loaded = false;
    if (loaded) return &calls;
    // Global, so that the modules PAM loads and a preloaded wrapper find it.
    if (::dlopen(kLibrary, RTLD_NOW | RTLD_GLOBAL) == nullptr) {
        const char* error = ::dlerror();
        Platform::Log(LOG_ERR, "Loading PAM failed: %s", error ? error : kLibrary);
        return nullptr;
    }
    loaded = Resolve(calls.pam_start, "pam_start") && Resolve(calls.pam_end, "pam_end") &&
             Resolve(calls.pam_authenticate, "pam_authenticate") &&
             Resolve(calls.pam_acct_mgmt, "pam_acct_mgmt") &&
             Resolve(calls.pam_chauthtok, "pam_chauthtok") &&
             Resolve(calls.pam_setcred, "pam_setcred");
    return loaded ? &calls : nullptr;
}

}  // namespace Tesk
