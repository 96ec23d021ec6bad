// Runs one PAM exchange for the service "tesk" and prints the statuses:
//   pam_check login USER PASSWORD           -> "<authenticate> <acct_mgmt>"
//   pam_check change USER OLD NEW [AGAIN]   -> "<chauthtok>"
//   pam_check authchange USER OLD NEW AGAIN -> "<authenticate> <acct_mgmt> <chauthtok> <calls>"
//     (the console's sequence: authenticate, check the account, change)
// Every hidden prompt is answered in turn from the given passwords.
#include <security/pam_appl.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <string>
#include <vector>

namespace {

struct Answers {
    std::vector<std::string> texts;
    size_t next = 0;
    int calls = 0;
};

int Conversation(int n, const pam_message** msg, pam_response** resp, void* data) {
    auto* a = static_cast<Answers*>(data);
    ++a->calls;
    auto* r = static_cast<pam_response*>(std::calloc(static_cast<size_t>(n), sizeof(pam_response)));
    for (int i = 0; i < n; ++i)
        if (msg[i]->msg_style == PAM_PROMPT_ECHO_OFF && a->next < a->texts.size())
            r[i].resp = ::strdup(a->texts[a->next++].c_str());
    *resp = r;
    return PAM_SUCCESS;
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) return 2;
    std::string mode = argv[1];
    Answers answers;
    for (int i = 3; i < argc; ++i) answers.texts.push_back(argv[i]);
    pam_conv conv{&Conversation, &answers};
    pam_handle_t* pamh = nullptr;
    int rc = pam_start("tesk", argv[2], &conv, &pamh);
    if (rc != PAM_SUCCESS) {
        std::printf("start %d\n", rc);
        return 1;
    }
    if (mode == "login") {
        int auth = pam_authenticate(pamh, PAM_SILENT);
        int acct = auth == PAM_SUCCESS ? pam_acct_mgmt(pamh, PAM_SILENT) : -1;
        std::printf("%d %d %d\n", auth, acct, answers.calls);
        std::fflush(stdout);
        rc = acct;
    } else if (mode == "authchange") {
        int auth = pam_authenticate(pamh, PAM_SILENT);
        int acct = auth == PAM_SUCCESS ? pam_acct_mgmt(pamh, PAM_SILENT) : -1;
        rc = acct == PAM_SUCCESS || acct == PAM_NEW_AUTHTOK_REQD ? pam_chauthtok(pamh, PAM_SILENT)
                                                                 : -1;
        std::printf("%d %d %d %d\n", auth, acct, rc, answers.calls);
        std::fflush(stdout);
    } else {
        rc = pam_chauthtok(pamh, PAM_SILENT);
        std::printf("%d\n", rc);
        std::fflush(stdout);
    }
    pam_end(pamh, rc);
    return 0;
}
