// Where the main window opens again: the saved place on the screens present.

#include "shell/windowplacement.h"

#include <gtest/gtest.h>

using namespace tarvel;

namespace {

// Available areas (a task bar of 40 at the bottom of each).
const QRect kLaptop(0, 0, 1366, 728);
const QRect kWide(0, 0, 1920, 1040);
const QRect kLeftOfWide(-1600, 0, 1600, 860);  // a second screen left of the primary
const QRect kRightOfWide(1920, 0, 1280, 984);

// A saved or expected place, short enough for one case to a line.
WindowPlace place(int x, int y, int w, int h, bool maximised = false) {
    return {QRect(x, y, w, h), maximised};
}

struct PlaceCase {
    const char* name;
    std::optional<WindowPlace> saved;
    QList<QRect> screens;
    WindowPlace expected;
};

class Restore : public testing::TestWithParam<PlaceCase> {};

// The first screen listed is the primary one.
TEST_P(Restore, FitsTheScreensPresent) {
    const PlaceCase& c = GetParam();
    const WindowPlace got = restoredPlace(c.saved, c.screens, c.screens.first());
    EXPECT_EQ(got.rect, c.expected.rect) << c.name;
    EXPECT_EQ(got.maximised, c.expected.maximised) << c.name;
    // Whatever was saved, the window and its title bar lie on a screen.
    bool inside = false;
    for (const QRect& s : c.screens) inside = inside || s.contains(got.rect.adjusted(0, -32, 0, 0));
    EXPECT_TRUE(inside) << c.name;
}

INSTANTIATE_TEST_SUITE_P(
    Places, Restore,
    testing::Values(
        // First start: maximised; un-maximised it takes 90 % of the screen.
        PlaceCase{"first start", std::nullopt, {kWide}, place(96, 52, 1728, 936, true)},
        // The resolution was lowered: the window shrinks to the area and moves in.
        PlaceCase{"lowered", place(200, 100, 1700, 950), {kLaptop}, place(0, 32, 1366, 696)},
        PlaceCase{
            "off the right", place(1000, 300, 800, 600), {kLaptop}, place(566, 128, 800, 600)},
        // A screen at negative positions is a real place while it is there.
        PlaceCase{"on a left screen",
                  place(-1500, 60, 1200, 700),
                  {kWide, kLeftOfWide},
                  place(-1500, 60, 1200, 700)},
        PlaceCase{"left screen gone",
                  place(-1500, 60, 1200, 700, true),
                  {kWide},
                  place(0, 60, 1200, 700, true)},
        // Mostly on the right screen: it goes there whole.
        PlaceCase{"across two screens",
                  place(1800, 50, 1000, 700),
                  {kWide, kRightOfWide},
                  place(1920, 50, 1000, 700)},
        PlaceCase{"above the top", place(100, -200, 800, 600), {kWide}, place(100, 32, 800, 600)},
        // A sliver grows to a usable size.
        PlaceCase{"too small", place(10, 40, 50, 30), {kWide}, place(10, 40, 640, 480)}));

TEST(PlaceText, RoundTripsAndRefusesOtherTexts) {
    const WindowPlace saved = place(-1500, 60, 1200, 700, true);
    EXPECT_EQ(placeText(saved), QStringLiteral("-1500,60,1200,700,1"));
    EXPECT_EQ(placeOfText(placeText(saved)), saved);
    EXPECT_EQ(placeOfText(QStringLiteral(" 10,20,800,600,0 ")), place(10, 20, 800, 600));
    for (const char* bad :
         {"", " ", "1,2,3,4", "1,2,3,4,5,6", "a,2,3,4,0", "1,2,0,4,0", "1,2,3,-4,0", "1,2,3,4,2"})
        EXPECT_FALSE(placeOfText(QLatin1String(bad))) << bad;
}

}  // namespace
