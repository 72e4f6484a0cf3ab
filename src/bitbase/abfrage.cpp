// The position probe: one bit says whether the side named first in the
// signature wins; when it does not, the colour-flipped position asks the
// other side's file the same question.
#include "bitbase/bitbasecache.h"
#include "bitbase/index.h"

bool BitbaseCache_t::Abfrage(const int* weissTypen, const int* schwarzTypen, const int* weissFelder,
                             const int* schwarzFelder, int amZug, int epFeld, bool nurImCache, int& ergebnis) {
    if (Groesse() == 0) return false;
    Bitbase_t b;
    if (!b.SetzeSteine(weissTypen, schwarzTypen, weissFelder, schwarzFelder, amZug, epFeld)) return false;
    const int bit = HoleBit(b.Signaturname, b.Index(), nurImCache);
    if (bit < 0) return false;
    if (bit == 1) {
        ergebnis = 1;
        ZaehleTreffer();
        return true;
    }

    // Black's men become White's, the board turns upside down (XOR 56 flips the rows).
    int weissGedreht[BitbaseSteineMax + 1] = {}, schwarzGedreht[BitbaseSteineMax + 1] = {};
    for (int i = 0; i < BitbaseSteineMax && weissTypen[i] != 0; ++i) weissGedreht[i] = weissFelder[i] ^ 56;
    for (int i = 0; i < BitbaseSteineMax && schwarzTypen[i] != 0; ++i) schwarzGedreht[i] = schwarzFelder[i] ^ 56;
    Bitbase_t g;
    if (!g.SetzeSteine(schwarzTypen, weissTypen, schwarzGedreht, weissGedreht, 1 - amZug,
                       epFeld >= 1 ? epFeld ^ 56 : -1))
        return false;
    const int gedreht = HoleBit(g.Signaturname, g.Index(), nurImCache);
    if (gedreht < 0) return false;
    ergebnis = -gedreht;
    ZaehleTreffer();
    return true;
}
