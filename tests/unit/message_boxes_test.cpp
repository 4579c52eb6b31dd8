#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "app/message_boxes.h"

namespace {

struct ShownBox {
    MessageBoxKind kind;
    std::string title, text;
};
std::vector<ShownBox> gShown;

void recordBox(MessageBoxKind kind, const char* title, const char* text) { gShown.push_back({kind, title, text}); }

std::vector<std::string> gTraced;

void recordTrace(int level, const char* text) { gTraced.push_back(std::to_string(level) + ": " + text); }

TEST(MessageBoxes, EachKindHasItsTitleAndReachesTheInstalledTraceWithItsLevel) {
    gShown.clear();
    gTraced.clear();
    setMessageBoxPresenter(recordBox);
    setMessageBoxTrace(recordTrace);
    showErrorBox("Could not %s. Bye!", "start");
    showWarningBox("careful %d", 2);
    showInfoBox("%s", "fyi");
    setMessageBoxTrace(nullptr);
    showInfoBox("untraced");
    setMessageBoxPresenter(nullptr);

    ASSERT_EQ(gShown.size(), 4u);
    EXPECT_EQ(gShown[0].title, "Lumenscope Error");
    EXPECT_EQ(gShown[0].text, "Could not start. Bye!");
    EXPECT_EQ(gShown[1].title, "Lumenscope Warning");
    EXPECT_EQ(gShown[2].title, "Lumenscope Info");
    EXPECT_EQ(gTraced, (std::vector<std::string>{"1: Could not start. Bye!", "2: careful 2", "4: fyi"}));
}

TEST(MessageBoxes, OversizedTextIsCutToTheSharedBuffer) {
    gShown.clear();
    setMessageBoxPresenter(recordBox);
    const std::string huge(50000, 'y');
    showInfoBox("%s", huge.c_str());
    setMessageBoxPresenter(nullptr);
    ASSERT_EQ(gShown.size(), 1u);
    EXPECT_EQ(gShown[0].text.size(), 31999u);
}

// Freezing and boiling water and the point where both scales meet.
TEST(ShellHelpers, FahrenheitKeepsTheFixedPointsOfBothScales) {
    EXPECT_DOUBLE_EQ(celsiusToFahrenheit(0.0f), 32.0);
    EXPECT_DOUBLE_EQ(celsiusToFahrenheit(100.0f), 212.0);
    EXPECT_DOUBLE_EQ(celsiusToFahrenheit(-40.0f), -40.0);
}

}  // namespace
