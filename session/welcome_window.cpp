#include "session/welcome_window.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cmath>
#include <sstream>
#include <vector>

#include "admin/shutdown_dialog.h"
#include "host/host_context.h"
#include "host/host_facts.h"
#include "host/product_line.h"
#include "host/queries.h"
#include "hostctl/backend.h"
#include "hostctl/exception.h"
#include "hostctl/network.h"
#include "hostctl/system.h"
#include "hostctl/try_call.h"
#include "platform/events.h"
#include "platform/hostroot.h"
#include "platform/syslog.h"
#include "platform/zsi.h"
#include "session/login_dialog.h"
#include "session/root_window.h"
#include "ui/key_loop.h"
#include "ui/keyreader.h"
#include "ui/keys.h"
#include "ui/markup.h"
#include "ui/markup_escape.h"
#include "ui/palette.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {

namespace {

constexpr const char kNoAdapterText[] =
    "No compatible network adapter found. Please consult the product's Hardware Compatibility "
    "Guide (HCG) for a list of supported adapters.";
constexpr const char kNoAdapterAlert[] = "No compatible network adapter found.";
constexpr const char kLoginMarker[] = "/var/run/brelt/show-tesk-login";

std::string Trim(const std::string& s) {
    size_t b = 0, e = s.size();
    while (b < e && std::isspace(static_cast<unsigned char>(s[b]))) ++b;
    while (e > b && std::isspace(static_cast<unsigned char>(s[e - 1]))) --e;
    return s.substr(b, e - b);
}

std::string ModeLabel(std::uint32_t id) {
    return std::string("(") + Str(id) + ")";
}

}  // namespace

namespace Welcome {

std::string VendorLine(const std::string& vendor, const std::string& product) {
    std::string v = Trim(vendor), p = Trim(product);
    if (p.compare(0, v.size(), v) == 0) return p;
    return v + " " + p;
}

std::string ProcessorLine(int packages, const std::string& model) {
    if (packages < 2) return Trim(model);
    return std::to_string(packages) + " x " + Trim(model);
}

std::string MemoryLine(unsigned long long totalBytes) {
    static const char kUnits[] = "MGTP";
    unsigned long long unit = 1048576ULL;
    int index = 0;
    for (int i = 0; i < 4 && totalBytes >= unit * 1024ULL; ++i) {
        unit *= 1024ULL;
        ++index;
    }
    float value =
        std::roundf(static_cast<float>(totalBytes) * 10.0f / static_cast<float>(unit)) / 10.0f;
    std::ostringstream out;
    out << value << ' ';
    if (index < 4) out << kUnits[index];
    out << "iB Memory";
    return out.str();
}

namespace {

// Lines a text takes at a width, trailing empty lines not counted.
int TextLines(std::string text, int width) {
    if (width <= 0) return 0;
    while (!text.empty() && text.back() == '\n') text.pop_back();
    if (text.empty()) return 0;
    return CountLines(LayoutMarkup(text, width));
}

}  // namespace

LowerPlaces PlaceLowerTexts(int cols, int lowerHeight, const std::string& management,
                            const std::string& warning) {
    // Text rows: from 1 down to the row above the footer.
    const int last = lowerHeight - 3;
    const int managementLines = TextLines(management, cols - 16);
    LowerPlaces places;
    places.management = {8, 1, cols - 16,
                         std::max(0, std::min(std::max(7, managementLines), last))};
    if (warning.empty()) return places;

    // Where the screen's layout puts it, when it ends above the footer there.
    const int lines = TextLines(warning, cols - 32);
    if (managementLines <= 8 && 9 + lines - 1 <= last) {
        places.warning = {16, 9, cols - 32, std::min(6, lowerHeight - 9)};
        places.management.height = std::min(places.management.height, 8);
        return places;
    }
    // Moved up to end on the row above the footer; as wide as the management
    // area when it would cover management text.
    int width = cols - 32, x = 16, height = lines;
    if (last - lines + 1 <= managementLines) {
        width = cols - 16;
        x = 8;
        height = TextLines(warning, width);
    }
    height = std::min(height, std::max(last, 0));
    const int top = std::max(1, last - height + 1);
    places.warning = {x, top, width, height};
    places.management.height = std::max(0, std::min(places.management.height, top - 1));
    return places;
}

}  // namespace Welcome

WelcomeWindow::WelcomeWindow(const HostCtl::Backend& host, bool localConsole)
    : Window(0, 0, COLS, LINES, ColourBlack, ColourWhite),
      host_(host),
      session_(host, localConsole) {
    en_US_Factory::SetProductLineSource(&ReadProductLine);
}

WelcomeWindow::~WelcomeWindow() = default;

void WelcomeWindow::enterDefaultMode() {
    custom_.reset();
    if (upper_ && lower_) return;
    werase(curses());
    upper_ = std::make_unique<Window>(this, 0, 0, COLS, LINES / 2, ColourDarkGrey, ColourWhite);
    lower_ = std::make_unique<Window>(this, 0, LINES / 2, COLS, (LINES + 1) / 2, ColourYellow,
                                      ColourWhite);
    box(curses(), 0, 0);
    footer_ = std::make_unique<TextArea>(lower_.get(), 2, lower_->height() - 2, lower_->width() - 4,
                                         1, ColourBlack);
    footer_->setText(std::string("<F2> {color:dark-grey}") + Str(StrId::CustomizeSystemViewLogs) +
                     "{/color}{align:right}<F12> {color:dark-grey}" + Str(StrId::ShutDownRestart) +
                     "{/color}{/align}");
}

void WelcomeWindow::enterCustomMode(const std::string& message) {
    if (productLine_ || upper_) {
        productLine_.reset();
        vendorLine_.reset();
        hardware_.reset();
        management_.reset();
        warning_.reset();
        footer_.reset();
        upper_.reset();
        lower_.reset();
    }
    if (!custom_) {
        werase(curses());
        box(curses(), 0, 0);
        custom_ = std::make_unique<TextArea>(this, 2, 2, COLS - 4, LINES - 4, ColourWhite);
        for (auto& [name, fact] : HostFacts(host_)) custom_->setVariable(name, std::move(fact));
    }
    custom_->setText(message);
}

void WelcomeWindow::draw() {
    DrawBatch batch;
    const std::string message = TryHost("Getting welcome message failed: %s", [this] {
                                    return host_.GetSystemInfo()->GetWelcomeMessage();
                                }).value_or("");
    if (message.empty()) {
        enterDefaultMode();
        fill();
    } else {
        enterCustomMode(message);
    }
    setActive(true);
    refresh();
}

std::string WelcomeWindow::managementText(HostCtl::Network::ZrkNic* nic) {
    std::ostringstream out;
    const char* heading = Str(StrId::ToManageThisHost);
    if (heading == nullptr || *heading == '\0') return {};
    out << heading;

    const std::string host = TryHost("Getting host name failed: %s", [this] {
                                 return host_.GetDnsConfig("defaultNetStack")->GetHostname();
                             }).value_or("");
    if (!host.empty() && host != "localhost") out << "\nhttps://" << EscapeHostText(host) << "/ ";

    // Without a management interface there is no address to offer.
    if (!nic) return out.str();
    auto network = host_.GetNetworkInfo();
    HostCtl::Network::IpConfig configured = nic->GetConfiguredIpConfig();
    HostCtl::Network::IpConfig current = nic->GetIpConfig();
    const bool dhcp = configured.GetUseDhcp();
    const bool ipv4Off = configured.GetIpv4UseNone();
    const bool noLease = current.GetIpv4Address().GetStringAddress() == "0.0.0.0";
    if (!ipv4Off)
        out << "\nhttps://" << EscapeHostText(current.GetIpv4Address().GetStringAddress()) << "/ ";
    if (!dhcp && !ipv4Off) out << ModeLabel(StrId::Static);
    if (dhcp) out << ModeLabel(noLease ? StrId::WaitingForDhcp : StrId::Dhcp);

    if (network->IsZrkIpv6Enabled()) {
        out << "\n";
        const auto& networks = current.GetIpv6Networks();
        std::vector<std::string> lines;
        for (size_t i = 0; i < networks.size() && i < 4; ++i) {
            std::string line;
            line.reserve(100);
            line +=
                "https://[" + EscapeHostText(networks[i].GetAddress().GetStringAddress()) + "]/ ";
            switch (static_cast<int>(networks[i].GetIpv6AddressType())) {
                case 0:
                    line += ModeLabel(StrId::Static);
                    break;
                case 9:
                    line += ModeLabel(StrId::Dhcp);
                    break;
                case 7:
                    line += ModeLabel(StrId::Autoconf);
                    break;
                default:
                    break;
            }
            line += "\n";
            lines.push_back(std::move(line));
        }
        std::sort(lines.begin(), lines.end());
        for (const auto& line : lines) out << line;
        if (lines.size() == 4 && networks.size() > 4) out << "...\n";
    }
    return out.str();
}

// Each fact is asked on its own: a host that cannot tell one still shows the
// others.
void WelcomeWindow::fillHostFacts() {
    productLine_->setText(Str(StrId::ProductLine));
    vendorLine_->setText(EscapeHostText(TryHost("Getting hardware vendor failed: %s", [this] {
                                            auto hardware = host_.GetHardwareInfo();
                                            return Welcome::VendorLine(hardware->GetVendorName(),
                                                                       hardware->GetProductName());
                                        }).value_or("")));
    const std::string processor =
        TryHost("Getting processor information failed: %s", [this] {
            auto cpu = host_.GetCpuInfo();
            return Welcome::ProcessorLine(cpu->GetNumCpuPackages(), cpu->GetModelName());
        }).value_or("");
    const std::string memory =
        TryHost("Getting memory information failed: %s", [this] {
            auto info = host_.GetMemoryInfo();
            return Welcome::MemoryLine(static_cast<unsigned long long>(info->GetTotalPages()) *
                                       info->GetPageSize());
        }).value_or("");
    hardware_->setText(EscapeHostText(processor) + "\n" + memory);
}

void WelcomeWindow::showLowerTexts(const std::string& management, const std::string& warning) {
    const Welcome::LowerPlaces places =
        Welcome::PlaceLowerTexts(COLS, lower_->height(), management, warning);
    if (!management_ || !(places.management == managementPlace_)) {
        const Welcome::Place& p = places.management;
        // What the area showed where it stood goes with it.
        if (management_) management_->setText("");
        management_.reset();
        management_ =
            std::make_unique<TextArea>(lower_.get(), p.x, p.y, p.width, p.height, ColourBlack);
        managementPlace_ = p;
    }
    if (!warning_ || !(places.warning == warningPlace_)) {
        const Welcome::Place& p = places.warning;
        if (warning_) warning_->setText("");
        warning_.reset();
        warning_ = std::make_unique<TextArea>(lower_.get(), p.x, p.y, p.width, p.height, ColourRed);
        warningPlace_ = p;
    }
    management_->setText(management);
    warning_->setText(warning);
}

void WelcomeWindow::fill() {
    if (!hardware_) {
        hardware_ = std::make_unique<TextArea>(upper_.get(), 8, 9, COLS - 16, 2, ColourWhite);
        productLine_ = std::make_unique<TextArea>(upper_.get(), 8, 5, COLS - 16, 1, ColourWhite);
        vendorLine_ = std::make_unique<TextArea>(upper_.get(), 8, 7, COLS - 16, 1, ColourWhite);
    }
    try {
        // Warnings: a DHCP lease still missing; audit mode replaces that.
        auto network = host_.GetNetworkInfo();
        std::unique_ptr<HostCtl::Network::ZrkNic> nic = GetManagementInterface(host_);
        bool dhcpFailed = nic && nic->GetConfiguredIpConfig().GetUseDhcp() &&
                          nic->GetIpConfig().GetIpv4Address().GetStringAddress() == "0.0.0.0";
        // Audit mode replaces the DHCP warning.
        std::string warning = dhcpFailed ? Str(StrId::DhcpLookupFailed) : "";
        unsigned char boot[4] = {0, 0, 0, 0};
        if (ZSI_Get(ZSI_NODE_system_bootOption, boot, sizeof boot) == 0 && boot[0] == 1)
            warning = Str(StrId::AuditModeWarning);

        std::string text = managementText(nic.get());
        if (network->GetPnics().empty()) {
            text = kNoAdapterText;
            if (!adapterAlertRaised_) {
                adapterAlertRaised_ = true;
                host_.GetSystemInfo()->SetSystemAlert(kNoAdapterAlert);
            }
        }
        showLowerTexts(text, warning);
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Platform::Log(LOG_ERR, "Getting host information failed: %s", e.what());
        if (management_) management_->setText("");
    }
    fillHostFacts();
}

void WelcomeWindow::login(bool shutdownPath) {
    const bool enabled = ::access(Platform::HostPath(kLoginMarker).c_str(), F_OK) == 0;
    bool authenticated = false;
    try {
        if (enabled) {
            LoginDialog dialog(this, session_);
            authenticated = Run(dialog) == 1;
        } else {
            LoginDisabledDialog dialog(this, host_);
            Run(dialog);
        }
    } catch (const TeskTimeout&) {
        // Idle at the login dialog: nobody was logged in, nothing to record.
        setActive(true);
        return;
    }
    if (!authenticated) return;
    if (shutdownPath) {
        // A login before the power question starts no session and records no
        // logout.
        try {
            const HostContext host{host_, session_.user()};
            ShutdownDialog dialog(this, host);
            Run(dialog);
        } catch (const TeskTimeout&) {
            setActive(true);
        }
        return;
    }

    session_.begin();
    const std::string user = session_.user();
    try {
        RootWindow menu(this, session_);
        Run(menu);
        session_.end();
        AuditRecord audit{"tesk.logout", user, 1, {{"reason", "Session closed"}}};
        PostEvent(LOG_INFO, "User " + user + " logged out", &audit, nullptr);
    } catch (const TeskTimeout&) {
        session_.end();
        AuditRecord audit{"tesk.logout", user, 1, {{"reason", "Time out"}}};
        PostEvent(LOG_INFO, "User " + user + " logged out due to time out", &audit, nullptr);
        setActive(true);
    } catch (const ExitRequest&) {
        // The console ends under the session (a quit signal, a resize, the
        // card taken out): the session ends with it and says so.
        session_.end();
        AuditRecord audit{"tesk.logout", user, 1, {{"reason", "Session closed"}}};
        PostEvent(LOG_INFO, "User " + user + " logged out", &audit, nullptr);
        throw;
    }
}

int WelcomeWindow::run() {
    draw();
    // The host's changes (an address, a link) draw the screen again as they
    // happen; the watch is made after the first frame.
    std::unique_ptr<HostCtl::HostWatch> watch;
    try {
        watch = host_.WatchHost();
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Platform::Log(LOG_ERR, "Watching the host failed: %s", e.what());
    }
    // Every key, whatever it did, draws the whole screen again.
    return RunKeyLoop(*this, {.allowIdleTimeout = false,
                              .handler =
                                  [this](int key) {
                                      if (key == KEY_F(2) || key == KEY_F(12)) {
                                          login(key == KEY_F(12));
                                      } else if (key == KEY_F(4)) {
                                          if (!CannotChangeColours())
                                              SetHighContrastPalette(!HighContrastPalette());
                                      }
                                      return KeyResult::Redraw();
                                  },
                              .afterKey =
                                  [this] {
                                      clearok(curscr, TRUE);
                                      draw();
                                      session_.end();
                                      if (session_.restartPending()) throw ExitRequest{0};
                                  },
                              .watchFd = watch ? watch->Descriptor() : -1,
                              .onWatch =
                                  [this, &watch] {
                                      watch->Drain();
                                      draw();
                                      return KeyResult::Ignored();
                                  }});
}

}  // namespace Tesk
