// The keep-or-revert question with its count.
#include "network/revert_countdown.h"

#include "ui/key_loop.h"
#include "ui/markup_escape.h"

namespace Tesk {
namespace {

constexpr DialogSize kSize{70, 15, 10};
constexpr int kPollMs = 200;
constexpr char kFooter[] =
    "{color:black}<K>{/color} {color:dark-grey}Keep{/color}{align:right}{color:black}<R>{/color} "
    "{color:dark-grey}Revert{/color}{/align}";

}  // namespace

RevertCountdownDialog::RevertCountdownDialog(Window* opener, std::string failedCheck,
                                             std::function<std::optional<std::int64_t>()> revertAt,
                                             std::function<std::int64_t()> now)
    : Dialog(opener, kSize), revertAt_(std::move(revertAt)), now_(std::move(now)) {
    title_ = "Management Network: Check Failed";
    body_ = "The check \"" + EscapeHostText(failedCheck) +
            "\" failed: the host may no longer be reachable over its management network.\n\n"
            "Keep the new settings only when you know the host can be managed. Otherwise the "
            "previous settings are put back.";
    footer_ = kFooter;
}

void RevertCountdownDialog::showCount(std::int64_t left) {
    if (left == shown_) return;
    shown_ = left;
    if (TextArea* area = itemText())
        area->setText("{align:center}The previous settings come back in " + std::to_string(left) +
                      (left == 1 ? " second." : " seconds.") + "{/align}");
}

int RevertCountdownDialog::run() {
    showTexts();
    auto left = [this]() -> std::optional<std::int64_t> {
        const auto at = revertAt_();
        if (!at) return std::nullopt;
        const std::int64_t seconds = *at - now_();
        return seconds > 0 ? seconds : 0;
    };
    const auto first = left();
    if (!first) return kGone;
    if (*first == 0) return kTimeUp;
    showCount(*first);
    redraw();
    return RunKeyLoop(*this, {.allowIdleTimeout = false,
                              .handler =
                                  [](int key) {
                                      if (key == 'k' || key == 'K') return KeyResult::Leave(kKeep);
                                      if (key == 'r' || key == 'R')
                                          return KeyResult::Leave(kRevert);
                                      return KeyResult::Ignored();
                                  },
                              .pollMs = kPollMs,
                              .onPoll =
                                  [&] {
                                      const auto now = left();
                                      if (!now) return KeyResult::Leave(kGone);
                                      if (*now == 0) return KeyResult::Leave(kTimeUp);
                                      showCount(*now);
                                      return KeyResult::Handled();
                                  }});
}

}  // namespace Tesk
