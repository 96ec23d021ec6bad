// The host's configuration as a whole: its backup, its reset to the factory
// defaults, and the custom extensions installed on it. The interface only; a
// host backend (hostctl/backend.h) hands out the object.
#pragma once

#include <string>

namespace HostCtl::Configuration {

class HostConfiguration {
public:
    virtual ~HostConfiguration() = default;

    // Saves the configuration now, so that a change made outside it (a new
    // password) survives a restart. Logs its outcome; true when it was saved.
    // Nothing is thrown.
    virtual bool Backup() const = 0;

    // Puts the system configuration back to the factory defaults, keeping
    // what makes the machine itself; the host must restart afterwards. False
    // when the host refused (not logged); the configuration is then as it
    // was. Nothing is thrown.
    virtual bool ResetToFactoryDefaults() const = 0;
    // What the reset does on this host, for the reset entry's pane, where it
    // differs from the standard warning; empty: the standard warning holds.
    virtual std::string ResetWarning() const { return {}; }

    // Whether custom extensions are installed. A host that cannot tell
    // answers false (not logged).
    virtual bool HasCustomExtensions() const = 0;
    // Removes every custom extension; the host must restart afterwards. False
    // when the host refused (not logged); the extensions are then as they
    // were. Nothing is thrown.
    virtual bool RemoveCustomExtensions() const = 0;
};

}  // namespace HostCtl::Configuration
