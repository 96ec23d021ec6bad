// tesk: the host's direct console. Its only argument is the virtual terminal.
#include <memory>

#include "app/event_loop.h"
#include "app/startup.h"
#include "ui/window.h"

namespace {

// The top-level window: the whole screen, taking keys for as long as the
// console runs.
class ConsoleWindow : public Tesk::Window {
public:
    ConsoleWindow() : Window(0, 0, COLS, LINES, Tesk::ColourBlack, Tesk::ColourWhite) {}
    int run() override {
        for (;;) Tesk::ReadKey(this, false);
    }
};

}  // namespace

int main(int argc, char** argv) {
    return Tesk::RunConsole(argc, argv, [] { return std::make_unique<ConsoleWindow>(); });
}
