// The console's start-up up to its first welcome frame, in process: the same
// start-up, backend and welcome screen as tesk, but the welcome window writes
// how often the state was parsed to <root>/tmp/state-parses after its first
// frame and ends the program.
#include <fstream>
#include <memory>

#include "app/startup.h"
#include "platform/hostroot.h"
#include "session/welcome_window.h"
#include "store/state.h"

namespace {

class CountingWelcome : public Tesk::WelcomeWindow {
public:
    using WelcomeWindow::WelcomeWindow;
    int run() override {
        draw();
        std::ofstream(Tesk::Platform::HostPath("/tmp/state-parses"))
            << Sim::ParseCountForTesting() << "\n";
        return 0;
    }
};

}  // namespace

int main(int argc, char** argv) {
    // The console's own argument (the virtual terminal) is not used here.
    char* args[] = {argv[0], nullptr};
    (void)argc;
    return Tesk::RunConsole(1, args, [](const Tesk::StartFacts& facts) {
        return std::make_unique<CountingWelcome>(HostCtl::TheBackend(), facts.localConsole);
    });
}
