// The console's PAM conversations: one password for the login check; the
// old password, then the new one twice for a change.
#include "admin/pam_auth.h"

#include <security/pam_appl.h>

#include <cctype>
#include <cstdlib>
#include <cstring>

#include "admin/pam_library.h"
#include "platform/host_platform.h"
#include "platform/syslog.h"

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

// The password change's conversation: the old password for the first hidden
// prompt (the authentication's) and for every prompt that asks for the
// current or old password (stacks that ask it again in the change itself),
// the new one for the next two, counted over every call of one exchange;
// every other message gets an empty answer.
struct ChangeAnswers {
    const char* oldPassword;
    const char* newPassword;
    int answered = 0;
    int newAnswered = 0;
};

bool AsksOldPassword(const char* prompt) {
    std::string text = prompt != nullptr ? prompt : "";
    for (char& c : text) c = static_cast<char>(std::tolower(static_cast<unsigned char>(c)));
    return text.starts_with("old ") || text.find(" old ") != std::string::npos ||
           text.find("current") != std::string::npos;
}

int ConverseChange(int count, const pam_message** messages, pam_response** responses, void* data) {
    if (count <= 0 || messages == nullptr || responses == nullptr || data == nullptr)
        return PAM_CONV_ERR;
    auto* answers = static_cast<ChangeAnswers*>(data);
    auto* replies = static_cast<pam_response*>(
        std::calloc(static_cast<std::size_t>(count), sizeof(pam_response)));
    if (replies == nullptr) return PAM_CONV_ERR;
    for (int i = 0; i < count; ++i) {
        if (messages[i] == nullptr || messages[i]->msg_style != PAM_PROMPT_ECHO_OFF) continue;
        const bool old = answers->answered == 0 || AsksOldPassword(messages[i]->msg);
        const char* text = old                        ? answers->oldPassword
                           : answers->newAnswered < 2 ? answers->newPassword
                                                      : nullptr;
        if (text == nullptr) continue;
        ++answers->answered;
        if (!old) ++answers->newAnswered;
        replies[i].resp = ::strdup(text);
        if (replies[i].resp == nullptr) {
            for (int j = 0; j < i; ++j) {
                if (replies[j].resp)
                    ::explicit_bzero(replies[j].resp, std::strlen(replies[j].resp));
                std::free(replies[j].resp);
            }
            std::free(replies);
            return PAM_CONV_ERR;
        }
    }
    *responses = replies;
    return PAM_SUCCESS;
}

}  // namespace

bool PamChangePassword(const std::string& user, const std::string& oldPassword,
                       const std::string& newPassword) {
    if (!Platform::TheHostPlatform().PamReachesHostUsers()) return false;
    const PamCalls* pam = LoadPam();
    if (pam == nullptr) return false;
    // Private copies for the conversation, wiped when PAM is done.
    std::string oldCopy = oldPassword;
    std::string newCopy = newPassword;
    ChangeAnswers answers{oldCopy.c_str(), newCopy.c_str()};
    pam_conv conversation{&ConverseChange, &answers};
    pam_handle_t* pamh = nullptr;
    int status = pam->pam_start("tesk", user.c_str(), &conversation, &pamh);
    if (status == PAM_SUCCESS) {
        status = pam->pam_authenticate(pamh, PAM_SILENT);
        if (status == PAM_SUCCESS || status == PAM_NEW_AUTHTOK_REQD)
            status = pam->pam_acct_mgmt(pamh, PAM_SILENT);
        if (status == PAM_SUCCESS || status == PAM_NEW_AUTHTOK_REQD)
            status = pam->pam_chauthtok(pamh, PAM_SILENT);
        if (status == PAM_SUCCESS) status = pam->pam_setcred(pamh, PAM_REFRESH_CRED);
        pam->pam_end(pamh, status);
    }
    Wipe(oldCopy);
    Wipe(newCopy);
    return status == PAM_SUCCESS;
}

void Wipe(std::string& secret) {
    if (!secret.empty()) ::explicit_bzero(secret.data(), secret.size());
    secret.clear();
}

int PamLoginCheck(const std::string& user, const std::string& password) {
    if (!Platform::TheHostPlatform().PamReachesHostUsers()) return PAM_SYSTEM_ERR;
    const PamCalls* pam = LoadPam();
    if (pam == nullptr) return PAM_SYSTEM_ERR;
    // The conversation's private copy, wiped and freed when PAM is done.
    char* copy = ::strdup(password.c_str());
    if (copy == nullptr) return PAM_BUF_ERR;
    pam_conv conversation{&Converse, copy};
    pam_handle_t* pamh = nullptr;
    int status = pam->pam_start("tesk", user.c_str(), &conversation, &pamh);
    if (status == PAM_SUCCESS) {
        status = pam->pam_authenticate(pamh, PAM_SILENT);
        if (status == PAM_SUCCESS) status = pam->pam_acct_mgmt(pamh, PAM_SILENT);
        pam->pam_end(pamh, status);
    }
    ::explicit_bzero(copy, std::strlen(copy));
    std::free(copy);
    return status;
}

}  // namespace Tesk
