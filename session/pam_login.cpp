#include "session/pam_login.h"

#include <security/pam_appl.h>

#include <cstdlib>
#include <cstring>

namespace Tesk {

namespace {

// The conversation: one message per call; a hidden prompt gets a copy of the
// password, anything else an empty answer.
int Converse(int count, const pam_message** messages, pam_response** responses, void* data) {
    if (count != 1 || messages == nullptr || messages[0] == nullptr || responses == nullptr ||
        data == nullptr)
        return PAM_CONV_ERR;
    auto* reply = static_cast<pam_response*>(std::calloc(1, sizeof(pam_response)));
    if (reply == nullptr) return PAM_CONV_ERR;
    if (messages[0]->msg_style == PAM_PROMPT_ECHO_OFF) {
        reply->resp = ::strdup(static_cast<const char*>(data));
        if (reply->resp == nullptr) {
            std::free(reply);
            return PAM_CONV_ERR;
        }
    }
    *responses = reply;
    return PAM_SUCCESS;
}

}  // namespace

void Wipe(std::string& secret) {
    if (!secret.empty()) ::explicit_bzero(secret.data(), secret.size());
    secret.clear();
}

int PamLoginCheck(const std::string& user, const std::string& password) {
    // The conversation's private copy, wiped and freed when PAM is done.
    char* copy = ::strdup(password.c_str());
    if (copy == nullptr) return PAM_BUF_ERR;
    pam_conv conversation{&Converse, copy};
    pam_handle_t* pamh = nullptr;
    int status = pam_start("tesk", user.c_str(), &conversation, &pamh);
    if (status == PAM_SUCCESS) {
        status = pam_authenticate(pamh, PAM_SILENT);
        if (status == PAM_SUCCESS) status = pam_acct_mgmt(pamh, PAM_SILENT);
        pam_end(pamh, status);
    }
    ::explicit_bzero(copy, std::strlen(copy));
    std::free(copy);
    return status;
}

}  // namespace Tesk
