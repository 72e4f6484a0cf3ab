// TEMPORARY stand-in until the real evaluation lands.
#include "search/bewertung.h"
#include "search/material.h"
int Bewerte(const Stellung_t& st, const Stellungsdaten_t& daten, Bauerncache_t&, Materialcache_t&) {
    int w = MaterialSumme(st.seite[Weiss]) - MaterialSumme(st.seite[Schwarz]);
    w += 20 * (int)(Bitzahl(daten.angriffe[Schwarz].alle) - Bitzahl(daten.angriffe[Weiss].alle));
    if (st.amZug == Schwarz) w = -w;
    return Quantisiere(w);
}
