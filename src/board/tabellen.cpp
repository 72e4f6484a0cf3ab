#include "board/tabellen.h"

#include <memory>

int32_t BitIndex[64];
uint8_t Bitzahl16[65536];
Bitboard KoenigFelder[64];
Bitboard SpringerFelder[64];
Bitboard Strahlen[64][4];
Bitboard Zwischen[64 * 64];
Bitboard Linie[64 * 64];
Magie_t LaeuferMagie[64];
Magie_t TurmMagie[64];

namespace {

// Fixed-shift magics with overlapping slot ranges: {magic, offset into the shared store}.
struct MagieKonstante {
    uint64_t magie;
    uint32_t offset;
};

constexpr MagieKonstante LaeuferKonstanten[64] = {
    {0x007fbfbfbfbfbfffULL, 5378},  {0x0000a060401007fcULL, 4093},  {0x0001004008020000ULL, 4314},
    {0x0000806004000000ULL, 6587},  {0x0000100400000000ULL, 6491},  {0x000021c100b20000ULL, 6330},
    {0x0000040041008000ULL, 5609},  {0x00000fb0203fff80ULL, 22236}, {0x0000040100401004ULL, 6106},
    {0x0000020080200802ULL, 5625},  {0x0000004010202000ULL, 16785}, {0x0000008060040000ULL, 16817},
    {0x0000004402000000ULL, 6842},  {0x0000000801008000ULL, 7003},  {0x000007efe0bfff80ULL, 4197},
    {0x0000000820820020ULL, 7356},  {0x0000400080808080ULL, 4602},  {0x00021f0100400808ULL, 4538},
    {0x00018000c06f3fffULL, 29531}, {0x0000258200801000ULL, 45393}, {0x0000240080840000ULL, 12420},
    {0x000018000c03fff8ULL, 15763}, {0x00000a5840208020ULL, 5050},  {0x0000020008208020ULL, 4346},
    {0x0000804000810100ULL, 6074},  {0x0001011900802008ULL, 7866},  {0x0000804000810100ULL, 32139},
    {0x000100403c0403ffULL, 57673}, {0x00078402a8802000ULL, 55365}, {0x0000101000804400ULL, 15818},
    {0x0000080800104100ULL, 5562},  {0x00004004c0082008ULL, 6390},  {0x0001010120008020ULL, 7930},
    {0x000080809a004010ULL, 13329}, {0x0007fefe08810010ULL, 7170},  {0x0003ff0f833fc080ULL, 27267},
    {0x007fe08019003042ULL, 53787}, {0x003fffefea003000ULL, 5097},  {0x0000101010002080ULL, 6643},
    {0x0000802005080804ULL, 6138},  {0x0000808080a80040ULL, 7418},  {0x0000104100200040ULL, 7898},
    {0x0003ffdf7f833fc0ULL, 42012}, {0x0000008840450020ULL, 57350}, {0x00007ffc80180030ULL, 22813},
    {0x007fffdd80140028ULL, 56693}, {0x00020080200a0004ULL, 5818},  {0x0000101010100020ULL, 7098},
    {0x0007ffdfc1805000ULL, 4451},  {0x0003ffefe0c02200ULL, 4709},  {0x0000000820806000ULL, 4794},
    {0x0000000008403000ULL, 13364}, {0x0000000100202000ULL, 4570},  {0x0000004040802000ULL, 4282},
    {0x0004010040100400ULL, 14964}, {0x00006020601803f4ULL, 4026},  {0x0003ffdfdfc28048ULL, 4826},
    {0x0000000820820020ULL, 7354},  {0x0000000008208060ULL, 4848},  {0x0000000000808020ULL, 15946},
    {0x0000000001002020ULL, 14932}, {0x0000000401002008ULL, 16588}, {0x0000004040404040ULL, 6905},
    {0x007fff9fdf7ff813ULL, 16076},
};

constexpr MagieKonstante TurmKonstanten[64] = {
    {0x00280077ffebfffeULL, 26304}, {0x2004010201097fffULL, 35520}, {0x0010020010053fffULL, 38592},
    {0x0040040008004002ULL, 8026},  {0x7fd00441ffffd003ULL, 22196}, {0x4020008887dffffeULL, 80870},
    {0x004000888847ffffULL, 76747}, {0x006800fbff75fffdULL, 30400}, {0x000028010113ffffULL, 11115},
    {0x0020040201fcffffULL, 18205}, {0x007fe80042ffffe8ULL, 53577}, {0x00001800217fffe8ULL, 62724},
    {0x00001800073fffe8ULL, 34282}, {0x00001800e05fffe8ULL, 29196}, {0x00001800602fffe8ULL, 23806},
    {0x000030002fffffa0ULL, 49481}, {0x00300018010bffffULL, 2410},  {0x0003000c0085fffbULL, 36498},
    {0x0004000802010008ULL, 24478}, {0x0004002020020004ULL, 10074}, {0x0001002002002001ULL, 79315},
    {0x0001001000801040ULL, 51779}, {0x0000004040008001ULL, 13586}, {0x0000006800cdfff4ULL, 19323},
    {0x0040200010080010ULL, 70612}, {0x0000080010040010ULL, 83652}, {0x0004010008020008ULL, 63110},
    {0x0000040020200200ULL, 34496}, {0x0002008010100100ULL, 84966}, {0x0000008020010020ULL, 54341},
    {0x0000008020200040ULL, 60421}, {0x0000820020004020ULL, 86402}, {0x00fffd1800300030ULL, 50245},
    {0x007fff7fbfd40020ULL, 76622}, {0x003fffbd00180018ULL, 84676}, {0x001fffde80180018ULL, 78757},
    {0x000fffe0bfe80018ULL, 37346}, {0x0001000080202001ULL, 370},   {0x0003fffbff980180ULL, 42182},
    {0x0001fffdff9000e0ULL, 45385}, {0x00fffefeebffd800ULL, 61659}, {0x007ffff7ffc01400ULL, 12790},
    {0x003fffbfe4ffe800ULL, 16762}, {0x001ffff01fc03000ULL, 0},     {0x000fffe7f8bfe800ULL, 38380},
    {0x0007ffdfdf3ff808ULL, 11098}, {0x0003fff85fffa804ULL, 21803}, {0x0001fffd75ffa802ULL, 39189},
    {0x00ffffd7ffebffd8ULL, 58628}, {0x007fff75ff7fbfd8ULL, 44116}, {0x003fff863fbf7fd8ULL, 78357},
    {0x001fffbfdfd7ffd8ULL, 44481}, {0x000ffff810280028ULL, 64134}, {0x0007ffd7f7feffd8ULL, 41759},
    {0x0003fffc0c480048ULL, 1394},  {0x0001ffffafd7ffd8ULL, 40910}, {0x00ffffe4ffdfa3baULL, 66516},
    {0x007fffef7ff3d3daULL, 3897},  {0x003fffbfdfeff7faULL, 3930},  {0x001fffeff7fbfc22ULL, 72934},
    {0x0000020408001001ULL, 72662}, {0x0007fffeffff77fdULL, 56325}, {0x0003ffffbf7dfeecULL, 66501},
    {0x0001ffff9dffa333ULL, 14826},
};

// One step of a set in a direction, with the file mask that stops wrapping.
Bitboard Schritt(Bitboard b, int richtung) {
    switch (richtung) {
        case -1: return (b >> 1) & OhneHLinie;
        case +1: return (b << 1) & OhneALinie;
        case -8: return b >> 8;
        case +8: return b << 8;
        case -7: return (b >> 7) & OhneALinie;
        case +7: return (b << 7) & OhneHLinie;
        case -9: return (b >> 9) & OhneHLinie;
        case +9: return (b << 9) & OhneALinie;
    }
    return 0;
}

Bitboard KoenigSchritte(Bitboard b) {
    return Schritt(b, -1) | Schritt(b, +1) | Schritt(b, -8) | Schritt(b, +8) | Schritt(b, -7) |
           Schritt(b, +7) | Schritt(b, -9) | Schritt(b, +9);
}

Bitboard SpringerSpruenge(Bitboard b) {
    constexpr Bitboard OhneAB = 0xfcfcfcfcfcfcfcfcULL;
    constexpr Bitboard OhneGH = 0x3f3f3f3f3f3f3f3fULL;
    // +-6 and +-10 move two files, +-15 and +-17 one file.
    return ((b << 6) & OhneGH) | ((b >> 10) & OhneGH) | ((b >> 6) & OhneAB) | ((b << 10) & OhneAB) |
           ((b << 15) & OhneHLinie) | ((b >> 17) & OhneHLinie) | ((b >> 15) & OhneALinie) |
           ((b << 17) & OhneALinie);
}

// The whole line through a square along one pair of opposite directions.
Bitboard GanzeLinie(Feld s, int richtung) {
    Bitboard b = Bit(s);
    for (int i = 0; i < 7; ++i) b |= Schritt(b, richtung) | Schritt(b, -richtung);
    return b;
}

// Attack set of a slider on s for one occupancy: flood fill along its own lines.
Bitboard FlutAngriffe(Feld s, Bitboard linien, Bitboard belegt) {
    const Bitboard frei = linien & ~belegt;
    Bitboard region = KoenigSchritte(Bit(s)) & frei;
    for (;;) {
        const Bitboard neu = region | (KoenigSchritte(region) & frei);
        if (neu == region) break;
        region = neu;
    }
    return (region | KoenigSchritte(region | Bit(s))) & linien;
}

void FuelleSlider(Bitboard* speicher, Magie_t* tabelle, const MagieKonstante* konstanten, bool turm) {
    for (Feld s = 0; s < 64; ++s) {
        const Bitboard reihe = GanzeLinie(s, 1) & ~Bit(s);
        const Bitboard linie = GanzeLinie(s, 8) & ~Bit(s);
        const Bitboard diagonalen = (GanzeLinie(s, 7) | GanzeLinie(s, 9)) & ~Bit(s);
        Magie_t& m = tabelle[s];
        Bitboard voll;
        if (turm) {
            voll = reihe | linie;
            m.maske = ((linie & 0x00ffffffffffff00ULL) | (reihe & 0x7e7e7e7e7e7e7e7eULL)) & ~Bit(s);
        } else {
            voll = diagonalen;
            m.maske = diagonalen & 0x007e7e7e7e7e7e00ULL;
        }
        m.magie = konstanten[s].magie;
        Bitboard* start = speicher + konstanten[s].offset;
        m.angriffe = start;
        const unsigned shift = turm ? 52 : 55;
        Bitboard occ = 0;
        do {
            start[(occ * m.magie) >> shift] = FlutAngriffe(s, voll, occ);
            occ = (occ - 1) & m.maske;
        } while (occ != 0);
    }
}

}  // namespace

void InitTabellen() {
    static bool gebaut = false;
    if (gebaut) return;
    gebaut = true;

    for (int32_t& i : BitIndex) i = -1;
    for (int i = 0; i < 64; ++i) BitIndex[((Bitboard{1} << i) * DeBruijn) >> 58] = i;

    Bitzahl16[0] = 0;
    for (unsigned i = 1; i < 65536; ++i) Bitzahl16[i] = static_cast<uint8_t>(Bitzahl16[i >> 1] + (i & 1));

    for (Feld s = 0; s < 64; ++s) {
        KoenigFelder[s] = KoenigSchritte(Bit(s));
        SpringerFelder[s] = SpringerSpruenge(Bit(s));
        Strahlen[s][0] = GanzeLinie(s, 1) & ~Bit(s);
        Strahlen[s][1] = GanzeLinie(s, 8) & ~Bit(s);
        Strahlen[s][2] = GanzeLinie(s, 7) & ~Bit(s);
        Strahlen[s][3] = GanzeLinie(s, 9) & ~Bit(s);
    }

    // Between: the first of eight rays from s1 to reach s2. Line: the last of the
    // four whole lines through s1 that holds s2, all ones when none does.
    static constexpr int Richtungen[8] = {-1, +7, +8, +9, +1, -7, -8, -9};
    static constexpr int Linienrichtungen[4] = {1, 7, 8, 9};
    for (Feld s1 = 0; s1 < 64; ++s1) {
        for (Feld s2 = 0; s2 < 64; ++s2) {
            Bitboard zwischen = 0;
            if (s1 != s2) {  // a square lies between nothing and itself
                Bitboard strahl[8];
                for (Bitboard& b : strahl) b = Bit(s1);
                for (int schritt = 0; schritt < 8 && zwischen == 0; ++schritt) {
                    int r = 0;
                    for (; r < 8; ++r) {
                        strahl[r] |= Schritt(strahl[r], Richtungen[r]);
                        if (strahl[r] & Bit(s2)) break;
                    }
                    if (r < 8) {
                        zwischen = strahl[r] & ~Bit(s1) & ~Bit(s2);
                        if (zwischen == 0) break;  // neighbours
                    }
                }
            }
            Zwischen[s1 * 64 + s2] = zwischen;

            Bitboard linie = ~Bitboard{0};
            for (int richtung : Linienrichtungen) {
                const Bitboard l = GanzeLinie(s1, richtung);
                if (l & Bit(s2)) linie = l;
            }
            Linie[s1 * 64 + s2] = linie;
        }
    }

    static std::unique_ptr<Bitboard[]> angriffsspeicher(new Bitboard[AngriffsspeicherGroesse]());
    FuelleSlider(angriffsspeicher.get(), LaeuferMagie, LaeuferKonstanten, false);
    FuelleSlider(angriffsspeicher.get(), TurmMagie, TurmKonstanten, true);
}
