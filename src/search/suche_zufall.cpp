#include "search/suche_zufall.h"

#include "board/zuggenerator.h"
#include "board/zugmachen.h"
#include "protocol/ausgabe.h"
#include "search/zufallsgenerator.h"

SucheZufall_t::SucheZufall_t(bool matt) : mattModus(matt) { Starten(); }

SucheZufall_t::~SucheZufall_t() { Herunterfahren(); }

Zug_t SucheZufall_t::MattInEins(const Stellung_t& st, const uint32_t* zuege, int anzahl) {
    auto kopie = std::make_unique<Stellung_t>(st);
    Stellungsdaten_t daten;
    BerechneStellungsdaten(*kopie, daten);
    for (int i = 0; i < anzahl; ++i) {
        const auto zug = static_cast<Zug_t>(zuege[i]);
        Stellungsdaten_t neu;
        Rueckzug_t r;
        if (!ZugMachenLegal(*kopie, zug, daten, neu, r)) continue;
        int ergebnis = 0;
        const bool matt = ImSchach(*kopie, neu) && SpielEnde(*kopie, neu, &ergebnis);
        r.Zuruecknehmen();
        if (matt) return zug;
    }
    return 0;
}

void SucheZufall_t::suchen() {
    const Suchauftrag_t& a = *auftrag;
    const int n = a.anzahlWurzelzuege;
    if (n < 1) return;
    Zug_t zug = mattModus ? MattInEins(a.stellung, a.wurzelzuege, n) : 0;
    if (!zug) zug = static_cast<Zug_t>(a.wurzelzuege[Zufall().Ziehe() % static_cast<uint32_t>(n)]);
    WarteWaehrendPonder();
    if (a.ausgabe) a.ausgabe->bestzug(a.stellung, zug, 0);
}
