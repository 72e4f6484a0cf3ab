// FEN and move texts: what the readers accept must behave like a position and
// like legal moves: incremental data equal to data computed afresh, exact take
// backs, and move texts that read back as the move they were written for.
#include <algorithm>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "board/zug.h"
#include "board/zuggenerator.h"
#include "board/zugmachen.h"
#include "fuzz_ziele.h"

namespace {

bool GleicheDaten(const Stellungsdaten_t& a, const Stellungsdaten_t& b) {
    return a.belegt == b.belegt && a.schluessel == b.schluessel && a.bauernSchluessel == b.bauernSchluessel &&
           a.Materialschluessel == b.Materialschluessel && a.angriffe[0].alle == b.angriffe[0].alle &&
           a.angriffe[1].alle == b.angriffe[1].alle;
}

// Board, counts and the square lists as sets (their order may change).
bool GleicheStellung(const Stellung_t& a, const Stellung_t& b) {
    if (a.amZug != b.amZug || a.ep != b.ep || a.rochaden != b.rochaden) return false;
    for (int s = 0; s < 2; ++s) {
        const Seite_t& x = a.seite[s];
        const Seite_t& y = b.seite[s];
        if (x.langerTurm != y.langerTurm || x.kurzerTurm != y.kurzerTurm) return false;
        for (int t = 0; t < 7; ++t)
            if (x.brett[t] != y.brett[t] || x.anzahl[t] != y.anzahl[t]) return false;
        for (unsigned t = 1; t <= 6; ++t) {
            std::vector<uint8_t> l1(x.Liste(t), x.Liste(t) + x.anzahl[t]);
            std::vector<uint8_t> l2(y.Liste(t), y.Liste(t) + y.anzahl[t]);
            std::sort(l1.begin(), l1.end());
            std::sort(l2.begin(), l2.end());
            if (l1 != l2) return false;
        }
    }
    return true;
}

// Every legal move to `tiefe` plies: made, checked against a fresh computation,
// taken back exactly; at the first ply its texts must read back as the move.
void PruefeZuege(Stellung_t& st, const Stellungsdaten_t& daten, int tiefe, bool texte) {
    Zugliste_t liste;
    const uint32_t* ende = ErzeugeZuege(st, daten, liste);
    const Stellung_t vorher = st;
    for (const uint32_t* z = liste; z != ende; ++z) {
        const Zug_t zug = static_cast<Zug_t>(*z);
        Stellungsdaten_t neu;
        Rueckzug_t r;
        if (!ZugMachenLegal(st, zug, daten, neu, r)) {
            FUZZ_PRUEFEN(GleicheStellung(st, vorher));
            continue;
        }
        Stellungsdaten_t frisch;
        BerechneStellungsdaten(st, frisch);
        FUZZ_PRUEFEN(GleicheDaten(neu, frisch));
        if (tiefe > 1) PruefeZuege(st, neu, tiefe - 1, false);
        r.Zuruecknehmen();
        FUZZ_PRUEFEN(GleicheStellung(st, vorher));
        if (!texte) continue;
        FUZZ_PRUEFEN(IstLegal(st, zug, daten));
        char text[8] = {};
        ZugText(st, zug, text);
        FUZZ_PRUEFEN(LeseKoordinatenZug(st, text) == zug);
        char san[16] = {};
        ZugSan(st, zug, daten, san);
        FUZZ_PRUEFEN(LeseSanZug(st, san, daten) == zug);
        FUZZ_PRUEFEN(GleicheStellung(st, vorher));
    }
}

}  // namespace

int FuzzFen(const uint8_t* daten, size_t groesse) {
    FuzzVorbereiten();
    const std::string text(reinterpret_cast<const char*>(daten), groesse);
    auto st = std::make_unique<Stellung_t>();
    Stellungsdaten_t d;
    if (!SetzeStellung(*st, d, text.c_str())) return 0;
    FUZZ_PRUEFEN(st->historieAnzahl >= 1 && st->historieAnzahl <= 100);
    FUZZ_PRUEFEN(st->Historie[st->historieAnzahl - 1] == d.schluessel);
    PruefeZuege(*st, d, 2, true);
    return 0;
}

// First line a FEN (the start position when it does not read), then one move
// text a line: each read as SAN and as coordinates, and the move made as a game
// would make it.
int FuzzZugtext(const uint8_t* daten, size_t groesse) {
    FuzzVorbereiten();
    std::istringstream ein(std::string(reinterpret_cast<const char*>(daten), groesse));
    std::string zeile;
    std::getline(ein, zeile);
    auto st = std::make_unique<Stellung_t>();
    Stellungsdaten_t d;
    if (!SetzeStellung(*st, d, zeile.c_str())) SetzeStellung(*st, d, nullptr);
    for (int n = 0; n < 64 && std::getline(ein, zeile); ++n) {
        const Stellung_t vorher = *st;
        const Zug_t san = LeseSanZug(*st, zeile.c_str(), d);
        FUZZ_PRUEFEN(GleicheStellung(*st, vorher));
        if (san != 0) FUZZ_PRUEFEN(IstLegal(*st, san, d));
        const Zug_t koordinaten = LeseKoordinatenZug(*st, zeile.c_str());
        const Zug_t zug = san != 0 ? san : (koordinaten != 0 && IstLegal(*st, koordinaten, d) ? koordinaten : 0);
        if (zug == 0) continue;
        Rueckzug_t r;
        r.ep = st->ep;
        r.rochaden = st->rochaden;
        FUZZ_PRUEFEN(SpielzugMachen(*st, zug, r, d));
        Stellungsdaten_t frisch;
        BerechneStellungsdaten(*st, frisch);
        FUZZ_PRUEFEN(GleicheDaten(d, frisch));
    }
    return 0;
}
