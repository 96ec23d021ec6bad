// What a host backend may not offer at all, whatever its state: each screen
// or menu entry that needs one of these asks first and, when the host does
// not offer it, is shown disabled with the backend's one-line reason.
#pragma once

namespace HostCtl {

enum class Feature {
    LockdownMode,          // the lockdown menu entry
    LiveCoreDump,          // the live-core check item of the agents' restart
    CustomExtensions,      // "Remove Custom Extensions"
    SmartCardLogin,        // the card path of the login
    Vlan,                  // a VLAN id on the management network
    NicTeaming,            // more than one active adapter on the management network
    SecondStandardSwitch,  // "Create Standard Switch" and "Create Port Group"
};

}  // namespace HostCtl
