#include "sim/host.h"

#include <crypt.h>
#include <signal.h>
#include <unistd.h>

#include <cerrno>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <stdexcept>

#include "platform/hostroot.h"
#include "sim/profiles.h"
#include "sim/tools.h"
#include "sim/tools/consoles.h"
#include "sim/tools/toolkit.h"
#include "store/replace_file.h"
#include "store/state.h"

namespace Sim {
namespace fs = std::filesystem;

namespace {

constexpr const char kPamWrapperLibrary[] = "libpam_wrapper.so";

void WriteFile(const fs::path& path, const std::string& text) {
    fs::create_directories(path.parent_path());
    std::ofstream out(path, std::ios::trunc);
    out << text;
    if (!out.flush()) throw std::runtime_error("cannot write " + path.string());
}

const Profile* FindProfile(const std::string& name) {
    for (const auto& p : Profiles())
        if (name == p.name) return &p;
    return nullptr;
}

std::string ProfileNames() {
    std::string names;
    for (const auto& p : Profiles()) names += std::string(names.empty() ? "" : ", ") + p.name;
    return names;
}

// The user file of the root's PAM module from the profile's users:
// "name:hash:outcome" per line, each clear-text "password" hashed (outcomes:
// success, denied, expired, twoprompts; see sim/pam/pam_simhost.c). The state
// keeps each user's name and outcome only: it is readable by all, the hashes
// stay in the user file (mode 0600).
std::string TakeUsers(Json& state) {
    std::string db;
    Json& users = state["users"];
    if (!users.is_array()) users = Json::array();
    for (auto& user : users) {
        if (!user.is_object()) continue;
        const std::string hash = user.contains("password")
                                     ? HashPassword(user.value("password", ""))
                                     : user.value("passwordHash", "");
        user.erase("password");
        user.erase("passwordHash");
        db += user.value("name", "") + ":" + hash + ":" + user.value("outcome", "success") + "\n";
    }
    return db;
}

// The simulated host's PAM module: beside tesk-sim in a build tree, in
// <prefix>/lib/tesk when installed.
std::string PamModulePath() {
    fs::path own = OwnDirectory();
    for (const fs::path& candidate :
         {own / "pam_simhost.so", own.parent_path() / "lib/tesk/pam_simhost.so"})
        if (fs::exists(candidate)) return candidate.string();
    return (own / "pam_simhost.so").string();
}

}  // namespace

std::string HashPassword(const std::string& password) {
    if (password.empty()) return {};
    char setting[CRYPT_GENSALT_OUTPUT_SIZE];
    if (!crypt_gensalt_rn("$y$", 0, nullptr, 0, setting, sizeof setting))
        throw std::runtime_error("cannot make a password hash setting: " +
                                 std::string(std::strerror(errno)));
    crypt_data data{};
    const char* hash = crypt_r(password.c_str(), setting, &data);
    if (hash == nullptr || hash[0] != '$')
        throw std::runtime_error("cannot hash a password: " + std::string(std::strerror(errno)));
    std::string result = hash;
    ::explicit_bzero(&data, sizeof data);
    return result;
}

const std::vector<std::string>& LogFiles() {
    static const std::vector<std::string> files = {"/var/log/syslog.log",  "/var/log/zerkel.log",
                                                   "/var/log/sysboot.log", "/var/log/hagentd.log",
                                                   "/var/log/mgra.log",    "/var/log/hamon.log",
                                                   "/var/log/noxd.log"};
    return files;
}

std::string OwnDirectory() {
    std::error_code ec;
    fs::path self = fs::read_symlink("/proc/self/exe", ec);
    return ec ? std::string(".") : self.parent_path().string();
}

void InitRoot(const std::string& dir, const std::string& profileName) {
    const Profile* profile = FindProfile(profileName);
    if (!profile)
        throw std::runtime_error("unknown profile '" + profileName + "' (known: " + ProfileNames() +
                                 ")");
    Json state = Json::parse(profile->json);

    fs::path root = fs::absolute(dir);
    fs::create_directories(root);
    Tesk::Platform::SetHostRootForTesting(root.string());

    for (const char* sub : {"bin", "sbin", "etc/init.d", "var/run", "var/log", "tmp"})
        fs::create_directories(root / sub);
    const std::string userFile = TakeUsers(state);
    Save(state);
    // What the host's factory reset goes back to (sim/tools/factoryconfig.cpp);
    // the accounts are not part of it.
    Json factory = state;
    factory.erase("users");
    WriteFile(root / kFactoryStatePath, factory.dump(2) + "\n");

    if (state.value("loginEnabled", true)) WriteFile(root / "var/run/brelt/show-tesk-login", "");
    WriteFile(root / "etc/brelt/support", state.value("support", std::string()));
    for (const auto& log : LogFiles()) WriteFile(root / log.substr(1), "");
    std::string hosts =
        "127.0.0.1\tlocalhost.localdomain localhost\n::1\tlocalhost.localdomain localhost\n";
    if (state.contains("hostsFile")) hosts = state["hostsFile"].get<std::string>();
    WriteFile(root / "etc/hosts", hosts);

    // PAM through pam_wrapper: the service "tesk" and the root's own users.
    fs::path users = root / "etc/simhost/users";
    fs::create_directories(users.parent_path());
    ReplaceFile(users.string(), userFile, 0600);
    std::string module = PamModulePath() + " db=" + users.string();
    auto stack = [](const std::string& m) {
        return "auth required " + m + "\naccount required " + m + "\npassword required " + m +
               "\nsession required " + m + "\n";
    };
    WriteFile(root / "etc/simhost/pam.d/tesk", stack(module));
    // Any other service knows no user at all.
    WriteFile(root / "etc/simhost/pam.d/other", stack(PamModulePath() + " db=/dev/null"));

    std::string self = (fs::path(OwnDirectory()) / "tesk-sim").string();
    for (const auto& link : ToolLinks()) {
        fs::path at = root / link.hostPath.substr(1);
        fs::create_directories(at.parent_path());
        fs::remove(at);
        fs::create_symlink(link.target.empty() ? self : link.target, at);
    }
}

std::vector<std::pair<std::string, std::string>> PamEnvironment(const std::string& root) {
    // Deep binding of libpam is refused by the sanitizers' runtime; the
    // pam_wrapper of Debian 12 reads the second name for that switch.
    return {{"LD_PRELOAD", kPamWrapperLibrary},
            {"PAM_WRAPPER", "1"},
            {"PAM_WRAPPER_SERVICE_DIR", (fs::path(root) / "etc/simhost/pam.d").string()},
            {"PAM_WRAPPER_DISABLE_DEEPBIND", "1"},
            {"UID_WRAPPER_DISABLE_DEEPBIND", "1"}};
}

std::pair<std::string, std::string> DemoLogin() {
    Json state = Json::parse(FindProfile("default")->json);
    const Json& user = state["users"][0];
    return {user["name"].get<std::string>(), user["password"].get<std::string>()};
}

PowerState ReadPowerState(const std::string& root) {
    Tesk::Platform::SetHostRootForTesting(fs::absolute(root).string());
    const Json state = *Snapshot();
    const Json power = state.value("power", Json::object());
    const Json st = power.is_object() ? power.value("state", Json()) : Json();
    if (st == "poweredOff") return PowerState::Off;
    if (st == "rebooting") return PowerState::Restarting;
    return PowerState::On;
}

bool BootHost(const std::string& root) {
    if (ReadPowerState(root) == PowerState::On) return false;
    Update([](Json& state) {
        Json& power = Tools::Section(state, "power");
        power["state"] = "on";
        power["boots"] = power.value("boots", 0) + 1;
        Json& network = Tools::Section(state, "network");
        if (network.contains("ipv6EnabledAfterReboot"))
            network["ipv6Enabled"] = network["ipv6EnabledAfterReboot"];
        Json& services = Tools::Section(state, "services");
        for (const char* name : {"KovaShell", "SSH"}) {
            Json& service = Tools::Section(services, name);
            service["running"] = service.value("enabled", false);
        }
        Tools::Section(state, "hostAgent")["running"] = true;
        Json& vms = state["vms"];
        if (vms.is_array())
            for (auto& vm : vms)
                if (vm.is_object()) vm["running"] = vm.value("autoStart", false);
    });
    return true;
}

bool ChangeCard(const std::string& root, const std::string& userId, std::string& message) {
    Tesk::Platform::SetHostRootForTesting(fs::absolute(root).string());
    Update([&](Json& state) {
        Json& slots = state["smartCards"]["slots"];
        if (!slots.is_array() || slots.empty()) slots = Json::array({{{"name", "Reader 0"}}});
        for (auto& slot : slots) slot["token"] = nullptr;
        if (!userId.empty()) slots[0]["token"] = {{"userIds", Json::array({userId})}};
    });
    const int told = Tools::SignalConsoles(fs::absolute(root).string(), SIGUSR1);
    if (told == 0) {
        message = "card changed; no console running on the root to tell";
        return false;
    }
    message = "card changed; " + std::to_string(told) + " console(s) told";
    return true;
}

}  // namespace Sim
