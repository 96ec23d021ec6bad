#include "linuxhost/card_watch.h"

#include <pthread.h>
#include <signal.h>
#include <unistd.h>

#include <chrono>
#include <map>
#include <mutex>
#include <set>
#include <thread>

#include "hostctl/exception.h"
#include "linuxhost/lazy_library.h"
#include "linuxhost/pcsc.h"
#include "platform/syslog.h"

namespace LinuxHost {
namespace {

// pcsc-lite's name for "the list of readers changed".
constexpr char kReadersChanged[] = "\\\\?PnP?\\Notification";

void Watch() {
    using Tesk::Platform::Log;
    try {
        PcscContext context;
        const auto wait = TESK_LAZY(kLibpcsclite, SCardGetStatusChange);
        if (wait == nullptr) return;
        std::map<std::string, DWORD> known;  // each reader's last state
        DWORD readersState = SCARD_STATE_UNAWARE;
        std::set<std::string> lastWithCard;
        bool first = true;
        for (;;) {
            const auto readers = context.Readers();
            std::vector<SCARD_READERSTATE> states(readers.size() + 1);
            for (std::size_t i = 0; i < readers.size(); ++i) {
                states[i].szReader = readers[i].c_str();
                const auto at = known.find(readers[i]);
                states[i].dwCurrentState = at == known.end() ? SCARD_STATE_UNAWARE : at->second;
            }
            states.back().szReader = kReadersChanged;
            states.back().dwCurrentState = readersState;
            // A reader not known yet makes the call return at once with its
            // state; otherwise it waits for a change.
            const LONG result = wait(context.Handle(), INFINITE, states.data(), states.size());
            if (result == SCARD_E_TIMEOUT || result == SCARD_E_UNKNOWN_READER) continue;
            if (result != SCARD_S_SUCCESS) {
                Log(LOG_WARNING, "Watching the smart-card readers stopped: %s",
                    PcscError(result).c_str());
                return;
            }
            known.clear();
            std::set<std::string> withCard;
            for (std::size_t i = 0; i < readers.size(); ++i) {
                known[readers[i]] = states[i].dwEventState & ~SCARD_STATE_CHANGED;
                if (states[i].dwEventState & SCARD_STATE_PRESENT) withCard.insert(readers[i]);
            }
            readersState = states.back().dwEventState & ~SCARD_STATE_CHANGED;
            const bool changed = withCard != lastWithCard;
            if (changed && !first) {
                Log(LOG_INFO, "Smart cards changed: %zu of %zu readers hold one", withCard.size(),
                    readers.size());
                ::kill(::getpid(), SIGUSR1);
            }
            // A service that answers without a change is not let to spin.
            if (!changed && !first && readers == context.Readers())
                std::this_thread::sleep_for(std::chrono::seconds(1));
            lastWithCard = std::move(withCard);
            first = false;
        }
    } catch (const HostCtl::Lib::HostCtlException& e) {
        Log(LOG_WARNING, "Watching the smart-card readers stopped: %s", e.what());
    }
}

}  // namespace

void WatchSmartCards() {
    static std::once_flag once;
    if (!PcscdListens()) return;
    std::call_once(once, [] {
        // The console's signals stay with its key reader: the thread starts
        // with every signal blocked.
        sigset_t all, before;
        ::sigfillset(&all);
        ::pthread_sigmask(SIG_BLOCK, &all, &before);
        std::thread(Watch).detach();
        ::pthread_sigmask(SIG_SETMASK, &before, nullptr);
    });
}

}  // namespace LinuxHost
