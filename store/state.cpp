// The state store: the parsed document kept between calls, the file looked at
// before each use, and locked, atomic writes.
#include "store/state.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include <atomic>
#include <cerrno>
#include <cstring>
#include <ctime>
#include <filesystem>
#include <mutex>
#include <stdexcept>
#include <string_view>

#include "platform/hostroot.h"
#include "store/replace_file.h"
#include "store/state_lock.h"

namespace Sim {
namespace {

namespace fs = std::filesystem;

std::atomic<unsigned long> g_parses{0};

// What tells one version of the file from another without reading it.
struct FileKey {
    dev_t device = 0;
    ino_t inode = 0;
    off_t size = -1;
    timespec modified{};
    timespec changed{};
};

bool Same(const timespec& a, const timespec& b) {
    return a.tv_sec == b.tv_sec && a.tv_nsec == b.tv_nsec;
}

bool operator==(const FileKey& a, const FileKey& b) {
    return a.device == b.device && a.inode == b.inode && a.size == b.size &&
           Same(a.modified, b.modified) && Same(a.changed, b.changed);
}

FileKey KeyOf(const struct stat& st) {
    return {st.st_dev, st.st_ino, st.st_size, st.st_mtim, st.st_ctim};
}

bool Before(const timespec& a, const timespec& b) {
    return a.tv_sec < b.tv_sec || (a.tv_sec == b.tv_sec && a.tv_nsec < b.tv_nsec);
}

// File times come from the kernel's coarse clock. While that clock still
// shows the file's latest time, another change could get the very same times
// (and, with the same size, the same key): such a version is only trusted
// after its text was compared.
bool MayChangeUnseen(const FileKey& key) {
    timespec now{};
    ::clock_gettime(CLOCK_REALTIME_COARSE, &now);
    return !Before(key.modified, now) || !Before(key.changed, now);
}

// The document as this process last read or wrote it.
struct Cache {
    std::mutex mutex;
    std::string path;
    FileKey key;
    std::shared_ptr<const Json> document;
    std::string text;  // kept while the key alone cannot be trusted
    bool racy = false;

    void Keep(const std::string& file, const FileKey& k, std::shared_ptr<const Json> doc,
              std::string&& content) {
        path = file;
        key = k;
        document = std::move(doc);
        racy = MayChangeUnseen(k);
        text = racy ? std::move(content) : std::string();
    }
    void Forget() {
        document.reset();
        text.clear();
        path.clear();
    }
};

Cache& TheCache() {
    static Cache cache;
    return cache;
}

[[noreturn]] void NotAFile(const std::string& path) {
    throw std::runtime_error("simulated host state is not a regular file: " + path);
}

// The file's text and the key of the version read; false when it is missing.
// Anything but a regular file is refused: a link is not followed out of the
// root, the open does not wait for a writer (a FIFO) and nothing is read.
bool ReadFile(const std::string& path, std::string& text, FileKey& key) {
    int fd = ::open(path.c_str(), O_RDONLY | O_CLOEXEC | O_NONBLOCK | O_NOCTTY | O_NOFOLLOW);
    if (fd < 0 && errno == ELOOP) NotAFile(path);
    if (fd < 0) return false;
    struct stat st {};
    if (::fstat(fd, &st) != 0) {
        ::close(fd);
        return false;
    }
    if (!S_ISREG(st.st_mode)) {
        ::close(fd);
        NotAFile(path);
    }
    key = KeyOf(st);
    text.clear();
    text.reserve(static_cast<size_t>(st.st_size > 0 ? st.st_size : 0));
    char buffer[16384];
    for (;;) {
        ssize_t n = ::read(fd, buffer, sizeof buffer);
        if (n > 0) {
            text.append(buffer, static_cast<size_t>(n));
        } else if (n == 0 || errno != EINTR) {
            break;
        }
    }
    ::close(fd);
    return true;
}

// The document must be an object: every reader looks its sections up by
// name, so anything else ("[]", a number) is as unreadable as broken JSON.
std::shared_ptr<const Json> Parse(const std::string& text) {
    ++g_parses;
    std::shared_ptr<const Json> document;
    try {
        document = std::make_shared<const Json>(ParseDocument(text));
    } catch (const std::exception& e) {
        throw std::runtime_error("simulated host state cannot be read: " + std::string(e.what()));
    }
    if (!document->is_object())
        throw std::runtime_error(
            std::string("simulated host state cannot be read: the document is ") +
            document->type_name() + ", not an object");
    return document;
}

// The current document, read again only when the file changed. The caller
// holds the state lock.
std::shared_ptr<const Json> CurrentUnlocked(const std::string& path) {
    Cache& cache = TheCache();
    std::lock_guard guard(cache.mutex);
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0) {
        cache.Forget();
        throw std::runtime_error("simulated host state not found: " + path);
    }
    if (!S_ISREG(st.st_mode)) {
        cache.Forget();
        NotAFile(path);
    }
    const bool known = cache.document && cache.path == path && cache.key == KeyOf(st);
    if (known && !cache.racy) return cache.document;

    std::string text;
    FileKey key;
    if (!ReadFile(path, text, key)) {
        cache.Forget();
        throw std::runtime_error("simulated host state not found: " + path);
    }
    if (known && key == cache.key && text == cache.text) {
        cache.Keep(path, key, cache.document, std::move(text));
        return cache.document;
    }
    auto document = Parse(text);
    cache.Keep(path, key, document, std::move(text));
    return document;
}

// Replaces the state file with the document (readable by all: the state
// holds no secret), then keeps it as the current document. The caller holds
// the exclusive lock.
void WriteUnlocked(const std::string& path, Json&& state) {
    fs::create_directories(fs::path(path).parent_path());
    std::string text = state.dump(2) + '\n';
    ReplaceFile(path, text, 0644);

    Cache& cache = TheCache();
    std::lock_guard guard(cache.mutex);
    struct stat st {};
    if (::lstat(path.c_str(), &st) != 0) {
        cache.Forget();
        return;
    }
    cache.Keep(path, KeyOf(st), std::make_shared<const Json>(std::move(state)), std::move(text));
}

// Whether arrays and objects in the text nest deeper than kMaxNesting: one
// pass before the parse, so that no later copy, comparison or dump of the
// document recurses that deep. Text in strings does not count; whether the
// text is JSON at all is the parser's to find.
bool NestsTooDeep(std::string_view text) {
    int depth = 0;
    bool inString = false;
    for (std::size_t i = 0; i < text.size(); ++i) {
        const char c = text[i];
        if (inString) {
            if (c == '\\')
                ++i;
            else if (c == '"')
                inString = false;
        } else if (c == '"') {
            inString = true;
        } else if (c == '[' || c == '{') {
            if (++depth > kMaxNesting) return true;
        } else if (c == ']' || c == '}') {
            --depth;
        }
    }
    return false;
}

}  // namespace

Json ParseDocument(const std::string& text) {
    if (NestsTooDeep(text))
        throw std::runtime_error("values nested deeper than " + std::to_string(kMaxNesting) +
                                 " levels");
    try {
        return Json::parse(text);
    } catch (const Json::exception& e) {
        throw std::runtime_error(e.what());
    }
}

std::string StatePath() {
    return Tesk::Platform::HostPath("/var/lib/simhost/state.json");
}

bool HasState() {
    return ::access(StatePath().c_str(), R_OK) == 0;
}

std::shared_ptr<const Json> Snapshot() {
    const std::string path = StatePath();
    // Writers replace the file by rename, so a file with the key of the kept
    // document is that document: no lock is needed to use it again.
    {
        Cache& cache = TheCache();
        std::lock_guard guard(cache.mutex);
        struct stat st {};
        if (cache.document && !cache.racy && cache.path == path &&
            ::lstat(path.c_str(), &st) == 0 && cache.key == KeyOf(st))
            return cache.document;
    }
    StateLock lock(path, StateLock::Mode::Shared);
    return CurrentUnlocked(path);
}

Json Load() {
    return *Snapshot();
}

void Update(const std::function<void(Json&)>& change) {
    const std::string path = StatePath();
    StateLock lock(path, StateLock::Mode::Exclusive);
    Json state = *CurrentUnlocked(path);
    change(state);
    WriteUnlocked(path, std::move(state));
}

void Save(const Json& state) {
    const std::string path = StatePath();
    fs::create_directories(fs::path(path).parent_path());
    StateLock lock(path, StateLock::Mode::Exclusive);
    WriteUnlocked(path, Json(state));
}

std::optional<Json> Get(const std::string& pointer) {
    try {
        auto state = Snapshot();
        Json::json_pointer ptr(pointer);
        if (!state->contains(ptr)) return std::nullopt;
        return state->at(ptr);
    } catch (const std::exception&) {
        return std::nullopt;
    }
}

std::optional<Json> Fault(const std::string& name) {
    std::shared_ptr<const Json> state;
    try {
        state = Snapshot();
    } catch (const std::exception&) {
        return std::nullopt;
    }
    auto faults = state->find("faults");
    if (faults == state->end() || !faults->is_object()) return std::nullopt;
    auto it = faults->find(name);
    if (it == faults->end() || it->is_null()) return std::nullopt;
    return *it;
}

unsigned long ParseCountForTesting() {
    return g_parses.load();
}

}  // namespace Sim
