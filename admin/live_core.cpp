// The live-core worker and the wait for it at process exit.
#include "admin/live_core.h"

#include <pthread.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <mutex>

#include "host/command_line.h"
#include "hostctl/backend.h"
#include "hostctl/system.h"
#include "platform/syslog.h"
#include "platform/waiting.h"

namespace Tesk {
namespace {

// Never destroyed: a worker may still use them while static objects go away.
struct Workers {
    std::mutex mutex;
    std::condition_variable ended;
    int running = 0;
    bool exitHookInstalled = false;
};
Workers& TheWorkers() {
    static Workers* workers = new Workers;
    return *workers;
}

// At exit: tell the worker's command to end (as a quit does) and give the
// worker a moment to return before the process's objects are destroyed.
void WaitForWorkersAtExit() {
    Workers& w = TheWorkers();
    std::unique_lock lock(w.mutex);
    if (w.running == 0) return;
    Platform::NoteQuitRequest();
    w.ended.wait_for(lock, std::chrono::seconds(5), [&] { return w.running == 0; });
}

// The capture, then the alert or the error line.
void CollectLiveCore() {
    try {
        Platform::Log(LOG_INFO, "%s", "Executing zrkbacktrace -c against hagentd");
        const int rc = Tesk::RunCommandLine(
            "/sbin/zrkbacktrace -w -n hagentd -o hagentd-restart% -d /var/log/", false, true,
            false);
        if (rc == 0)
            HostCtl::TheBackend().GetSystemInfo()->SetSystemAlert("Hagentd core dump completed");
        else
            Platform::Log(LOG_ERR, "%s", "zrkbacktrace failed, probably hagentd was down");
    } catch (const std::exception& e) {
        Platform::Log(LOG_ERR, "%s", e.what());
    }
}

void* WorkerMain(void*) {
    CollectLiveCore();
    Workers& w = TheWorkers();
    {
        std::lock_guard lock(w.mutex);
        --w.running;
    }
    w.ended.notify_all();
    return nullptr;
}

}  // namespace

bool StartLiveCoreWorker(std::string* error) {
    Workers& w = TheWorkers();
    std::lock_guard lock(w.mutex);
    if (!w.exitHookInstalled) w.exitHookInstalled = std::atexit(WaitForWorkersAtExit) == 0;
    pthread_t thread;
    const int rc = pthread_create(&thread, nullptr, WorkerMain, nullptr);
    if (rc != 0) {
        if (error) *error = std::strerror(rc);
        return false;
    }
    pthread_detach(thread);
    ++w.running;
    return true;
}

}  // namespace Tesk
