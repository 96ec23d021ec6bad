// The console session: who is logged in, how (an empty password, a smart
// card), the idle timeout, and a restart request waiting for the logout. One
// object lives as long as the welcome screen and is passed to the screens
// that need it; while it exists it answers the key reader's questions.
#pragma once

#include <string>

#include "hostctl/backend.h"
#include "ui/keyreader.h"

namespace Tesk {

class Session : public KeySession {
public:
    // localConsole: the console runs on the host's own console rather than in
    // a remote shell. Reads the idle timeout and installs itself in the key
    // reader.
    Session(const HostCtl::Backend& host, bool localConsole);
    ~Session() override;
    Session(const Session&) = delete;
    Session& operator=(const Session&) = delete;

    bool localConsole() const { return localConsole_; }
    // The host the session logs in to.
    const HostCtl::Backend& host() const { return host_; }

    // A user was authenticated: the session is bound to a smart card when one
    // that lists the user is present.
    void loggedIn(const std::string& user, bool emptyPassword);
    // The user's session (the customization menu) begins: the idle timeout is
    // read again.
    void begin();
    // The session ended (logout, time-out, or a login that opened no menu).
    void end();
    bool active() const { return active_; }
    const std::string& user() const { return user_; }
    // The password (or PIN) of the login was empty.
    bool emptyPasswordLogin() const { return emptyPassword_; }
    // The user's password was changed: whether the new one is empty.
    void setEmptyPasswordLogin(bool empty) { emptyPassword_ = empty; }
    bool cardBound() const { return cardBound_; }
    // A restart was asked for while the user was logged in.
    bool restartPending() const { return restartPending_; }

    // The smart-card check: without a login, remembers the user id of a
    // present card; in a card-bound session whose card is gone, logs the
    // user out by ending the console (ExitRequest).
    void checkCard();
    // The user id the last check found on a card; empty when none.
    const std::string& detectedCardUserId() const { return detectedCardUserId_; }

    // The idle timeout in seconds; 0 disables.
    int idleTimeout() const override { return idleTimeout_; }
    void setIdleTimeout(int seconds) { idleTimeout_ = seconds; }
    bool holdRestart() override;
    void cardChanged() override { checkCard(); }

private:
    const HostCtl::Backend& host_;
    bool localConsole_;
    bool active_ = false;
    bool restartPending_ = false;
    std::string user_;
    bool emptyPassword_ = false;
    bool cardBound_ = false;
    std::string cardUserId_;
    std::string detectedCardUserId_;
    int idleTimeout_ = 600;
};

// The idle timeout from "/UserVars/TeskTimeOut": its value when it is an
// integer option, 600 otherwise (also when the host cannot be asked).
int ReadIdleTimeout(const HostCtl::Backend& host);
// The first non-empty user id on any readable card, in slot order; empty when
// there is none.
std::string ReadCardUserId(const HostCtl::Backend& host);
// Whether a present card lists userId exactly.
bool CardWithUserIdPresent(const HostCtl::Backend& host, const std::string& userId);

}  // namespace Tesk
