#include "protocol/xboard_remis.h"

#include <algorithm>

void XBoardRemis_t::Zuruecksetzen() {
    anzahl = 0;
    zaehler = 0;
    seite = -1;
    gegnerBietet = false;
}

bool XBoardRemis_t::Angebot(unsigned s, int legaleZuege, int wert, int halbzuege) {
    if (static_cast<int>(s) != seite) {
        anzahl = 0;
        seite = static_cast<int>(s);
    }
    // A forced move says nothing about the position.
    if (legaleZuege > 1) {
        std::copy_backward(werte, werte + Tiefe - 1, werte + Tiefe);
        werte[0] = wert;
        anzahl = std::min(anzahl + 1, Tiefe);
    }
    ++zaehler;
    const bool geboten = gegnerBietet;
    gegnerBietet = false;
    if (geboten) zaehler = std::max(zaehler, halbzuege);
    if ((zaehler < 21 && !geboten) || anzahl < Tiefe) return false;

    // On its own the engine offers only a dead 0; an offer it takes whenever it is not winning.
    const int untergrenze = geboten ? -500000 : -1;
    for (int i = 0; i < 3; ++i)
        if (werte[i] < untergrenze || werte[i] > 1) return false;
    zaehler = 0;
    return true;
}

bool XBoardRemis_t::Aufgeben(int32_t resignOption) const {
    if (anzahl < Tiefe) return false;
    const int grenze = std::max(-10 * resignOption, -20000);
    for (int i = 0; i < Tiefe; ++i)
        if (werte[i] > grenze) return false;
    return werte[0] <= werte[1];
}
