// tesk: the host's direct console. Its only argument is the virtual terminal.
#include <memory>

#include "app/startup.h"
#include "hostctl/backend.h"
#include "session/welcome_window.h"
#include "simhost/backend.h"
#include "simhost/platform_nodes.h"

int main(int argc, char** argv) {
    // The one place the console picks its host backend and its platform hooks.
    Tesk::Platform::InstallHostPlatform(ZrkCtl::MakeSimulatedPlatform());
    HostCtl::SetBackend(ZrkCtl::MakeSimulatedBackend());
    return Tesk::RunConsole(argc, argv, [](const Tesk::StartFacts& facts) {
        return std::make_unique<Tesk::WelcomeWindow>(facts.localConsole);
    });
}
