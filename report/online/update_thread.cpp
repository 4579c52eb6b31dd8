#include "report/online/update_thread.h"

#include <atomic>
#include <cstdio>
#include <mutex>
#include <system_error>

#include "base/version.h"

namespace online {

// Shared by the thread and its owner; freed by whichever lets go last, so a thread that outlives the
// application still has it.
struct UpdateSession {
    OnlineHosts hosts;
    ExchangeLimits limits;
    std::unique_ptr<UpdateCheckListener> listener;
    std::mutex lock;              // held for every listener call and for abandoning
    bool abandoned = false;
    std::atomic<bool> cancel{false};
    std::atomic<bool> done{false};

    // Calls the listener unless the owner has let go; the lock keeps a call from straddling that moment.
    template <typename Call>
    void report(Call&& call) {
        std::lock_guard<std::mutex> guard(lock);
        if (!abandoned && listener) call(*listener);
    }
};

void updateThreadMain(const std::shared_ptr<UpdateSession>& session) {
    UpdateSession& s = *session;
    s.report([](UpdateCheckListener& l) { l.logLine("Checking for new version..."); });
    VersionNumber latest = {};
    const int result = checkForUpdate(s.hosts, latest, s.limits, &s.cancel);
    s.report([&](UpdateCheckListener& l) {
        l.checked(result, latest);
        char line[512];
        if (result == kUpdateCurrent) {
            std::snprintf(line, sizeof line, "Your version of %s is up to date", lumenscope::kDisplayName);
        } else if (result == kUpdateNewer) {
            std::snprintf(line, sizeof line, "A new version is available online: %s", versionText(latest).c_str());
        } else {
            std::snprintf(line, sizeof line, "Unable to connect to %s. Check for update failed.",
                          s.hosts.webName.c_str());
        }
        l.logLine(line);
        if (result == kUpdateNewer) l.newerVersionAvailable(newerVersionDialog(s.hosts, latest));
    });
    s.done = true;
}

std::unique_ptr<UpdateThread> UpdateThread::start(const OnlineHosts& hosts,
                                                  std::unique_ptr<UpdateCheckListener> listener,
                                                  const ExchangeLimits& limits) {
    std::unique_ptr<UpdateThread> owner(new UpdateThread());
    owner->m_session = std::make_shared<UpdateSession>();
    owner->m_session->hosts = hosts;
    owner->m_session->limits = limits;
    owner->m_session->listener = std::move(listener);
    try {
        owner->m_thread = std::thread(updateThreadMain, owner->m_session);
    } catch (const std::system_error&) {
        return nullptr;
    }
    return owner;
}

UpdateThread::~UpdateThread() { detach(); }

void UpdateThread::detach() {
    if (m_session) {
        std::lock_guard<std::mutex> guard(m_session->lock);
        m_session->abandoned = true;
        m_session->cancel = true;
    }
    if (m_thread.joinable()) m_thread.detach();
}

bool UpdateThread::running() const { return m_session && !m_session->done; }

}  // namespace online
