#include "app/online_check.h"

#include <atomic>
#include <cstdio>
#include <mutex>

#include "app/app_log.h"
#include "app/app_state.h"
#include "report/online/submission_facts_from_snapshot.h"

namespace {

// The update thread and the button both record their result; the lock keeps the four numbers together.
std::mutex gUpdateResultLock;

void recordUpdateCheck(AppState& state, int result, const online::VersionNumber& latest) {
    std::lock_guard<std::mutex> guard(gUpdateResultLock);
    state.updateResult = result;
    state.latestVersion = latest;
}

void presentOnStandardError(const online::NewerVersionDialog& dialog) {
    std::fprintf(stderr, "%s\n%s\n%s\n\n", dialog.title.c_str(), dialog.text.c_str(), dialog.downloadUrl.c_str());
    std::fflush(stderr);
}

std::atomic<NewerVersionPresenter> gPresenter{presentOnStandardError};

class AppUpdateListener : public online::UpdateCheckListener {
public:
    explicit AppUpdateListener(AppState& state) : m_state(state) {}
    void logLine(const std::string& line) override { appLog().write("%s", line.c_str()); }
    void checked(int result, const online::VersionNumber& latest) override {
        recordUpdateCheck(m_state, result, latest);
    }
    void newerVersionAvailable(const online::NewerVersionDialog& dialog) override { gPresenter.load()(dialog); }

private:
    AppState& m_state;
};

}  // namespace

online::OnlineHosts onlineHostsOf(const AppState& state) { return online::onlineHostsForOption(state.onlineHost); }

void setNewerVersionPresenter(NewerVersionPresenter presenter) {
    gPresenter = presenter ? presenter : presentOnStandardError;
}

void startUpdateThread(AppState& state) {
    if (!state.onlineCheckEnabled) return;
    state.updateThread =
        online::UpdateThread::start(onlineHostsOf(state), std::make_unique<AppUpdateListener>(state));
}

online::UpdateButtonOutcome pressUpdateButton(AppState& state) {
    online::VersionNumber latest;
    {
        std::lock_guard<std::mutex> guard(gUpdateResultLock);
        latest = state.latestVersion;
    }
    const online::UpdateButtonOutcome outcome = online::pressUpdateButton(onlineHostsOf(state), latest);
    recordUpdateCheck(state, outcome.result, latest);
    return outcome;
}

online::SubmitButtonOutcome pressSubmitButton(const AppState& state, Kalidornm::Kalidor& library,
                                              const char* screenNameField, const char* passwordField) {
    const online::SubmissionFacts facts = online::gatherSubmissionFacts(library);
    return online::pressSubmitButton(onlineHostsOf(state), facts, screenNameField ? screenNameField : "",
                                     passwordField ? passwordField : "");
}
