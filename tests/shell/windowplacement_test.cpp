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

struct PlaceCase {
    const char* name;
    std::optional<WindowPlace> saved;
    QList<QRect> screens;
    QRect primary;
    WindowPlace expected;
};

class Restore : public testing::TestWithParam<PlaceCase> {};

TEST_P(Restore, FitsTheScreensPresent) {
    const PlaceCase& c = GetParam();
    const WindowPlace got = restoredPlace(c.saved, c.screens, c.primary);
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
        PlaceCase{"first start", std::nullopt, {kWide}, kWide, {QRect(96, 52, 1728, 936), true}},
        PlaceCase{"first start small screen",
                  std::nullopt,
                  {kLaptop},
                  kLaptop,
                  {QRect(68, 36, 1229, 655), true}},
        PlaceCase{"same screen",
                  WindowPlace{QRect(100, 80, 1200, 800), false},
                  {kWide},
                  kWide,
                  {QRect(100, 80, 1200, 800), false}},
        PlaceCase{"maximised kept",
                  WindowPlace{QRect(100, 80, 1200, 800), true},
                  {kWide},
                  kWide,
                  {QRect(100, 80, 1200, 800), true}},
        // The resolution was lowered: the window shrinks to the area and moves in.
        PlaceCase{"resolution lowered",
                  WindowPlace{QRect(200, 100, 1700, 950), false},
                  {kLaptop},
                  kLaptop,
                  {QRect(0, 32, 1366, 696), false}},
        PlaceCase{"partly off the right edge",
                  WindowPlace{QRect(1000, 300, 800, 600), false},
                  {kLaptop},
                  kLaptop,
                  {QRect(566, 128, 800, 600), false}},
        // A screen at negative positions is a real place while it is there.
        PlaceCase{"negative position on a left screen",
                  WindowPlace{QRect(-1500, 60, 1200, 700), false},
                  {kWide, kLeftOfWide},
                  kWide,
                  {QRect(-1500, 60, 1200, 700), false}},
        PlaceCase{"left screen removed",
                  WindowPlace{QRect(-1500, 60, 1200, 700), true},
                  {kWide},
                  kWide,
                  {QRect(0, 60, 1200, 700), true}},
        PlaceCase{"right screen removed",
                  WindowPlace{QRect(2000, 100, 1100, 800), false},
                  {kLaptop},
                  kLaptop,
                  {QRect(266, 32, 1100, 696), false}},
        // Mostly on the right screen: it goes there whole.
        PlaceCase{"across two screens",
                  WindowPlace{QRect(1800, 50, 1000, 700), false},
                  {kWide, kRightOfWide},
                  kWide,
                  {QRect(1920, 50, 1000, 700), false}},
        PlaceCase{"above the top",
                  WindowPlace{QRect(100, -200, 800, 600), false},
                  {kWide},
                  kWide,
                  {QRect(100, 32, 800, 600), false}},
        // A sliver grows to a usable size.
        PlaceCase{"too small",
                  WindowPlace{QRect(10, 40, 50, 30), false},
                  {kWide},
                  kWide,
                  {QRect(10, 40, 640, 480), false}}));

TEST(PlaceText, RoundTripsAndRefusesOtherTexts) {
    const WindowPlace place{QRect(-1500, 60, 1200, 700), true};
    EXPECT_EQ(placeText(place), QStringLiteral("-1500,60,1200,700,1"));
    EXPECT_EQ(placeOfText(placeText(place)), place);
    EXPECT_EQ(placeOfText(QStringLiteral(" 10,20,800,600,0 ")),
              (WindowPlace{QRect(10, 20, 800, 600), false}));
    for (const char* bad :
         {"", " ", "1,2,3,4", "1,2,3,4,5,6", "a,2,3,4,0", "1,2,0,4,0", "1,2,3,-4,0", "1,2,3,4,2"})
        EXPECT_FALSE(placeOfText(QLatin1String(bad))) << bad;
}

}  // namespace
