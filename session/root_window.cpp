#include "session/root_window.h"

#include "session/session.h"
#include "ui/string_ids.h"

namespace Tesk {

namespace {

constexpr const char kLeftFooter[] =
    "{color:black}<Up/Down>{/color}{color:dark-grey} Select{/color}";

// The warning shown for the whole session after a login with an empty password.
std::string StatusText(Session& session) {
    return session.emptyPasswordLogin() ? Str(StrId::ChangeDefaultPassword) : std::string();
}

}  // namespace

RootWindow::RootWindow(Window* opener, Session& session)
    : PaneWindow(opener, kLeftFooter, StatusText(session)),
      host_{session.host(), session.user()},
      context_{*this, session, host_, {}, {}} {
    setTitle(str(StrId::SystemCustomization));
    std::vector<std::unique_ptr<MenuEntry>> all = MakeMenuEntries();
    for (auto& entry : all) {
        const auto feature = entry->feature();
        if (!feature) continue;
        std::string reason = host_.backend.WhyNotOffered(*feature);
        if (!reason.empty()) entry = MakeNotOfferedEntry(std::move(entry), std::move(reason));
    }
    for (auto& entry : all) entry->reload(context_);
    for (auto& entry : all) {
        if (!entry->greyed() && !entry->shown(context_)) continue;
        const std::string title = entry->title(context_);
        const int row = addRow(entry->greyed() ? "{color:dark-grey}" + title + "{/color}" : title,
                               !entry->separator());
        if (!entry->separator() && !entry->enabled(context_)) setRowEnabled(row, false);
        entries_.push_back(std::move(entry));
    }
    selectRow(0);
}

RootWindow::~RootWindow() = default;

PaneText RootWindow::describe(int row) {
    MenuEntry& entry = *entries_[static_cast<std::size_t>(row)];
    return {"{color:white}" + entry.title(context_) + "{/color}\n\n" + entry.pane(context_),
            entry.footer(context_)};
}

void RootWindow::enter(int row) {
    entries_[static_cast<std::size_t>(row)]->open(context_);
    for (auto& e : entries_) e->reload(context_);
}

bool RootWindow::otherKey(int row, int key) {
    return entries_[static_cast<std::size_t>(row)]->key(context_, key);
}

}  // namespace Tesk
