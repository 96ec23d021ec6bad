// The platform hooks of a Linux host. On the machine's own root ("/") they
// are the machine's: its system log, its virtual terminals, its PAM stack. A
// Linux host kept under another TESK_ROOT (the lab) keeps its logs there and
// switches no terminal of this machine, as a simulated root does.
#pragma once

#include <memory>

#include "platform/host_platform.h"

namespace LinuxHost {

class LinuxPlatform : public Tesk::Platform::HostPlatform {
public:
    LinuxPlatform();
    ~LinuxPlatform() override;

    // The system-version node from the host's files (linuxhost/system_version.h);
    // a Linux host has no boot-option node (no audit mode).
    int ReadSystemNode(ZSI_Node node, void* out, std::size_t size) const override;
    int PostObservationEvent(const std::string& id, const std::string& message) const override;
    void WriteAuditRecord(const std::string& record) const override;
    void WriteLogLine(int priority, const std::string& text) const override;
    void ActivateVirtualTerminal(int vt) const override;
    bool PamReachesHostUsers() const override;

private:
    // The root's own hooks when TESK_ROOT is not "/"; null on the machine.
    std::unique_ptr<Tesk::Platform::HostPlatform> root_;
};

}  // namespace LinuxHost
