// The console's start-up and shut-down around a top window whose run ends in
// a host-control failure (first argument "hostctl") or returns normally.
#include <cstring>
#include <memory>

#include "app/startup.h"
#include "hostctl/exception.h"
#include "ui/window.h"

namespace {

class EndingWindow : public Tesk::Window {
public:
    explicit EndingWindow(bool fail) : Window(0, 0, COLS, LINES, 0, 7), fail_(fail) {}
    int run() override {
        print(1, 1, "probe window");
        redraw();
        if (fail_) throw HostCtl::Lib::HostCtlException("host went away");
        return 0;
    }

private:
    bool fail_;
};

}  // namespace

int main(int argc, char** argv) {
    bool fail = argc > 1 && std::strcmp(argv[1], "hostctl") == 0;
    // The console's own argument (the virtual terminal) is not used here.
    char* args[] = {argv[0], nullptr};
    return Tesk::RunConsole(
        1, args, [fail](const Tesk::StartFacts&) { return std::make_unique<EndingWindow>(fail); });
}
