// The timeout dialogs of the troubleshooting window: the local shell's and
// SSH's availability and idle timeouts, and the console's own idle timeout.
// Values are typed in minutes, 0 (disabled) to 1440; anything else is
// refused with a message and the dialog stays.
#pragma once

#include <cstdint>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <string_view>

#include "hostctl/backend.h"
#include "ui/form_dialog.h"

namespace Tesk {

inline constexpr unsigned long long kMaxTimeoutMinutes = 1440;

// The minutes a field holds: digits, or a '-' and digits (a negative value
// counts as out of range, as does anything that is no number). None for an
// empty field.
std::optional<unsigned long long> ParseTimeoutMinutes(std::string_view text);

class ShellTimeoutDialog : public FormDialog {
public:
    // Reads both timeouts from the host.
    ShellTimeoutDialog(Window* opener, const HostCtl::Backend& host);

protected:
    KeyResult accept() override;

private:
    struct Field {
        HostCtl::Services::ShellTimeout timeout;
        InputItem* item;
        int minutes;  // as read (or last written)
        bool restartServices;
        const char* disabledLine;
        const char* modifiedLine;
    };
    // False when the value is out of range (the message was shown).
    bool apply(Field& field);

    std::unique_ptr<HostCtl::Services::ShellServices> services_;
    Field availability_;
    Field idle_;
};

class TeskTimeoutDialog : public FormDialog {
public:
    // currentSeconds: the console's idle timeout now; rearm is called with the
    // new timeout in seconds once it has been stored on host.
    TeskTimeoutDialog(Window* opener, const HostCtl::Backend& host, int currentSeconds,
                      std::function<void(int)> rearm);

protected:
    KeyResult accept() override;

private:
    const HostCtl::Backend& host_;
    int currentSeconds_;
    std::function<void(int)> rearm_;
    InputItem* field_;
};

}  // namespace Tesk
