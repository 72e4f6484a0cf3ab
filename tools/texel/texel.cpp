// Texel tuner: fits the evaluation weights of src/search/gewichte.h to
// positions labelled with an oracle's score.
//
// Loss: mean squared difference of sigmoid(K * eval) and sigmoid(c * score_cp).
// K is fitted once to the starting weights and then held, so the scale of the
// weights (a pawn near 1000) stays put.
//
// Method: the evaluation is nearly linear in each weight, so every weight is
// nudged once and the change of every position's score recorded (finite
// differences). Gradient descent then runs on that linear model, cheaply and
// many times; the result is checked against the real evaluation, and a
// second round can start from it. A tenth of the positions is held out and
// only used to pick the stopping point and to report the error.
//
//   kelvaran_texel DATA GEWICHTE_IN GEWICHTE_OUT [ROUNDS] [ITERATIONS]
//
// DATA holds "fen;score" lines. GEWICHTE_OUT receives GEWICHTE_IN with the
// tuned numbers written in (same layout and comments).

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstring>
#include <fstream>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "board/stellung.h"
#include "board/tabellen.h"
#include "search/bewertung.h"
#include "search/gewichte.h"

#ifndef KELVARAN_TUNER
#error "the tuner needs the writable weights: compile with KELVARAN_TUNER"
#endif

namespace G = Gewichte;

namespace {

// ---- Positions ------------------------------------------------------------------------

// Only the part of Stellung_t before the history: the evaluation never reads it.
constexpr std::size_t StellungKopf = offsetof(Stellung_t, Historie);

struct Probe_t {
    unsigned char kopf[StellungKopf];
    Stellungsdaten_t daten;
    float ziel;  // sigmoid of the oracle's score
    bool halt;   // held out
};

struct Bewerter_t {
    std::unique_ptr<Bauerncache_t> bauern = std::make_unique<Bauerncache_t>();
    std::unique_ptr<Materialcache_t> material = std::make_unique<Materialcache_t>();
    std::unique_ptr<Stellung_t> st = std::make_unique<Stellung_t>();

    // Weights changed: forget everything derived from them.
    void Leeren() {
        std::memset(static_cast<void*>(bauern.get()), 0, sizeof(Bauerncache_t));
        std::memset(static_cast<void*>(material.get()), 0, sizeof(Materialcache_t));
    }
    // White's view, so that a weight's effect has one sign for both colours.
    int Wert(const Probe_t& p) {
        std::memcpy(static_cast<void*>(st.get()), p.kopf, StellungKopf);
        const int r = Bewerte(*st, p.daten, *bauern, *material);
        return st->amZug == Weiss ? r : -r;
    }
};

double Sigmoid(double x) { return 1.0 / (1.0 + std::exp(-x)); }

// Oracle centipawns to an expected score: the usual logistic, 400 cp per factor 10.
constexpr double OrakelFaktor = 2.302585093 / 400.0;

std::vector<Probe_t> LadeDaten(const char* pfad) {
    std::vector<Probe_t> v;
    std::ifstream f(pfad);
    std::string zeile;
    auto st = std::make_unique<Stellung_t>();
    std::size_t n = 0;
    while (std::getline(f, zeile)) {
        const auto trenn = zeile.find(';');
        if (trenn == std::string::npos) continue;
        Probe_t p{};
        if (!SetzeStellung(*st, p.daten, zeile.substr(0, trenn).c_str())) continue;
        std::memcpy(p.kopf, static_cast<const void*>(st.get()), StellungKopf);
        int cp = std::stoi(zeile.substr(trenn + 1));
        if (st->amZug == Schwarz) cp = -cp;  // White's view like Wert()
        p.ziel = static_cast<float>(Sigmoid(OrakelFaktor * cp));
        p.halt = (n++ % 10) == 9;
        v.push_back(p);
    }
    return v;
}

// ---- Weights ------------------------------------------------------------------------

using Bereiche_t = std::vector<std::pair<int, int>>;  // [from, to) element ranges

// One declaration of gewichte.h: where its numbers live, how many it has, which
// of them the tuner may move and by how much it nudges them.
struct Gewicht_t {
    enum Art_t { Gepackt, Kurz, Ganz } art;
    std::string name;
    void* zahlen;
    int anzahl;                                 // numbers of the declaration, in order
    Bereiche_t bereiche;                        // the tuned ones
    double schritt;                             // finite-difference step
    int zeile;                                  // numbers per row (names; skipping "{}" rows)
};

Gewicht_t Gepackt(const char* name, int32_t* p, int n, Bereiche_t b = {}) {
    return {Gewicht_t::Gepackt, name, p, n, b.empty() ? Bereiche_t{{0, n}} : b, 50, 0};
}
Gewicht_t Kurz(const char* name, int16_t* p, int n, Bereiche_t b = {}, int zeile = 0) {
    return {Gewicht_t::Kurz, name, p, n, b.empty() ? Bereiche_t{{0, n}} : b, 50, zeile};
}
Gewicht_t Ganz(const char* name, int* p, int n, double schritt, Bereiche_t b = {}) {
    return {Gewicht_t::Ganz, name, p, n, b.empty() ? Bereiche_t{{0, n}} : b, schritt, 0};
}

// Every weight of the evaluation, in the order the tuner takes them.
std::vector<Gewicht_t> Gewichtsliste() {
    constexpr int F = 32;  // squares of a piece-square row
    return {
        Gepackt("Materialwert", G::Materialwert, 7, {{1, 6}}),
        Gepackt("Laeuferpaar", &G::Laeuferpaar, 1),
        Gepackt("TurmRedundanz", &G::TurmRedundanz, 1),
        Gepackt("DameRedundanz", &G::DameRedundanz, 1),
        Ganz("SpringerJeBauer", &G::SpringerJeBauer, 1, 10),
        Ganz("TurmJeBauer", &G::TurmJeBauer, 1, 10),
        // Pawns never stand on the first and last rank (rows 0 and 7).
        Kurz("FeldMg", &G::FeldMg[0][0], 7 * F, {{Bauer * F + 4, Bauer * F + 28}, {Springer * F, 7 * F}}, F),
        Kurz("FeldEg", &G::FeldEg[0][0], 7 * F, {{Bauer * F + 4, Bauer * F + 28}, {Springer * F, 7 * F}}, F),
        Gepackt("SpringerMobilitaet", G::SpringerMobilitaet, 9),
        Gepackt("LaeuferMobilitaet", G::LaeuferMobilitaet, 14),
        Gepackt("TurmMobilitaet", G::TurmMobilitaet, 15),
        Gepackt("DameMobilitaet", G::DameMobilitaet, 28),
        Gepackt("SpringerVorposten", &G::SpringerVorposten, 1),
        Gepackt("LaeuferVorposten", &G::LaeuferVorposten, 1),
        Gepackt("SpringerVorpostenErreichbar", &G::SpringerVorpostenErreichbar, 1),
        Gepackt("LeichtHinterBauer", &G::LeichtHinterBauer, 1),
        Gepackt("LaeuferBauernFarbe", &G::LaeuferBauernFarbe, 1),
        Gepackt("TurmOffeneLinie", &G::TurmOffeneLinie, 1),
        Gepackt("TurmHalboffeneLinie", &G::TurmHalboffeneLinie, 1),
        Gepackt("TurmSiebteReihe", &G::TurmSiebteReihe, 1),
        Gepackt("TurmEingesperrt", &G::TurmEingesperrt, 1),
        Gepackt("TurmHinterFreibauer", &G::TurmHinterFreibauer, 1),
        Gepackt("TurmAufDamenlinie", &G::TurmAufDamenlinie, 1),
        Gepackt("LaeuferLangeDiagonale", &G::LaeuferLangeDiagonale, 1),
        Gepackt("KoenigsAbstand", G::KoenigsAbstand, 4, {{2, 4}}),
        Gepackt("BauernloseFlanke", &G::BauernloseFlanke, 1),
        Gepackt("DameSchwach", &G::DameSchwach, 1),
        Gepackt("DameEindringen", &G::DameEindringen, 1),
        Gepackt("FreibauerLinie", G::FreibauerLinie, 4),
        Gepackt("BlockierterBauer", G::BlockierterBauer, 2),
        Gepackt("LaeuferBlockierteBauern", &G::LaeuferBlockierteBauern, 1),
        Gepackt("Gefesselt", G::Gefesselt, 6, {{1, 6}}),
        Gepackt("DrohungLeicht", G::DrohungLeicht, 6, {{1, 6}}),
        Gepackt("DrohungTurm", G::DrohungTurm, 6, {{1, 6}}),
        Gepackt("DrohungKoenig", &G::DrohungKoenig, 1),
        Gepackt("Haengend", &G::Haengend, 1),
        Gepackt("DrohungSichererBauer", &G::DrohungSichererBauer, 1),
        Gepackt("DrohungBauernvorstoss", &G::DrohungBauernvorstoss, 1),
        Gepackt("SpringerAufDame", &G::SpringerAufDame, 1),
        Gepackt("LaeuferTurmAufDame", &G::LaeuferTurmAufDame, 1),
        Gepackt("Eingeschraenkt", &G::Eingeschraenkt, 1),
        Gepackt("Drohungszahl", &G::Drohungszahl[0][0], 6, {{1, 3}, {4, 6}}),
        Ganz("RaumFaktor", &G::RaumFaktor, 1, 1),
        Gepackt("ZentrumKontrolle", &G::ZentrumKontrolle, 1),
        Gepackt("ZentrumDoppelt", &G::ZentrumDoppelt, 1),
        Gepackt("Isoliert", &G::Isoliert, 1),
        Gepackt("Rueckstaendig", &G::Rueckstaendig, 1),
        Gepackt("SchwachUngegenueber", &G::SchwachUngegenueber, 1),
        Gepackt("Doppelt", &G::Doppelt, 1),
        Gepackt("Verbunden", G::Verbunden, 9, {{2, 8}}),
        Gepackt("Gestuetzt", &G::Gestuetzt, 1),
        Gepackt("Freibauer", G::Freibauer, 9, {{2, 8}}),
        Kurz("Schildbauer", &G::Schildbauer[0][0], 32),
        Kurz("SturmFrei", G::SturmFrei, 9),
        Kurz("SturmBlockiert", G::SturmBlockiert, 9),
        Ganz("OffeneLinieAmKoenig", &G::OffeneLinieAmKoenig, 1, 50),
        Ganz("Koenigsgefahr", G::Koenigsgefahr, 64, 50, {{1, 64}}),
        Ganz("Angreifer", G::Angreifer, 7, 1, {{2, 6}}),
        Ganz("ZonenTreffer", &G::ZonenTreffer, 1, 1),
        Ganz("SchwachImRing", &G::SchwachImRing, 1, 1),
        Ganz("SicheresSchach", G::SicheresSchach, 7, 1, {{2, 6}}),
        Ganz("OhneDame", &G::OhneDame, 1, 1),
        Ganz("SpringerVerteidiger", &G::SpringerVerteidiger, 1, 1),
        Ganz("SkalaBauernBasis", &G::SkalaBauernBasis, 1, 2),
        Ganz("SkalaJeBauer", &G::SkalaJeBauer, 1, 1),
        Ganz("FlankenAngriff", &G::FlankenAngriff, 1, 5),
        Ganz("FreibauerStufe", G::FreibauerStufe, 9, 1, {{4, 8}}),
        Ganz("PasserKoenigGegner", &G::PasserKoenigGegner, 1, 2),
        Ganz("PasserKoenigEigen", &G::PasserKoenigEigen, 1, 2),
        Gepackt("FreierPfad", &G::FreierPfad, 1),
        Gepackt("StoppSicher", &G::StoppSicher, 1),
        Gepackt("StoppGedeckt", &G::StoppGedeckt, 1),
        Ganz("Unaufhaltbar", &G::Unaufhaltbar, 1, 100),
        Ganz("UnaufhaltbarJeZug", &G::UnaufhaltbarJeZug, 1, 20),
        Ganz("KoenigBauernAbstand", &G::KoenigBauernAbstand, 1, 10),
        Ganz("KomplexFreibauer", &G::KomplexFreibauer, 1, 20),
        Ganz("KomplexBauer", &G::KomplexBauer, 1, 20),
        Ganz("KomplexUmgehung", &G::KomplexUmgehung, 1, 20),
        Ganz("KomplexBeideFluegel", &G::KomplexBeideFluegel, 1, 40),
        Ganz("KomplexBauernendspiel", &G::KomplexBauernendspiel, 1, 40),
        Ganz("KomplexBasis", &G::KomplexBasis, 1, 50),
    };
}

// One tunable number: a half of a packed pair, or a plain integer.
struct Parameter_t {
    std::string name;
    int32_t* gepackt = nullptr;
    bool eg = false;
    int16_t* kurz = nullptr;
    int* ganz = nullptr;
    double schritt = 50;  // finite-difference step, also sets the learning rate

    int Lies() const {
        if (gepackt) return eg ? EgWert(*gepackt) : MgWert(*gepackt);
        if (kurz) return *kurz;
        return *ganz;
    }
    void Setze(int w) const {
        if (gepackt)
            *gepackt = eg ? S(MgWert(*gepackt), w) : S(w, EgWert(*gepackt));
        else if (kurz)
            *kurz = static_cast<int16_t>(w);
        else
            *ganz = w;
    }
};

std::vector<Parameter_t> Parameterliste() {
    std::vector<Parameter_t> v;
    for (const Gewicht_t& g : Gewichtsliste())
        for (const auto& [von, bis] : g.bereiche)
            for (int i = von; i < bis; ++i) {
                const std::string name = g.zeile ? g.name + "[" + std::to_string(i / g.zeile) + "][" +
                                                       std::to_string(i % g.zeile) + "]"
                                                 : g.name + "[" + std::to_string(i) + "]";
                Parameter_t x;
                x.name = name;
                x.schritt = g.schritt;
                if (g.art == Gewicht_t::Kurz) {
                    x.kurz = static_cast<int16_t*>(g.zahlen) + i;
                } else if (g.art == Gewicht_t::Ganz) {
                    x.ganz = static_cast<int*>(g.zahlen) + i;
                } else {
                    x.gepackt = static_cast<int32_t*>(g.zahlen) + i;
                    x.name = name + ".mg";
                    v.push_back(x);
                    x.eg = true;
                    x.name = name + ".eg";
                }
                v.push_back(x);
            }
    return v;
}

// Keeps the result sensible where the data say little.
void Grenzen() {
    // The danger table only grows and starts at zero.
    G::Koenigsgefahr[0] = 0;
    for (int i = 1; i < 64; ++i) G::Koenigsgefahr[i] = std::max(G::Koenigsgefahr[i], G::Koenigsgefahr[i - 1]);
    for (int i = 4; i < 8; ++i) G::FreibauerStufe[i] = std::max(G::FreibauerStufe[i], 0);
    G::RaumFaktor = std::max(G::RaumFaktor, 0);
    for (unsigned t = Springer; t <= Dame; ++t) {
        G::Angreifer[t] = std::max(G::Angreifer[t], 0);
        G::SicheresSchach[t] = std::max(G::SicheresSchach[t], 0);
    }
    G::ZonenTreffer = std::max(G::ZonenTreffer, 0);
    G::SchwachImRing = std::max(G::SchwachImRing, 0);
    G::PasserKoenigGegner = std::max(G::PasserKoenigGegner, 0);
    G::PasserKoenigEigen = std::max(G::PasserKoenigEigen, 0);
    G::Unaufhaltbar = std::max(G::Unaufhaltbar, 0);
    G::SkalaBauernBasis = std::clamp(G::SkalaBauernBasis, 0, 64);
    G::SkalaJeBauer = std::max(G::SkalaJeBauer, 0);
}

// ---- Loss -----------------------------------------------------------------------------

struct Fehler_t {
    double training = 0, halt = 0;
};

Fehler_t Fehler(const std::vector<float>& werte, const std::vector<Probe_t>& daten, double k) {
    double s[2] = {0, 0};
    std::size_t n[2] = {0, 0};
    for (std::size_t i = 0; i < daten.size(); ++i) {
        const double d = Sigmoid(k * werte[i]) - daten[i].ziel;
        s[daten[i].halt] += d * d;
        ++n[daten[i].halt];
    }
    return {s[0] / std::max<std::size_t>(n[0], 1), s[1] / std::max<std::size_t>(n[1], 1)};
}

std::vector<float> AlleWerte(Bewerter_t& b, const std::vector<Probe_t>& daten) {
    b.Leeren();
    std::vector<float> w(daten.size());
    for (std::size_t i = 0; i < daten.size(); ++i) w[i] = static_cast<float>(b.Wert(daten[i]));
    return w;
}

// K by golden-section search on the training error.
double PasseK(const std::vector<float>& werte, const std::vector<Probe_t>& daten) {
    double a = 1e-5, c = 1e-2;
    const double phi = 0.618033988749895;
    for (int i = 0; i < 60; ++i) {
        const double x1 = c - phi * (c - a), x2 = a + phi * (c - a);
        if (Fehler(werte, daten, x1).training < Fehler(werte, daten, x2).training)
            c = x2;
        else
            a = x1;
    }
    return (a + c) / 2;
}

// ---- One round: linearise, descend, check ------------------------------------------

struct Eintrag_t {
    uint32_t probe;
    float faktor;  // score change per unit of the weight
};

void Runde(Bewerter_t& b, const std::vector<Probe_t>& daten, const std::vector<Parameter_t>& param, double k,
           int iterationen) {
    const std::size_t n = daten.size();
    const std::vector<float> basis = AlleWerte(b, daten);
    std::vector<std::vector<Eintrag_t>> spalten(param.size());
    std::size_t nichtNull = 0;
    for (std::size_t j = 0; j < param.size(); ++j) {
        const Parameter_t& p = param[j];
        const int alt = p.Lies();
        const int d = static_cast<int>(p.schritt);
        p.Setze(alt + d);
        b.Leeren();
        for (std::size_t i = 0; i < n; ++i) {
            const float diff = static_cast<float>(b.Wert(daten[i])) - basis[i];
            if (diff != 0) spalten[j].push_back({static_cast<uint32_t>(i), diff / static_cast<float>(d)});
        }
        p.Setze(alt);
        nichtNull += spalten[j].size();
    }
    std::fprintf(stderr, "linearised: %zu weights, %zu non-zero entries\n", param.size(), nichtNull);

    // Adam on the linear model; the held-out error picks the stopping point.
    std::size_t nTrain = 0;
    for (const Probe_t& p : daten) nTrain += !p.halt;
    const double lambda = 1e-9;  // mild pull back to the starting weights
    std::vector<double> delta(param.size(), 0), m(param.size(), 0), v(param.size(), 0), besteDelta(delta);
    std::vector<double> werte(n), g(n);
    double besterHalt = 1e9;
    int besteIter = 0;
    for (int it = 1; it <= iterationen; ++it) {
        for (std::size_t i = 0; i < n; ++i) werte[i] = basis[i];
        for (std::size_t j = 0; j < param.size(); ++j)
            if (delta[j] != 0)
                for (const Eintrag_t& e : spalten[j]) werte[e.probe] += e.faktor * delta[j];
        double fT = 0, fH = 0;
        for (std::size_t i = 0; i < n; ++i) {
            const double s = Sigmoid(k * werte[i]);
            const double d = s - daten[i].ziel;
            if (daten[i].halt) {
                fH += d * d;
                g[i] = 0;
            } else {
                fT += d * d;
                g[i] = 2 * d * s * (1 - s) * k / static_cast<double>(nTrain);
            }
        }
        fH /= static_cast<double>(n - nTrain);
        fT /= static_cast<double>(nTrain);
        if (fH < besterHalt) {
            besterHalt = fH;
            besteDelta = delta;
            besteIter = it;
        }
        if (it % 100 == 1) std::fprintf(stderr, "  iteration %4d: training %.6f  held out %.6f\n", it, fT, fH);
        for (std::size_t j = 0; j < param.size(); ++j) {
            double gr = 2 * lambda * delta[j] / (param[j].schritt * param[j].schritt) * 2500;
            for (const Eintrag_t& e : spalten[j]) gr += e.faktor * g[e.probe];
            m[j] = 0.9 * m[j] + 0.1 * gr;
            v[j] = 0.999 * v[j] + 0.001 * gr * gr;
            const double mh = m[j] / (1 - std::pow(0.9, it)), vh = v[j] / (1 - std::pow(0.999, it));
            delta[j] -= param[j].schritt / 25 * mh / (std::sqrt(vh) + 1e-12);
        }
    }
    std::fprintf(stderr, "linear model: best held-out %.6f at iteration %d\n", besterHalt, besteIter);
    for (std::size_t j = 0; j < param.size(); ++j)
        param[j].Setze(param[j].Lies() + static_cast<int>(std::lround(besteDelta[j])));
    Grenzen();
}

// ---- Writing the weights back ---------------------------------------------------------

// One declaration of gewichte.h: its values in order, packed or plain.
struct Block_t {
    std::string name;
    bool gepackt;
    std::vector<long> werte;  // packed: the raw int32 values
    int zeile = 0;            // elements per row, to skip an empty "{}" row
};

std::vector<Block_t> Bloecke() {
    std::vector<Block_t> v;
    for (const Gewicht_t& g : Gewichtsliste()) {
        Block_t b{g.name, g.art == Gewicht_t::Gepackt, {}, g.zeile};
        for (int i = 0; i < g.anzahl; ++i)
            b.werte.push_back(g.art == Gewicht_t::Kurz ? static_cast<const int16_t*>(g.zahlen)[i]
                                                        : static_cast<const int32_t*>(g.zahlen)[i]);
        v.push_back(b);
    }
    return v;
}

std::string Formatiere(const Block_t& b, long w) {
    if (!b.gepackt) return std::to_string(w);
    const int32_t x = static_cast<int32_t>(w);
    if (x == 0) return "0";
    return "S(" + std::to_string(MgWert(x)) + ", " + std::to_string(EgWert(x)) + ")";
}

bool IstZiffer(char c) { return c >= '0' && c <= '9'; }
bool IstNamenszeichen(char c) { return IstZiffer(c) || c == '_' || ((c | 32) >= 'a' && (c | 32) <= 'z'); }

// Replaces the numbers of the declaration's initialiser in order, leaving
// comments, spacing and line breaks alone.
bool SchreibeBlock(std::string& text, const Block_t& b) {
    std::size_t pos = 0;
    for (;;) {
        pos = text.find("KELVARAN_GEWICHT", pos);
        if (pos == std::string::npos) return false;
        const std::size_t zeilenende = text.find('\n', pos);
        // Only the declaration's own line up to its '=' names it.
        const std::string kopf = text.substr(pos, std::min(text.find('=', pos), zeilenende) - pos);
        const std::size_t hier = kopf.find(" " + b.name);
        if (hier != std::string::npos && !IstNamenszeichen(kopf[hier + 1 + b.name.size()])) break;
        pos = zeilenende;
    }
    std::size_t i = text.find('=', pos) + 1;
    std::size_t element = 0;
    std::string neu;
    neu.reserve(1024);
    while (i < text.size() && text[i] != ';') {
        if (text.compare(i, 2, "//") == 0) {
            const std::size_t e = text.find('\n', i);
            neu += text.substr(i, e - i);
            i = e;
            continue;
        }
        if (text.compare(i, 2, "{}") == 0 && b.zeile) {
            element += static_cast<std::size_t>(b.zeile);
            neu += "{}";
            i += 2;
            continue;
        }
        std::size_t ende = i;
        if (text.compare(i, 2, "S(") == 0) {
            ende = text.find(')', i) + 1;
        } else if (IstZiffer(text[i]) || (text[i] == '-' && IstZiffer(text[i + 1]))) {
            ende = i + 1;
            while (IstZiffer(text[ende])) ++ende;
        }
        if (ende == i) {
            neu += text[i++];
            continue;
        }
        if (element >= b.werte.size()) return false;
        neu += Formatiere(b, b.werte[element++]);
        i = ende;
    }
    if (element != b.werte.size()) return false;
    text.replace(text.find('=', pos) + 1, i - text.find('=', pos) - 1, neu);
    return true;
}

bool SchreibeGewichte(const char* ein, const char* aus) {
    std::ifstream f(ein);
    std::stringstream ss;
    ss << f.rdbuf();
    std::string text = ss.str();
    for (const Block_t& b : Bloecke())
        if (!SchreibeBlock(text, b)) {
            std::fprintf(stderr, "cannot place %s\n", b.name.c_str());
            return false;
        }
    std::ofstream o(aus);
    o << text;
    return static_cast<bool>(o);
}

}  // namespace

int main(int argc, char** argv) {
    if (argc < 4) {
        std::fprintf(stderr, "usage: %s DATA GEWICHTE_IN GEWICHTE_OUT [ROUNDS] [ITERATIONS]\n", argv[0]);
        return 2;
    }
    const int runden = argc > 4 ? std::atoi(argv[4]) : 2;
    const int iterationen = argc > 5 ? std::atoi(argv[5]) : 1500;
    InitTabellen();
    const std::vector<Probe_t> daten = LadeDaten(argv[1]);
    std::fprintf(stderr, "%zu positions\n", daten.size());
    if (daten.empty()) return 1;

    Bewerter_t b;
    const std::vector<Parameter_t> param = Parameterliste();
    std::vector<int> start;
    for (const Parameter_t& p : param) start.push_back(p.Lies());

    std::vector<float> werte = AlleWerte(b, daten);
    const double k = PasseK(werte, daten);
    const Fehler_t vorher = Fehler(werte, daten, k);
    std::fprintf(stderr, "K = %.4g (1 pawn = %.0f oracle cp); error before: training %.6f held out %.6f\n", k,
                 1000 * k / OrakelFaktor, vorher.training, vorher.halt);

    for (int r = 0; r < runden; ++r) {
        Runde(b, daten, param, k, iterationen);
        werte = AlleWerte(b, daten);
        const Fehler_t f = Fehler(werte, daten, k);
        std::fprintf(stderr, "round %d, real evaluation: training %.6f held out %.6f\n", r + 1, f.training, f.halt);
        // Write after every round so that a stopped run still leaves a result.
        if (!SchreibeGewichte(argv[2], argv[3])) return 1;
    }

    // The biggest moves, for the report.
    std::vector<std::pair<int, std::size_t>> aenderung;
    for (std::size_t j = 0; j < param.size(); ++j) aenderung.push_back({std::abs(param[j].Lies() - start[j]), j});
    std::sort(aenderung.rbegin(), aenderung.rend());
    for (std::size_t i = 0; i < std::min<std::size_t>(40, aenderung.size()); ++i) {
        const Parameter_t& p = param[aenderung[i].second];
        std::printf("%-32s %6d -> %6d\n", p.name.c_str(), start[aenderung[i].second], p.Lies());
    }
    return 0;
}
