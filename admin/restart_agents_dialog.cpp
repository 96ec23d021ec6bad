// The management agents' restart.
#include "admin/restart_agents_dialog.h"

#include <syslog.h>

#include <optional>

#include "admin/live_core.h"
#include "host/recorded_change.h"
#include "hostctl/try_call.h"
#include "hostctl/offers.h"
#include "platform/events.h"
#include "platform/syslog.h"
#include "ui/footers.h"
#include "ui/key_loop.h"
#include "ui/keys.h"
#include "ui/markup_escape.h"
#include "ui/string_ids.h"
#include "ui/strings.h"

namespace Tesk {
namespace {

constexpr int kWidth = 71;
// Below the check item in the item area, in line with its text.
constexpr int kProgressRow = 2;
constexpr int kTextColumn = 1;

Window& ItemParent(Dialog& d) {
    return d.itemArea() ? *d.itemArea() : d.lowerBand();
}

std::string Running(const std::string& done, const char* step) {
    return done + "{/color}{color:black}" + step + "{/color}";
}

}  // namespace

RestartAgentsDialog::RestartAgentsDialog(Window* opener, const HostCtl::Backend& host)
    : ProgressDialog(opener, {kWidth, 20, 9}, Str(StrId::RestartManagementAgentsConfirm),
                     Str(StrId::RestartManagementAgentsWarning), nullptr),
      host_(host),
      items_(&ItemParent(*this), 0, 0, itemArea() ? kWidth - 4 : 0, itemArea() ? 1 : 0) {
    footer_ = Footer::kF11OkCancel;
    collect_ = &items_.emplace<CheckItem>(Str(StrId::CollectTroubleshootingInformation), false);
    collect_->setUnavailable(host_.WhyNotOffered(HostCtl::Feature::LiveCoreDump));
    if (Window* area = itemArea())
        progress_ =
            std::make_unique<TextArea>(area, kTextColumn, kProgressRow, area->width() - kTextColumn,
                                       area->height() - kProgressRow, ColourBlack);
}

void RestartAgentsDialog::show(const std::string& text) {
    if (progress_) progress_->setText(text);
}

int RestartAgentsDialog::run() {
    showTexts();
    // Below an unavailable check item, its reason.
    const std::string& why = collect_->whyUnavailable();
    show(
        (why.empty() ? std::string() : "{color:dark-grey}" + EscapeHostText(why) + "{/color}\n\n") +
        Str(StrId::RestartManagementAgentsNow));
    items_.draw();
    const int confirmed =
        RunKeyLoop(*this, {.focused = [this](int key) { return items_.selectedKey(key); },
                           .handler =
                               [](int key) {
                                   if (key == KEY_F(11)) return KeyResult::Leave(1);
                                   if (key == KeyEscape) return KeyResult::Leave(0);
                                   return KeyResult::Handled();
                               },
                           .afterKey = [this] { items_.draw(); }});
    if (!confirmed) return 0;
    restart();
    return 1;
}

void RestartAgentsDialog::restart() {
    setFooter("");
    PostEvent(LOG_INFO, "Restarting host agents", nullptr,
              "@&!*@*@(nox.user.tesk.restarting.hostagents)Restarting host agents");
    std::string done = "{color:dark-grey}";
    if (collect_->checked()) {
        std::string error;
        if (StartLiveCoreWorker(host_, &error)) {
            done += std::string(Str(StrId::CollectingLiveCore)) + " " + Str(StrId::Done) + "\n";
            show(done);
        } else {
            Platform::Log(LOG_ERR, "Failed to create live core generation thread: %s",
                          error.c_str());
        }
    }
    const auto agents = host_.GetManagementAgents();
    // Stopped agents must start again whatever ends the restart: a quit here
    // or a kill puts them back as they were.
    std::optional<RecordedChange> change;
    TryHost("Recording the agents' restart failed: %s",
            [&] { change.emplace(host_, HostCtl::Changes::ChangeKind::AgentsRestart); });
    show(Running(done, Str(StrId::StoppingManagementAgents)));
    agents->Stop();
    done += std::string(Str(StrId::StoppingManagementAgents)) + " " + Str(StrId::Done) + "\n";

    show(Running(done, Str(StrId::StartingManagementAgents)));
    agents->Start();
    if (change) change->Finish();
    done += std::string(Str(StrId::StartingManagementAgents)) + " " + Str(StrId::Done) + "{/color}";

    show(done);
    setFooter(Footer::kOk);
    WaitForEnter(*this);
}

}  // namespace Tesk
