// Process-wide state of the application frame.
#pragma once

#include <string>

namespace Tesk {

class Window;

struct ProcessFlags {
    bool localConsole = false;         // on the host's own console, not a remote shell
    bool cannotChangeColours = false;  // monochrome attributes
    Window* currentWindow = nullptr;   // the innermost window running
    bool sessionActive = false;
    bool restartPending = false;
    bool cardBoundSession = false;
    std::string sessionCardUserId;
    std::string detectedCardUserId;
    std::string loggedInUser;
    bool emptyPasswordLogin = false;  // the password (or PIN) of the login was empty
    int idleTimeout = 600;            // seconds; 0 disables; below 60 acts as 60
};

ProcessFlags& Flags();

// The idle timeout from "/UserVars/TeskTimeOut": its value when it is an
// integer option, 600 otherwise (also when the host cannot be asked).
int ReadIdleTimeout();

}  // namespace Tesk
