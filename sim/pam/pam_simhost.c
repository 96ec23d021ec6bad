/*
 * The simulated host's PAM module: authenticates against the root's user
 * file, answers per user with the outcome the file names, so every login
 * result can be tried at the console, and changes passwords.
 *
 *   auth|account|password|session required /path/pam_simhost.so db=/root/etc/simhost/users
 *
 * Each line of the user file is "name:hash:outcome". The hash is a crypt(3)
 * hash (yescrypt, "$y$..."); an empty hash is an account without a password,
 * which the empty password opens. Anything else never matches. Outcomes:
 *   success     authentication and account check succeed
 *   denied      the account check answers PAM_PERM_DENIED
 *   expired     the account check answers PAM_NEW_AUTHTOK_REQD until the
 *               password has been changed (then the user becomes "success")
 *   twoprompts  authentication asks two hidden prompts in one conversation call
 * A missing user or a wrong password is PAM_AUTH_ERR.
 *
 * A password change asks the current password, the new one and the new one
 * again (one hidden prompt per call); after an authentication in the same
 * exchange it takes the password authenticated with as the current one and
 * asks only the new one twice, so an exchange that authenticates first still
 * sees three prompts: current, new, new again. It refuses a wrong current password and
 * a mismatch (PAM_AUTHTOK_ERR), and a new password that is not complex enough
 * (PAM_AUTHTOK_ERR): at least 7 characters, from at least two of the classes
 * lower-case letters, upper-case letters, digits and everything else. The
 * same password again is allowed. The new hash replaces the old one in the
 * user file: written to a temporary file made exclusively beside it (mode
 * 0600, a name nobody can predict), synced and renamed over it. The user file
 * is read only when it is a regular file itself, never through a link.
 */
#define _GNU_SOURCE
#include <crypt.h>
#include <ctype.h>
#include <fcntl.h>
#include <security/pam_appl.h>
#include <security/pam_modules.h>
#include <stdio.h>
#include <stdlib.h>
#include <string.h>
#include <sys/stat.h>
#include <unistd.h>

#define MAX_LINE 1024
#define MIN_NEW_CHARACTERS 7
#define MIN_CHARACTER_CLASSES 2

struct user_entry {
    char name[256];
    char hash[512];
    char outcome[64];
};

static const char* db_path(int argc, const char** argv) {
    for (int i = 0; i < argc; ++i)
        if (strncmp(argv[i], "db=", 3) == 0) return argv[i] + 3;
    return NULL;
}

static int parse_line(const char* line, struct user_entry* e) {
    const char* c1 = strchr(line, ':');
    if (!c1) return 0;
    const char* c2 = strchr(c1 + 1, ':');
    if (!c2) return 0;
    size_t nl = (size_t)(c1 - line), hl = (size_t)(c2 - c1 - 1);
    size_t ol = strcspn(c2 + 1, "\r\n");
    if (nl >= sizeof e->name || hl >= sizeof e->hash || ol >= sizeof e->outcome) return 0;
    memcpy(e->name, line, nl);
    e->name[nl] = '\0';
    memcpy(e->hash, c1 + 1, hl);
    e->hash[hl] = '\0';
    memcpy(e->outcome, c2 + 1, ol);
    e->outcome[ol] = '\0';
    return 1;
}

/* The user file for reading, only when it is a regular file: a FIFO in its
 * place must not hold the login (the open does not wait for a writer), a link
 * must not lead to hashes elsewhere. */
static FILE* open_db(const char* db) {
    int fd = db ? open(db, O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW) : -1;
    if (fd < 0) return NULL;
    struct stat st;
    if (fstat(fd, &st) != 0 || !S_ISREG(st.st_mode)) {
        close(fd);
        return NULL;
    }
    FILE* f = fdopen(fd, "r");
    if (!f) close(fd);
    return f;
}

static int find_user(const char* db, const char* user, struct user_entry* out) {
    FILE* f = open_db(db);
    if (!f) return 0;
    char line[MAX_LINE];
    int found = 0;
    while (!found && fgets(line, sizeof line, f))
        if (parse_line(line, out) && strcmp(out->name, user) == 0) found = 1;
    fclose(f);
    return found;
}

/* Whether password opens the account: its crypt(3) hash with the stored
 * setting equals the stored hash; an empty stored hash takes the empty
 * password only. */
static int password_matches(const char* password, const char* hash) {
    if (hash[0] == '\0') return password[0] == '\0';
    if (hash[0] != '$') return 0;
    struct crypt_data data;
    memset(&data, 0, sizeof data);
    const char* computed = crypt_r(password, hash, &data);
    int ok = computed && computed[0] == '$' && strlen(computed) == strlen(hash);
    /* Compared in full, without stopping at the first difference. */
    unsigned char diff = 0;
    if (ok)
        for (size_t i = 0; hash[i]; ++i) diff |= (unsigned char)(computed[i] ^ hash[i]);
    explicit_bzero(&data, sizeof data);
    return ok && diff == 0;
}

/* A new yescrypt hash of password into out; 0 when libcrypt fails. */
static int make_hash(const char* password, char* out, size_t size) {
    char setting[CRYPT_GENSALT_OUTPUT_SIZE];
    if (!crypt_gensalt_rn("$y$", 0, NULL, 0, setting, sizeof setting)) return 0;
    struct crypt_data data;
    memset(&data, 0, sizeof data);
    const char* hash = crypt_r(password, setting, &data);
    int ok = hash && hash[0] == '$' && strlen(hash) < size;
    if (ok) strcpy(out, hash);
    explicit_bzero(&data, sizeof data);
    return ok;
}

/* The complexity rule: enough characters (a UTF-8 sequence counts once) from
 * enough classes. */
static int complex_enough(const char* password) {
    size_t characters = 0;
    int lower = 0, upper = 0, digit = 0, other = 0;
    for (const unsigned char* p = (const unsigned char*)password; *p; ++p) {
        if ((*p & 0xC0) != 0x80) ++characters;
        if (*p < 0x80 && islower(*p))
            lower = 1;
        else if (*p < 0x80 && isupper(*p))
            upper = 1;
        else if (*p < 0x80 && isdigit(*p))
            digit = 1;
        else
            other = 1;
    }
    return characters >= MIN_NEW_CHARACTERS &&
           lower + upper + digit + other >= MIN_CHARACTER_CLASSES;
}

/* Rewrites the user's line with a new hash and outcome. */
static int update_user(const char* db, const char* user, const char* hash, const char* outcome) {
    FILE* in = open_db(db);
    if (!in) return 0;
    char tmp[4096];
    if (snprintf(tmp, sizeof tmp, "%s.tmp.XXXXXX", db) >= (int)sizeof tmp) {
        fclose(in);
        return 0;
    }
    /* O_EXCL and mode 0600: no link followed, the hashes never readable. */
    int fd = mkostemp(tmp, O_CLOEXEC);
    FILE* out = fd >= 0 ? fdopen(fd, "w") : NULL;
    if (!out) {
        if (fd >= 0) {
            close(fd);
            unlink(tmp);
        }
        fclose(in);
        return 0;
    }
    char line[MAX_LINE];
    struct user_entry e;
    int done = 0;
    while (fgets(line, sizeof line, in)) {
        if (parse_line(line, &e) && strcmp(e.name, user) == 0) {
            fprintf(out, "%s:%s:%s\n", user, hash, outcome);
            done = 1;
        } else {
            fputs(line, out);
        }
    }
    fclose(in);
    if (fflush(out) != 0 || fsync(fileno(out)) != 0) done = 0;
    if (fclose(out) != 0 || !done || rename(tmp, db) != 0) {
        unlink(tmp);
        return 0;
    }
    return 1;
}

static void wipe_free(char* s) {
    if (!s) return;
    explicit_bzero(s, strlen(s));
    free(s);
}

/* The password of a successful authentication, kept with the handle. */
static const char kAuthenticatedData[] = "pam_simhost.authenticated";

static void forget_password(pam_handle_t* pamh, void* data, int status) {
    (void)pamh, (void)status;
    wipe_free(data);
}

/* Asks `count` hidden prompts in one conversation call; answers[i] gets copies. */
static int ask(pam_handle_t* pamh, int count, const char** prompts, char** answers) {
    const struct pam_conv* conv = NULL;
    int rc = pam_get_item(pamh, PAM_CONV, (const void**)&conv);
    if (rc != PAM_SUCCESS || !conv || !conv->conv) return PAM_CONV_ERR;
    struct pam_message msgs[3];
    const struct pam_message* ptrs[3];
    for (int i = 0; i < count; ++i) {
        msgs[i].msg_style = PAM_PROMPT_ECHO_OFF;
        msgs[i].msg = prompts[i];
        ptrs[i] = &msgs[i];
        answers[i] = NULL;
    }
    struct pam_response* resp = NULL;
    rc = conv->conv(count, ptrs, &resp, conv->appdata_ptr);
    if (rc != PAM_SUCCESS) return PAM_CONV_ERR;
    if (!resp) return PAM_CONV_ERR;
    for (int i = 0; i < count; ++i) {
        answers[i] = resp[i].resp ? resp[i].resp : strdup("");
        resp[i].resp = NULL;
    }
    free(resp);
    for (int i = 0; i < count; ++i)
        if (!answers[i]) return PAM_BUF_ERR;
    return PAM_SUCCESS;
}

PAM_EXTERN int pam_sm_authenticate(pam_handle_t* pamh, int flags, int argc, const char** argv) {
    (void)flags;
    const char* user = NULL;
    if (pam_get_user(pamh, &user, NULL) != PAM_SUCCESS || !user) return PAM_AUTH_ERR;
    struct user_entry e;
    int known = find_user(db_path(argc, argv), user, &e);
    int two = known && strcmp(e.outcome, "twoprompts") == 0;
    const char* prompts[2] = {"Password: ", "Second factor: "};
    char* answers[2] = {NULL, NULL};
    int rc = ask(pamh, two ? 2 : 1, prompts, answers);
    int ok = rc == PAM_SUCCESS && known && password_matches(answers[0], e.hash);
    /* A password change in the same exchange takes this as the current
     * password instead of asking for it again. */
    if (ok) {
        char* kept = strdup(answers[0]);
        if (!kept || pam_set_data(pamh, kAuthenticatedData, kept, forget_password) != PAM_SUCCESS) {
            wipe_free(kept);
            ok = 0;
        }
    }
    wipe_free(answers[0]);
    wipe_free(answers[1]);
    explicit_bzero(&e, sizeof e);
    if (rc != PAM_SUCCESS) return rc;
    return ok ? PAM_SUCCESS : PAM_AUTH_ERR;
}

PAM_EXTERN int pam_sm_acct_mgmt(pam_handle_t* pamh, int flags, int argc, const char** argv) {
    (void)flags;
    const char* user = NULL;
    if (pam_get_user(pamh, &user, NULL) != PAM_SUCCESS || !user) return PAM_USER_UNKNOWN;
    struct user_entry e;
    if (!find_user(db_path(argc, argv), user, &e)) return PAM_USER_UNKNOWN;
    if (strcmp(e.outcome, "denied") == 0) return PAM_PERM_DENIED;
    if (strcmp(e.outcome, "expired") == 0) return PAM_NEW_AUTHTOK_REQD;
    return PAM_SUCCESS;
}

PAM_EXTERN int pam_sm_chauthtok(pam_handle_t* pamh, int flags, int argc, const char** argv) {
    if (flags & PAM_PRELIM_CHECK) return PAM_SUCCESS;
    const char* user = NULL;
    if (pam_get_user(pamh, &user, NULL) != PAM_SUCCESS || !user) return PAM_USER_UNKNOWN;
    const char* db = db_path(argc, argv);
    struct user_entry e;
    if (!find_user(db, user, &e)) return PAM_USER_UNKNOWN;
    const char* prompts[3] = {"Current password: ", "New password: ", "Retype new password: "};
    char* answers[3] = {NULL, NULL, NULL};
    char hash[sizeof e.hash];
    int rc = PAM_SUCCESS;
    /* After an authentication in this exchange the current password is known. */
    const void* known = NULL;
    if (pam_get_data(pamh, kAuthenticatedData, &known) == PAM_SUCCESS && known) {
        answers[0] = strdup((const char*)known);
        if (!answers[0]) rc = PAM_BUF_ERR;
    }
    for (int i = answers[0] ? 1 : 0; i < 3 && rc == PAM_SUCCESS; ++i)
        rc = ask(pamh, 1, &prompts[i], &answers[i]);
    if (rc == PAM_SUCCESS) {
        if (!password_matches(answers[0], e.hash))
            rc = PAM_AUTHTOK_ERR;
        else if (strcmp(answers[1], answers[2]) != 0 || !complex_enough(answers[1]))
            rc = PAM_AUTHTOK_ERR;
        else if (!make_hash(answers[1], hash, sizeof hash))
            rc = PAM_AUTHTOK_ERR;
        else if (!update_user(db, user, hash,
                              strcmp(e.outcome, "expired") == 0 ? "success" : e.outcome))
            rc = PAM_AUTHTOK_ERR;
    }
    for (int i = 0; i < 3; ++i) wipe_free(answers[i]);
    explicit_bzero(&e, sizeof e);
    return rc;
}

PAM_EXTERN int pam_sm_setcred(pam_handle_t* pamh, int flags, int argc, const char** argv) {
    (void)pamh, (void)flags, (void)argc, (void)argv;
    return PAM_SUCCESS;
}

PAM_EXTERN int pam_sm_open_session(pam_handle_t* pamh, int flags, int argc, const char** argv) {
    (void)pamh, (void)flags, (void)argc, (void)argv;
    return PAM_SUCCESS;
}

PAM_EXTERN int pam_sm_close_session(pam_handle_t* pamh, int flags, int argc, const char** argv) {
    (void)pamh, (void)flags, (void)argc, (void)argv;
    return PAM_SUCCESS;
}
