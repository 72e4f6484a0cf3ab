// The XBoard clock: "level" periods, moves to go, the go line and the clock after a move.
// "st" and "sd" go lines are checked through the adapter in xboard_test.cpp.
#include <gtest/gtest.h>

#include <string>

#include "protocol/xboard_zeit.h"

namespace {

XBoardZeit_t Level(const char* text) {
    XBoardZeit_t z;
    EXPECT_TRUE(z.LeseLevel(text)) << text;
    return z;
}

TEST(XBoardZeit, ZuegeBisZurKontrolle) {
    // 40 moves in 5 minutes repeat: after 45 moves the second control is 35 moves away.
    const XBoardZeit_t z = Level("40 5 0");
    EXPECT_EQ(z.GoZeile(45, false), "go wtime 300000 btime 300000 winc 0 binc 0 movestogo 35");
    EXPECT_EQ(z.GoZeile(0, false), "go wtime 300000 btime 300000 winc 0 binc 0 movestogo 40");
    EXPECT_EQ(z.GoZeile(39, false), "go wtime 300000 btime 300000 winc 0 binc 0 movestogo 1");
    EXPECT_EQ(z.GoZeile(40, true), "go wtime 300000 btime 300000 winc 0 binc 0 movestogo 40 ponder");
    // Sudden death: no moves to go, the increment on both sides.
    EXPECT_EQ(Level("0 2 1.5").GoZeile(80, false), "go wtime 120000 btime 120000 winc 1500 binc 1500");
    EXPECT_EQ(Level("0 0:30 0").GoZeile(3, true), "go wtime 30000 btime 30000 winc 0 binc 0 ponder");

    // Three periods: 40 moves, then 20, then the last repeats (here: the rest of the game).
    const XBoardZeit_t drei = Level("40 120 0 20 60 0 0 15 30");
    const int faelle[][3] = {{0, 0, 40}, {39, 0, 1}, {40, 1, 20}, {59, 1, 1}, {60, 2, 0}, {200, 2, 0}};
    for (const auto& f : faelle) {
        const XBoardZeit_t::Lage_t lage = drei.Lage(f[0]);
        EXPECT_EQ(lage.periode, f[1]) << f[0];
        EXPECT_EQ(lage.zuegeBisKontrolle, f[2]) << f[0];
    }
    EXPECT_EQ(drei.GoZeile(60, false), "go wtime 7200000 btime 7200000 winc 30000 binc 30000");
    // Two periods with moves: the second repeats.
    const XBoardZeit_t zwei = Level("40 120 0 20 60 0");
    EXPECT_EQ(zwei.Lage(40 + 20 + 5).zuegeBisKontrolle, 15);
    EXPECT_EQ(zwei.Lage(40 + 20 + 5).periode, 1);
}

TEST(XBoardZeit, UnlesbaresLevelAendertNichts) {
    XBoardZeit_t z = Level("40 5 0");
    for (const char* text : {"", "40", "40 5", "40 5 0 30", "x 5 0", "40 5:xx 0", "40 5 -1", "-40 5 0",
                             "40 5: 0", "40 :30 0", "40.5 5 0", "1 2 3 4 5 6 7 8 9 10 11 12",
                             "40 5 0 20 5 0 10 5 0 5 5 0", "40 99999999999999999999 0"}) {
        EXPECT_FALSE(z.LeseLevel(text)) << text;
    }
    EXPECT_EQ(z.GoZeile(45, false), "go wtime 300000 btime 300000 winc 0 binc 0 movestogo 35");
    // Minutes and seconds, and minutes with a fraction.
    EXPECT_EQ(Level("40 1:30 0").eigeneUhrMs, 90000);
    EXPECT_EQ(Level("40 0.5 0").eigeneUhrMs, 30000);
}

TEST(XBoardZeit, UhrNachDemZug) {
    // Increment per move, the period's time when the move completes it, never below 150 ms.
    XBoardZeit_t z = Level("2 1 0.5");
    z.eigeneUhrMs = 10000;
    z.NachZug(0, 3000);
    EXPECT_EQ(z.eigeneUhrMs, 7500);
    z.NachZug(1, 2000);  // the second move completes the period: one minute more
    EXPECT_EQ(z.eigeneUhrMs, 7500 - 2000 + 500 + 60000);
    z.eigeneUhrMs = 100;
    z.NachZug(2, 5000);
    EXPECT_EQ(z.eigeneUhrMs, XBoardZeit_t::MindestUhrMs);
    // The second period's time comes when the first is complete.
    XBoardZeit_t drei = Level("1 1 0 0 2 0");
    drei.eigeneUhrMs = 1000;
    drei.NachZug(0, 0);
    EXPECT_EQ(drei.eigeneUhrMs, 1000 + 120000);
}

}  // namespace
