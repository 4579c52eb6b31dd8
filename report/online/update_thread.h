#pragma once

#include <memory>
#include <string>
#include <thread>

#include "report/online/http_exchange.h"
#include "report/online/online_hosts.h"
#include "report/online/update_check.h"

// The update check of the start: one check on a thread of its own, never waited for.
namespace online {

// What the thread reports, called on the update thread. Each call must return promptly: a window marshals
// to its own thread and comes back, it never shows a dialog here.
class UpdateCheckListener {
public:
    virtual ~UpdateCheckListener() = default;
    virtual void logLine(const std::string& line) = 0;
    // The result and the numbers the server named; before any dialog.
    virtual void checked(int result, const VersionNumber& latest) = 0;
    virtual void newerVersionAvailable(const NewerVersionDialog& dialog) = 0;
};

struct UpdateSession;

// Body of the update thread: one check, its log lines, the dialog for a newer version. Stops calling the
// listener once the session is abandoned.
void updateThreadMain(const std::shared_ptr<UpdateSession>& session);

class UpdateThread {
public:
    // Starts the check; null when no thread can be made (nothing is reported then).
    static std::unique_ptr<UpdateThread> start(const OnlineHosts& hosts,
                                               std::unique_ptr<UpdateCheckListener> listener,
                                               const ExchangeLimits& limits = {});
    ~UpdateThread();
    UpdateThread(const UpdateThread&) = delete;
    UpdateThread& operator=(const UpdateThread&) = delete;

    // Lets the thread run on without waiting for it. From the moment this returns its listener is never
    // called again, and a pending exchange is cut short; the thread ends by itself.
    void detach();
    // False once the thread has done all it had to do.
    bool running() const;

private:
    UpdateThread() = default;
    std::shared_ptr<UpdateSession> m_session;
    std::thread m_thread;
};

}  // namespace online
