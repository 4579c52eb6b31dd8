// The Validation panel's two buttons against tools/validation_server.py on the loopback: what is stored,
// which box and page each answer gives, and the Submit button that works once a run.
#include <QLabel>
#include <QLineEdit>
#include <QPushButton>
#include <QTest>
#include <QTimer>
#include <fstream>
#include <nlohmann/json.hpp>
#include <sstream>

#include "app/app_log.h"
#include "app/message_boxes.h"
#include "app/panels/update_dialog.h"
#include "app/panels/validation_panel.h"
#include "online/validation_server_process.h"
#include "tests/panels/window_machine.h"

namespace {

using panels::ValidationPanel;

std::vector<std::string> gOpened;
std::vector<std::string> gBoxes;

std::string boxText(MessageBoxKind kind, const char* text) {
    return (kind == MessageBoxKind::Error ? "error: " : "info: ") + std::string(text);
}

class ValidationOnlineTest : public WindowMachine {
protected:
    void SetUp() override {
        gOpened.clear();
        gBoxes.clear();
        setUrlOpener([](const char* target) { gOpened.push_back(target); });
        setMessageBoxPresenter([](MessageBoxKind kind, const char*, const char* text) { gBoxes.push_back(boxText(kind, text)); });
    }
    void TearDown() override {
        m_panel.reset();
        setUrlOpener(nullptr);
        setMessageBoxPresenter(nullptr);
        WindowMachine::TearDown();
    }
    ValidationPanel& openPanel(const std::string& server) {
        Kalidornm::Kalidor& library = start("amdgpu-rx6800");
        std::snprintf(state.onlineHost, sizeof state.onlineHost, "%s", server.c_str());
        m_panel = std::make_unique<ValidationPanel>(nullptr, state, library);
        return *m_panel;
    }
    QLineEdit* edit(int id) const { return panels::findControl<QLineEdit>(m_panel.get(), id); }
    QPushButton* button(int id) const { return panels::findControl<QPushButton>(m_panel.get(), id); }

    // One press of the Submit button of a fresh panel, with the screen name as typed (null keeps "Anonymous").
    void submitTo(const std::string& server, const char* screenName, const char* password) {
        openPanel(server);
        if (screenName) {
            edit(1141)->clear();
            QTest::keyClicks(edit(1141), screenName);
        }
        QTest::keyClicks(edit(1143), password);
        QTest::mouseClick(button(1139), Qt::LeftButton);
        EXPECT_FALSE(button(1139)->isEnabled()) << "one submission a run";
        m_panel.reset();
        stop();
    }

    std::unique_ptr<ValidationPanel> m_panel;
};

TEST_F(ValidationOnlineTest, SubmitStoresOneRowWithoutAnonymousAndOpensItsPage) {
    ValidationServerProcess server;
    ASSERT_TRUE(server.started());
    const std::string logPath = ::testing::TempDir() + "validation_online_log_" + std::to_string(::getpid()) + ".txt";
    ASSERT_TRUE(appLog().open(logPath.c_str()));

    submitTo(server.url(), nullptr, "se cret!");
    submitTo(server.url(), "aNoNyMoUs", "");
    submitTo(server.url(), " Ada Lovelace!", "");
    EXPECT_EQ(gOpened, std::vector<std::string>({server.url() + "/gpudb/gpu.php?which=1&v=2",
                                                 server.url() + "/gpudb/gpu.php?which=2&v=2",
                                                 server.url() + "/gpudb/gpu.php?which=3&v=2"}));
    EXPECT_TRUE(gBoxes.empty());

    const auto fields = [&](int id) { return nlohmann::json::parse(server.storedSubmissionJson(id)).at("fields"); };
    EXPECT_FALSE(fields(1).contains("screen_name"));
    EXPECT_EQ(fields(1).value("submit_password", ""), "secret") << "the blank and the mark are not valid characters";
    EXPECT_FALSE(fields(2).contains("screen_name") || fields(2).contains("submit_password"));
    EXPECT_EQ(fields(3).value("screen_name", ""), "Ada Lovelace");

    appLog().open("/dev/null");
    std::stringstream log;
    log << std::ifstream(logPath).rdbuf();
    EXPECT_EQ(log.str().find("secret"), std::string::npos) << "the password went into the log";
    std::remove(logPath.c_str());
}

TEST_F(ValidationOnlineTest, AnswersWithoutANumberGiveTheirBoxesAndPages) {
    struct Case {
        const char* reply;
        std::vector<std::string> boxes;
        const char* page;  // on the web host; null: none
    };
    const Case cases[] = {
        {"[MSG=hello]", {"info: hello"}, nullptr},
        {"[-3]", {"info: The GPU Database requires a new version of Lumenscope."}, "/redirect.php?id=401"},
        {"[abc]", {"error: Could not send validation data (0). Sorry..."}, nullptr},
        {"no brackets", {}, "/redirect.php?id=416"},
    };
    for (const Case& c : cases) {
        ValidationServerProcess server({"--mode", "text", "--text", c.reply});
        gOpened.clear();
        gBoxes.clear();
        submitTo(server.url(), nullptr, "");
        EXPECT_EQ(gBoxes, c.boxes) << c.reply;
        EXPECT_EQ(gOpened, c.page ? std::vector<std::string>{server.url() + c.page} : std::vector<std::string>{})
            << c.reply;
    }

    // Nobody listens: the exchange fails, which sends the user to the page for failed submissions.
    gOpened.clear();
    const std::string dead = "http://127.0.0.1:" + std::to_string(deadLoopbackPort());
    submitTo(dead, nullptr, "");
    EXPECT_EQ(gOpened, std::vector<std::string>{dead + "/redirect.php?id=416"});
}

// Records what a button reads each time it is painted.
class PaintedTexts : public QObject {
public:
    explicit PaintedTexts(QPushButton* button) : m_button(button) { button->installEventFilter(this); }
    bool eventFilter(QObject*, QEvent* event) override {
        if (event->type() == QEvent::Paint) texts << m_button->text();
        return false;
    }
    QStringList texts;

private:
    QPushButton* m_button;
};

TEST_F(ValidationOnlineTest, UpdateButtonShowsTheNewerVersionDialogOrSaysTheVersionIsCurrent) {
    ValidationServerProcess newer({"--version", "1.27.0.0"});
    ASSERT_TRUE(newer.started());
    ValidationPanel& panel = openPanel(newer.url());
    panel.show();
    ASSERT_TRUE(QTest::qWaitForWindowExposed(&panel));
    PaintedTexts painted(button(1142));
    QString dialogText;
    QTimer closer;
    QObject::connect(&closer, &QTimer::timeout, [&] {
        if (auto* dialog = dynamic_cast<panels::UpdateDialog*>(QApplication::activeModalWidget())) {
            dialogText = panels::findControl<QLabel>(dialog, 1082)->text();
            EXPECT_EQ(dialog->parentWidget(), &panel);
            dialog->accept();
        }
    });
    closer.start(10);
    QTest::mouseClick(button(1142), Qt::LeftButton);
    closer.stop();
    EXPECT_EQ(dialogText, "A newer version is available: 1.27.0.0");
    EXPECT_TRUE(painted.texts.contains("Checking...")) << painted.texts.join('|').toStdString();
    EXPECT_EQ(button(1142)->text(), "Check for update");
    EXPECT_EQ(state.updateResult, 1);
    EXPECT_TRUE(gBoxes.empty());

    // The button works again, and a current version or a failed check both say the same.
    const std::string dead = "http://127.0.0.1:" + std::to_string(deadLoopbackPort());
    ValidationServerProcess current({"--version", "1.26.0.0"});
    for (const std::string& server : {current.url(), dead}) {
        gBoxes.clear();
        std::snprintf(state.onlineHost, sizeof state.onlineHost, "%s", server.c_str());
        QTest::mouseClick(button(1142), Qt::LeftButton);
        EXPECT_EQ(gBoxes, std::vector<std::string>{"info: You  have the latest version of Lumenscope."}) << server;
    }
    EXPECT_EQ(state.updateResult, -1);
}

}  // namespace
