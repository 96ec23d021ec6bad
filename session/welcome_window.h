// The screen shown whenever nobody is logged in: what the host is, where to
// manage it from, and the way into a session.
#pragma once

#include <memory>
#include <string>

#include "hostctl/network.h"
#include "session/session.h"
#include "ui/textarea.h"
#include "ui/window.h"

namespace Tesk {

class WelcomeWindow : public Window {
public:
    // localConsole: on the host's own console rather than a remote shell.
    explicit WelcomeWindow(bool localConsole);
    ~WelcomeWindow() override;
    // The key loop; returns only when the process ends.
    int run() override;
    // Lays the screen out for the current mode and fills it.
    void draw();

private:
    void enterDefaultMode();
    void enterCustomMode(const std::string& message);
    void fill();
    void fillHostFacts();
    std::string managementText(HostCtl::Network::ZrkNic* nic);
    void login(bool shutdownPath);

    Session session_;
    // Default mode.
    std::unique_ptr<Window> upper_;
    std::unique_ptr<Window> lower_;
    std::unique_ptr<TextArea> productLine_;
    std::unique_ptr<TextArea> vendorLine_;
    std::unique_ptr<TextArea> hardware_;
    std::unique_ptr<TextArea> management_;
    std::unique_ptr<TextArea> warning_;
    std::unique_ptr<TextArea> footer_;
    // Custom-message mode.
    std::unique_ptr<TextArea> custom_;
};

// Welcome-screen texts, pure functions of the host's facts.
namespace Welcome {
// Vendor and model, trimmed; the model alone when it already starts with the
// vendor.
std::string VendorLine(const std::string& vendor, const std::string& product);
// "<n> x <model>" for two or more packages, else the model; trimmed.
std::string ProcessorLine(int packages, const std::string& model);
// "16 GiB Memory", "1.5 GiB Memory", ...
std::string MemoryLine(unsigned long long totalBytes);
}  // namespace Welcome

}  // namespace Tesk
