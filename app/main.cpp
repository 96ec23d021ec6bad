// tesk: the host's direct console. Its only argument is the virtual terminal;
// TESK_BACKEND (or TESK_ROOT) picks the host backend (app/backend_choice.h).
#include <memory>

#include "app/startup.h"
#include "session/welcome_window.h"

int main(int argc, char** argv) {
    return Tesk::RunConsole(argc, argv, [](const Tesk::StartFacts& facts) {
        return std::make_unique<Tesk::WelcomeWindow>(HostCtl::TheBackend(), facts.localConsole);
    });
}
