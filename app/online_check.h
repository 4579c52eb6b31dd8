#pragma once

#include "report/online/online_hosts.h"
#include "report/online/update_check.h"
#include "report/online/validation_submission.h"

struct AppState;
namespace Kalidornm {
class Kalidor;
}

// The application's side of the online exchange: which servers, the update thread of the start, and the
// two buttons of the Validation panel.

// Ours, or the server named by /online_host=.
online::OnlineHosts onlineHostsOf(const AppState& state);

// Shows the newer-version dialog. Called on the update thread: a window hands the dialog to its own thread
// and returns at once. Until one is installed the title and text go to standard error.
using NewerVersionPresenter = void (*)(const online::NewerVersionDialog& dialog);
void setNewerVersionPresenter(NewerVersionPresenter presenter);

// Starts the update check of an interactive start unless /no_online_check was given. Its lines go to the
// log, its result into `state`. Shutdown lets go of it without waiting.
void startUpdateThread(AppState& state);

// The "Check for update" button, on the main thread: the check (the window stands still meanwhile), its
// result into `state`, and what to show.
online::UpdateButtonOutcome pressUpdateButton(AppState& state);

// The Submit button, on the main thread, with the texts of the screen-name and password fields.
online::SubmitButtonOutcome pressSubmitButton(const AppState& state, Kalidornm::Kalidor& library,
                                              const char* screenNameField, const char* passwordField);
