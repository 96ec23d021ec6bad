// The question after a check failed: keep the new management network or put
// the previous one back, with the time left until it comes back by itself.
// The deadline is read again on every tick, so whoever moves or drops it (the
// change record is the host's) is followed at once.
#pragma once

#include <cstdint>
#include <functional>
#include <optional>
#include <string>

#include "ui/dialog.h"

namespace Tesk {

class RevertCountdownDialog : public Dialog {
public:
    enum Result { kKeep = 1, kRevert = 2, kTimeUp = 3, kGone = 4 };

    // failedCheck: the line of the check that failed. revertAt answers the
    // deadline in seconds since the epoch (none: the change is no longer
    // pending); now answers the time in the same count.
    RevertCountdownDialog(Window* opener, std::string failedCheck,
                          std::function<std::optional<std::int64_t>()> revertAt,
                          std::function<std::int64_t()> now);

    // <K> keeps, <R> reverts; the deadline answers kTimeUp, a change no longer
    // pending kGone. Quit signals end it as any dialog.
    int run() override;

private:
    void showCount(std::int64_t left);

    std::function<std::optional<std::int64_t>()> revertAt_;
    std::function<std::int64_t()> now_;
    std::int64_t shown_ = -1;
};

}  // namespace Tesk
