#include "netz/datensatz.h"

#include <cstring>

Datensatz_t Packe(const Stellung_t& st, int wert, int ergebnis, int ply) {
    Datensatz_t d{};
    for (unsigned s = 0; s < 2; ++s) d.belegt |= st.seite[s].brett[0];
    Bitboard b = d.belegt;
    for (unsigned i = 0; b && i < 32; ++i) {
        const Feld feld = NimmFeld(b);
        const unsigned seite = (st.seite[Schwarz].brett[0] >> feld) & 1;
        unsigned typ = Bauer;
        while (!((st.seite[seite].brett[typ] >> feld) & 1)) ++typ;
        d.figuren[i >> 1] |= static_cast<uint8_t>((seite << 3 | typ) << (4 * (i & 1)));
    }
    d.wert = static_cast<int16_t>(wert < -DatensatzWertGrenze  ? -DatensatzWertGrenze
                                  : wert > DatensatzWertGrenze ? DatensatzWertGrenze
                                                               : wert);
    d.ergebnis = static_cast<int8_t>(ergebnis);
    d.amZug = static_cast<uint8_t>(st.amZug);
    d.ply = static_cast<uint16_t>(ply);
    return d;
}

bool Entpacke(const Datensatz_t& d, Stellung_t& st, Stellungsdaten_t& daten) {
    if (Bitzahl(d.belegt) > 32 || d.amZug > 1 || d.ergebnis < -1 || d.ergebnis > 1) return false;
    std::memset(st.seite, 0, sizeof st.seite);
    bool gut = true;
    JederMann(d, [&](unsigned seite, unsigned typ, Feld feld) {
        if (typ < Bauer || typ > Koenig) gut = false;
        else st.seite[seite].brett[typ] |= Bit(feld);
    });
    if (!gut) return false;
    for (Seite_t& s : st.seite) {
        for (unsigned t = Bauer; t <= Koenig; ++t) s.brett[0] |= s.brett[t];
        if (!PruefeStellung(s)) return false;
    }
    // Pawns never stand on the first or last rank.
    if ((st.seite[Weiss].brett[Bauer] | st.seite[Schwarz].brett[Bauer]) & 0xff000000000000ffULL) return false;
    st.amZug = d.amZug;
    st.ep = 0;
    st.rochaden = 0;
    st.chess960 = 0;
    st.dateibuchstaben = 0;
    st.seite[Weiss].langerTurm = 56;
    st.seite[Weiss].kurzerTurm = 63;
    st.seite[Schwarz].langerTurm = 0;
    st.seite[Schwarz].kurzerTurm = 7;
    BerechneStellungsdaten(st, daten);
    StarteHistorie(st, daten);
    return true;
}
