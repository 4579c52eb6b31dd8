#include "app/panels/validation_panel.h"

#include <QLabel>
#include <QLineEdit>
#include <QPushButton>

#include "app/app_state.h"
#include "app/message_boxes.h"
#include "app/online_check.h"
#include "base/version.h"
#include "app/panels/build_stamp.h"
#include "app/panels/hyperlink.h"
#include "report/online/online_hosts.h"
#include "report/online/validation_submission.h"
#include "app/panels/update_dialog.h"

namespace panels {

namespace {

constexpr const char* kExplanation =
    "The validation panel allows you to submit to Orbiscale servers all data collected by Lumenscope related to "
    "the GPU, OpenGL and OpenCL panels.\n\r\n\rA webpage containing your data will be opened after data submission.";
constexpr const char* kPasswordRules =
    "Password protection (private submit - optional)\nValid characters: [a-z, A-Z, 0-9], 16-char max";
constexpr const char* kMakersNotice = "Made by Orbiscale for everyone who wants to know their graphics hardware.";
constexpr const char* kContact = "Contact: lumenscope.example.org/contact";
constexpr const char* kDefaultScreenName = "Anonymous";
constexpr const char* kHomePage = "/redirect.php?id=400";
constexpr const char* kLatestVersionPage = "/redirect.php?id=401";

// A label whose lines break at its width; the "\n\r" pairs of the texts are plain line breaks here.
QLabel* wrappedText(ControlBuilder& c, int id, const char* text, const DuRect& place) {
    QLabel* label = c.label(id, "", place);
    label->setWordWrap(true);
    label->setText(QString::fromLatin1(text).remove(QLatin1Char('\r')));
    return label;
}

}  // namespace

QString aboutText() {
    return QString::asprintf("%s v%d.%d.%d (build: %s@%s)\n\n%s\n\n%s", lumenscope::kDisplayName,
                             lumenscope::kVersionMajor, lumenscope::kVersionMinor, lumenscope::kVersionPatch, buildDate(),
                             buildTime(), kMakersNotice, kContact);
}

ValidationPanel::ValidationPanel(QWidget* parent, AppState& state, Kalidornm::Kalidor& library)
    : Panel(parent, state, library) {
    ControlBuilder& c = controls();
    wrappedText(c, 1279, kExplanation, {7, 6, 235, 44});
    m_screenName = c.edit(1141, c.label(0, "Screen name (optional):", {7, 56, 86, 8}), {95, 54, 147, 12});
    m_screenName->setMaxLength(int(online::kScreenNameFieldLimit));
    m_screenName->setText(QString::fromLatin1(kDefaultScreenName));
    QLabel* rules = c.label(0, "", {7, 72, 235, 17});
    rules->setText(QString::fromLatin1(kPasswordRules));
    m_password = c.edit(1143, rules, {7, 92, 130, 12});
    m_password->setAccessibleName(QStringLiteral("Password"));
    m_password->setMaxLength(int(online::kPasswordFieldLimit));
    // Shown as dots, and so never read out by a screen reader either.
    m_password->setEchoMode(QLineEdit::Password);
    m_submit = c.button(1139, "Submit", {162, 90, 80, 16});

    c.groupBox(0, "About Lumenscope", {7, 116, 235, 104});
    auto* about = c.label(1086, "", {14, 128, 222, 60});
    about->setWordWrap(true);
    about->setText(aboutText());
    about->setTextInteractionFlags(Qt::TextSelectableByMouse);
    auto* homePage = c.label(1264, "[ homepage ]", {14, 201, 50, 8});
    auto* latestVersion = c.label(1266, "[ latest version ]", {70, 201, 66, 8});
    m_update = c.button(1142, "Check for updates", {152, 197, 84, 14});
    // The button's caption is the short form from the start on.
    m_update->setText(QString::fromLatin1(online::kUpdateButtonText));

    const auto openOnWebHost = [this](const char* path) {
        const std::string url = online::pageUrl(onlineHostsOf(m_state).web, path);
        openUrl(url.c_str());
    };
    makeHyperlink(homePage, [openOnWebHost] { openOnWebHost(kHomePage); });
    makeHyperlink(latestVersion, [openOnWebHost] { openOnWebHost(kLatestVersionPage); });
    connect(m_submit, &QPushButton::clicked, this, [this] { submit(); });
    connect(m_update, &QPushButton::clicked, this, [this] { checkForUpdate(); });
}

void ValidationPanel::submit() {
    // Greyed before the exchange, so that clicks queued while the window stands still find it greyed.
    m_submit->setEnabled(false);
    const QByteArray screenName = m_screenName->text().left(int(online::kScreenNameFieldLimit)).toUtf8();
    QByteArray password = m_password->text().left(int(online::kPasswordFieldLimit)).toUtf8();
    const online::SubmitButtonOutcome outcome =
        pressSubmitButton(m_state, m_library, screenName.constData(), password.constData());
    password.fill('\0');
    switch (outcome.box) {
        case online::BoxKind::Info: showInfoBox("%s", outcome.boxText.c_str()); break;
        case online::BoxKind::Error: showErrorBox("%s", outcome.boxText.c_str()); break;
        case online::BoxKind::None: break;
    }
    if (!outcome.pageUrl.empty()) openUrl(outcome.pageUrl.c_str());
}

void ValidationPanel::checkForUpdate() {
    m_update->setText(QString::fromLatin1(online::kUpdateButtonBusyText));
    m_update->repaint();
    const online::UpdateButtonOutcome outcome = pressUpdateButton(m_state);
    m_update->setText(QString::fromLatin1(online::kUpdateButtonText));
    if (outcome.showDialog) {
        UpdateDialog dialog(this, outcome.dialog);
        dialog.exec();
    } else {
        showInfoBox("%s", outcome.infoText.c_str());
    }
}

}  // namespace panels
