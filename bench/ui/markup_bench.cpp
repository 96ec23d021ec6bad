// The markup renderer's cost: the layout pass alone, and a full 80x25 screen of
// dense markup laid out and drawn into a curses screen that writes nowhere.
#include <benchmark/benchmark.h>

#include <memory>
#include <string>

#include "tests/support/curses_screen.h"
#include "ui/markup.h"
#include "ui/terminal.h"
#include "ui/textarea.h"
#include "ui/window.h"

namespace {

// One screenful (and more) of what the screens show: colours, alignment,
// padded columns, long sentences that wrap and a long word that is cut.
std::string DenseScreen() {
    std::string text;
    for (int i = 0; i < 25; ++i) {
        text += "{align:padding:12}{color:white}row " + std::to_string(i) +
                "{/color}{/align}{color:dark-grey}Restarting the management network will "
                "result in a brief outage{/color} {bgcolor:black}{color:yellow}x{/color}{/bgcolor}"
                "{align:right}{color:red}<Esc>{/color} Exit{/align}\n"
                "{align:center}averyveryverylongwordthatcannotwrapanywhereatallinthisline"
                "0123456789{/align}\n";
    }
    return text;
}

void BM_Layout(benchmark::State& state) {
    const std::string text = DenseScreen();
    for (auto _ : state) {
        std::string out = Tesk::LayoutMarkup(text, 80);
        benchmark::DoNotOptimize(out);
    }
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(text.size()));
}
BENCHMARK(BM_Layout);

void BM_LayoutAndDrawFullScreen(benchmark::State& state) {
    TeskTest::OpenCursesScreen();
    Tesk::Window screen(0, 0, 80, 25, Tesk::ColourYellow, Tesk::ColourBlack);
    Tesk::TextArea area(&screen, 0, 0, 80, 25, Tesk::ColourBlack);
    const std::string text = DenseScreen();
    for (auto _ : state) area.setText(text);
    state.SetBytesProcessed(static_cast<int64_t>(state.iterations()) *
                            static_cast<int64_t>(text.size()));
}
BENCHMARK(BM_LayoutAndDrawFullScreen);

}  // namespace
