#include "board/perft.h"

#include <chrono>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <new>
#include <memory>

#include "board/zuggenerator.h"
#include "board/zugmachen.h"

namespace {

struct PerftEintrag {
    uint64_t schluessel;
    uint64_t knoten;
    uint32_t tiefe;
};
static_assert(sizeof(PerftEintrag) == 24);

// A power-of-two table of the largest size that fits into the given megabytes.
class PerftTabelle {
public:
    explicit PerftTabelle(unsigned mb) {
        const uint64_t passt = (uint64_t{mb} << 20) / sizeof(PerftEintrag);
        if (passt == 0) return;
        uint64_t n = 1;
        while (n * 2 <= passt) n *= 2;
        // calloc leaves the zero pages to the system: only the entries touched cost anything.
        eintraege_.reset(static_cast<PerftEintrag*>(std::calloc(n, sizeof(PerftEintrag))));
        if (!eintraege_) throw std::bad_alloc();
        maske_ = n - 1;
    }
    bool Aktiv() const { return eintraege_ != nullptr; }
    PerftEintrag* Eintrag(uint64_t schluessel) const {
        return eintraege_ ? &eintraege_[schluessel & maske_] : nullptr;
    }

private:
    struct Freigabe {
        void operator()(PerftEintrag* p) const { std::free(p); }
    };
    std::unique_ptr<PerftEintrag[], Freigabe> eintraege_;
    uint64_t maske_ = 0;
};

uint64_t Zaehle(Stellung_t& st, const Stellungsdaten_t& daten, int tiefe, const PerftTabelle& tabelle) {
    PerftEintrag* e = tabelle.Eintrag(daten.schluessel);
    if (e && e->schluessel == daten.schluessel && e->tiefe == static_cast<uint32_t>(tiefe)) return e->knoten;

    Zugliste_t liste;
    const uint32_t* ende = ErzeugeZuege(st, daten, liste);
    Stellungsdaten_t neu;
    Rueckzug_t r;
    uint64_t knoten = 0;
    if (tiefe == 1) {
        // The last ply only asks whether each move is legal.
        for (const uint32_t* z = liste; z != ende; ++z) {
            if (ZugLegal(st, static_cast<Zug_t>(*z), daten, neu, r)) {
                r.Zuruecknehmen();
                ++knoten;
            }
        }
    } else {
        for (const uint32_t* z = liste; z != ende; ++z) {
            ZugMachen(st, static_cast<Zug_t>(*z), neu, daten, r);
            // The child's entry is a cache miss: start loading it while the attacks are built.
            if (tabelle.Aktiv()) __builtin_prefetch(tabelle.Eintrag(neu.schluessel));
            if (!AngriffeNachZug(st, neu, r)) continue;
            knoten += Zaehle(st, neu, tiefe - 1, tabelle);
            r.Zuruecknehmen();
        }
    }

    // Keep an entry of a deeper search, or one that stood for more than twice the work.
    if (e && (static_cast<uint32_t>(tiefe) > e->tiefe || 2 * knoten >= e->knoten)) {
        e->schluessel = daten.schluessel;
        e->knoten = knoten;
        e->tiefe = static_cast<uint32_t>(tiefe);
    }
    return knoten;
}

double Jetzt() {
    using namespace std::chrono;
    return static_cast<double>(duration_cast<milliseconds>(system_clock::now().time_since_epoch()).count());
}

}  // namespace

uint64_t Perft(const Stellung_t& st, int tiefe, unsigned tabelleMb) {
    if (tiefe <= 0) return 0;
    auto kopie = std::make_unique<Stellung_t>(st);
    Stellungsdaten_t daten;
    BerechneStellungsdaten(*kopie, daten);
    const PerftTabelle tabelle(tabelleMb);
    return Zaehle(*kopie, daten, tiefe, tabelle);
}

void PerftBefehl(const Stellung_t& st, const char* text, const std::function<void(const std::string&)>& zeile) {
    int tiefe = 0;
    const char* p = std::strstr(text, "depth");
    if (!p || std::sscanf(p, "depth %d", &tiefe) != 1) {
        zeile("info string perft without depth");
        return;
    }
    int mb = 0;
    if (const char* h = std::strstr(text, "Hash")) std::sscanf(h, "Hash %d", &mb);
    const unsigned tabelleMb = mb > 0 ? static_cast<unsigned>(mb) : 0;
    char puffer[256];

    if (!std::strstr(text, "divide")) {
        const double start = Jetzt();
        const uint64_t knoten = Perft(st, tiefe, tabelleMb);
        std::snprintf(puffer, sizeof puffer, "info depth %d time %16.0f nodes %16.0f", tiefe, Jetzt() - start,
                      static_cast<double>(knoten));
        zeile(puffer);
        return;
    }

    auto kopie = std::make_unique<Stellung_t>(st);
    Stellung_t& s = *kopie;
    Stellungsdaten_t daten;
    BerechneStellungsdaten(s, daten);
    Zugliste_t liste;
    const uint32_t* ende = ErzeugeZuege(s, daten, liste);
    const double start = Jetzt();
    double vorige = start;
    uint64_t summe = 0;
    for (const uint32_t* z = liste; z != ende; ++z) {
        const auto zug = static_cast<Zug_t>(*z);
        char zugtext[8];
        ZugText(s, zug, zugtext);
        Stellungsdaten_t neu;
        Rueckzug_t r;
        if (!ZugMachenLegal(s, zug, daten, neu, r)) continue;
        uint64_t knoten = 0;
        if (tiefe - 1 > 0) {
            const PerftTabelle tabelle(tabelleMb);
            knoten = Zaehle(s, neu, tiefe - 1, tabelle);
        }
        r.Zuruecknehmen();
        // At depth 1 the move lines say 0 while the total counts each legal move once.
        summe += tiefe > 1 ? knoten : 1;
        const double jetzt = Jetzt();
        std::snprintf(puffer, sizeof puffer, "info move %s depth %d time %16.0f nodes %16.0f", zugtext, tiefe - 1,
                      jetzt - vorige, static_cast<double>(knoten));
        vorige = jetzt;
        zeile(puffer);
    }
    std::snprintf(puffer, sizeof puffer, "info depth %d time %16.0f nodes %16.0f", tiefe, Jetzt() - start,
                  static_cast<double>(summe));
    zeile(puffer);
}
