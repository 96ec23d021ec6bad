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

// Welcome-screen texts and places, pure functions of the host's facts and the
// screen's size.
namespace Welcome {

// A text area's place inside a panel.
struct Place {
    int x = 0, y = 0, width = 0, height = 0;
    bool operator==(const Place&) const = default;
};

// Where the management text and the warning stand in the lower panel (cols
// wide, lowerHeight rows; its footer is on row lowerHeight - 2), so that both
// are whole wherever they can be (docs/screens.md):
// - the management area at (8, 1), cols - 16 wide, 7 rows or as many as its
//   text has lines;
// - the warning at (16, 9), cols - 32 wide, 6 rows, when its lines end above
//   the footer there; otherwise moved up to end on the row above the footer,
//   and, when that would cover management text, as wide as the management
//   area. Should both still not fit, the management area gives up rows.
// An empty warning takes no place (height 0).
struct LowerPlaces {
    Place management;
    Place warning;
};
LowerPlaces PlaceLowerTexts(int cols, int lowerHeight, const std::string& management,
                            const std::string& warning);

// Vendor and model, trimmed; the model alone when it already starts with the
// vendor.
std::string VendorLine(const std::string& vendor, const std::string& product);
// "<n> x <model>" for two or more packages, else the model; trimmed.
std::string ProcessorLine(int packages, const std::string& model);
// "16 GiB Memory", "1.5 GiB Memory", ...
std::string MemoryLine(unsigned long long totalBytes);
}  // namespace Welcome

class WelcomeWindow : public Window {
public:
    // host: what the screen shows and logs in to; localConsole: on the host's
    // own console rather than a remote shell.
    WelcomeWindow(const HostCtl::Backend& host, bool localConsole);
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
    // Shows both lower-panel texts where they fit (Welcome::PlaceLowerTexts).
    void showLowerTexts(const std::string& management, const std::string& warning);
    void login(bool shutdownPath);

    const HostCtl::Backend& host_;
    Session session_;
    // The missing-adapter alert is raised once in the console's life.
    bool adapterAlertRaised_ = false;
    // Default mode.
    std::unique_ptr<Window> upper_;
    std::unique_ptr<Window> lower_;
    std::unique_ptr<TextArea> productLine_;
    std::unique_ptr<TextArea> vendorLine_;
    std::unique_ptr<TextArea> hardware_;
    std::unique_ptr<TextArea> management_;
    std::unique_ptr<TextArea> warning_;
    Welcome::Place managementPlace_, warningPlace_;
    std::unique_ptr<TextArea> footer_;
    // Custom-message mode.
    std::unique_ptr<TextArea> custom_;
};

}  // namespace Tesk
