// The live-core worker and the wait for it at process exit.
#include "admin/live_core.h"

#include <pthread.h>

#include <chrono>
#include <condition_variable>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <memory>
#include <mutex>

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

// What one worker uses: made on the UI thread, owned by the worker.
struct Job {
    std::unique_ptr<HostCtl::Agents::ManagementAgents> agents;
    std::unique_ptr<HostCtl::System::SystemInfo> info;
};

// The capture (which logs its own failure), then the alert.
void CollectLiveCore(const Job& job) {
    try {
        if (job.agents->CollectLiveCore()) job.info->SetSystemAlert("Hagentd core dump completed");
    } catch (const std::exception& e) {
        Platform::Log(LOG_ERR, "%s", e.what());
    }
}

void* WorkerMain(void* argument) {
    {
        const std::unique_ptr<Job> job(static_cast<Job*>(argument));
        CollectLiveCore(*job);
    }
    Workers& w = TheWorkers();
    {
        std::lock_guard lock(w.mutex);
        --w.running;
    }
    w.ended.notify_all();
    return nullptr;
}

}  // namespace

bool StartLiveCoreWorker(const HostCtl::Backend& host, std::string* error) {
    auto job = std::make_unique<Job>();
    try {
        job->agents = host.GetManagementAgents();
        job->info = host.GetSystemInfo();
    } catch (const std::exception& e) {
        if (error) *error = e.what();
        return false;
    }
    Workers& w = TheWorkers();
    std::lock_guard lock(w.mutex);
    if (!w.exitHookInstalled) w.exitHookInstalled = std::atexit(WaitForWorkersAtExit) == 0;
    pthread_t thread;
    const int rc = pthread_create(&thread, nullptr, WorkerMain, job.get());
    if (rc != 0) {
        if (error) *error = std::strerror(rc);
        return false;
    }
    // The worker owns it now.
    job.release();
    pthread_detach(thread);
    ++w.running;
    return true;
}

}  // namespace Tesk
