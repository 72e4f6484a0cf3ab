// King and pawn against king: every placement, built backwards from the
// promotions once at start-up.
//
// A byte holds the number of plies until the pawn promotes, the promoting move
// included, with the attacker hurrying and the defender delaying. A promotion
// counts as the win when the new queen, or failing that a rook, cannot be
// taken at once and leaves the defender a move or gives check: queen or rook
// against a bare king is then always won. So the queen's stalemates (c7 pawn,
// c6 king against a7) fall back on the rook, and only the true draws remain.
#include "search/endspiel.h"

#include <initializer_list>

namespace {

constexpr unsigned BauernFelder = 24;  // files a-d, ranks 2-7
constexpr unsigned Eintraege = BauernFelder * 2 * 64 * 64;
constexpr uint8_t Offen = 255;  // build only: not decided yet
constexpr uint8_t Matt = 0;     // defender mated before the promotion

enum : unsigned { AngreiferZieht = 0, VerteidigerZieht = 1 };

uint8_t kpkTabelle[Eintraege];
bool kpkBereit = false;  // probes before the build report an illegal placement

constexpr unsigned Index(unsigned bauer, unsigned zieht, Feld angreifer, Feld verteidiger) {
    return ((bauer * 2 + zieht) * 64 + angreifer) * 64 + verteidiger;
}
constexpr unsigned BauernIndex(Feld f) { return (ReiheVon(f) - 2) * 4 + LinieVon(f); }
constexpr Feld BauernFeld(unsigned i) { return FeldAus(i % 4, i / 4 + 2); }

// Does promoting on q win? The defender's own king does not shield the squares behind it.
bool UmwandlungGewinnt(Feld q, Feld angreifer, Feld verteidiger) {
    const bool gedeckt = KoenigFelder[angreifer] & Bit(q);
    if ((KoenigFelder[verteidiger] & Bit(q)) && !gedeckt) return false;
    const Bitboard flucht = KoenigFelder[verteidiger] & ~KoenigFelder[angreifer];
    const Bitboard belegt = Bit(angreifer);
    for (const Bitboard angriff : {DameAngriffe(q, belegt), TurmAngriffe(q, belegt)})
        if ((angriff & Bit(verteidiger)) || (flucht & ~angriff)) return true;
    return false;
}

// Start value of one placement: illegal, final for the defender, or open.
uint8_t Anfangswert(Feld bauer, unsigned zieht, Feld a, Feld v) {
    if (a == v || a == bauer || v == bauer || (KoenigFelder[a] & Bit(v))) return KpkIllegal;
    const Bitboard schlaege = WeisseBauernAngriffe(Bit(bauer));
    if (zieht == AngreiferZieht) {
        if (schlaege & Bit(v)) return KpkIllegal;  // the side not to move stands in check
        return Offen;
    }
    const Bitboard ziele = KoenigFelder[v] & ~KoenigFelder[a] & ~schlaege;
    if (ziele & Bit(bauer)) return KpkNichtGewonnen;  // the unguarded pawn falls
    if (!ziele) return (schlaege & Bit(v)) ? Matt : KpkNichtGewonnen;
    return Offen;
}

bool Gewonnen(uint8_t w) { return w < KpkNichtGewonnen; }

// Attacker to move: won in k plies when a move reaches a win in k - 1.
bool AngreiferGewinnt(unsigned b, Feld a, Feld v, unsigned k) {
    const Feld bauer = BauernFeld(b);
    const Feld vor = bauer - 8;
    if (vor != a && vor != v) {
        if (ReiheVon(bauer) == 7) {
            if (k == 1 && UmwandlungGewinnt(vor, a, v)) return true;
        } else {
            const uint8_t w = kpkTabelle[Index(BauernIndex(vor), VerteidigerZieht, a, v)];
            if (Gewonnen(w) && w < k) return true;
            const Feld doppel = bauer - 16;
            if (ReiheVon(bauer) == 2 && doppel != a && doppel != v) {
                const uint8_t d = kpkTabelle[Index(BauernIndex(doppel), VerteidigerZieht, a, v)];
                if (Gewonnen(d) && d < k) return true;
            }
        }
    }
    Bitboard ziele = KoenigFelder[a] & ~KoenigFelder[v] & ~Bit(bauer);
    while (ziele) {
        const uint8_t w = kpkTabelle[Index(b, VerteidigerZieht, NimmFeld(ziele), v)];
        if (Gewonnen(w) && w < k) return true;
    }
    return false;
}

// Defender to move: won in k plies when every move reaches a win in less.
bool VerteidigerVerliert(unsigned b, Feld a, Feld v, unsigned k) {
    const Feld bauer = BauernFeld(b);
    Bitboard ziele = KoenigFelder[v] & ~KoenigFelder[a] & ~WeisseBauernAngriffe(Bit(bauer));
    while (ziele) {
        const uint8_t w = kpkTabelle[Index(b, AngreiferZieht, a, NimmFeld(ziele))];
        if (!Gewonnen(w) || w >= k) return false;
    }
    return true;
}

}  // namespace

void KpkInit() {
    for (unsigned b = 0; b < BauernFelder; ++b)
        for (unsigned zieht = 0; zieht < 2; ++zieht)
            for (Feld a = 0; a < 64; ++a)
                for (Feld v = 0; v < 64; ++v)
                    kpkTabelle[Index(b, zieht, a, v)] = Anfangswert(BauernFeld(b), zieht, a, v);

    // Pass k settles the wins in exactly k plies; sides alternate with the parity
    // of k, and a pass without news ends the build, as no later one can find any.
    for (unsigned k = 1; k < KpkNichtGewonnen; ++k) {
        const unsigned zieht = (k & 1) ? AngreiferZieht : VerteidigerZieht;
        unsigned neu = 0;
        for (unsigned b = 0; b < BauernFelder; ++b) {
            for (Feld a = 0; a < 64; ++a) {
                uint8_t* zeile = kpkTabelle + Index(b, zieht, a, 0);
                for (Feld v = 0; v < 64; ++v) {
                    if (zeile[v] != Offen) continue;
                    const bool gewonnen =
                        zieht == AngreiferZieht ? AngreiferGewinnt(b, a, v, k) : VerteidigerVerliert(b, a, v, k);
                    if (gewonnen) {
                        zeile[v] = static_cast<uint8_t>(k);
                        ++neu;
                    }
                }
            }
        }
        if (!neu) break;
    }
    for (uint8_t& w : kpkTabelle)
        if (w == Offen) w = KpkNichtGewonnen;
    kpkBereit = true;
}

uint8_t KpkProbe(Feld bauer, Feld angreiferKoenig, Feld verteidigerKoenig, bool angreiferAmZug) {
    if (!kpkBereit || bauer > 63 || angreiferKoenig > 63 || verteidigerKoenig > 63) return KpkIllegal;
    if (ReiheVon(bauer) < 2 || ReiheVon(bauer) > 7) return KpkIllegal;
    if (LinieVon(bauer) > 3) {  // mirror onto files a-d
        bauer ^= 7;
        angreiferKoenig ^= 7;
        verteidigerKoenig ^= 7;
    }
    return kpkTabelle[Index(BauernIndex(bauer), angreiferAmZug ? AngreiferZieht : VerteidigerZieht,
                            angreiferKoenig, verteidigerKoenig)];
}
