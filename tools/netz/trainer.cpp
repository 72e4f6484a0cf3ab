#include "netz/trainer.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <filesystem>
#include <fstream>
#include <limits>
#include <memory>
#include <random>
#include <thread>
#include <type_traits>

#include "netz/datensatz.h"
#include "search/bewertung.h"
#include "search/endspiel.h"

namespace {

constexpr int H = NetzBreite;
// The float network in one block: first-layer weights by input, its biases, the two
// outputs' weights (the side to move's nodes, then the other's), the two output biases.
constexpr size_t OffsetB1 = static_cast<size_t>(NetzEingaben) * H;
constexpr size_t OffsetW2 = OffsetB1 + H;
constexpr size_t OffsetB2 = OffsetW2 + 2 * 2 * H;
constexpr size_t Parameterzahl = OffsetB2 + 2;
// Weights are kept where their integer forms cannot overflow: 32 men of first-layer
// weights and a bias stay within 16 bits.
constexpr float GrenzeErsteSchicht = 1.98f;
constexpr float GrenzeAusgabe = 8.0f;
constexpr int QuantisierungsStichprobe = 20000;

using Netz_t = std::vector<float>;

// The evaluation's framework around the network for one position, White's view, and the target.
struct Rahmen_t {
    float basis[2];      // material, pawn structure and tempo: middlegame, endgame
    float anteil[2];     // phase weights as shares
    float wert;          // plain score
    float faktor[2];     // scale as a share when White / Black is ahead
    float zusatz;        // an endgame rule's correction, side to move's view
    bool ersetzt;        // an endgame rule scores the position instead
    float ziel;          // target probability, side to move's view
    uint8_t amZug;
};

double Sigmoid(double x) { return 1.0 / (1.0 + std::exp(-x)); }

// Runs f(thread, begin, end) on `threads` threads over [0, n).
template <typename F>
void Parallel(int threads, size_t n, F&& f) {
    std::vector<std::thread> t;
    for (int i = 0; i < threads; ++i) {
        const size_t a = n * i / threads, b = n * (i + 1) / threads;
        t.emplace_back([&f, i, a, b] { f(i, a, b); });
    }
    for (std::thread& x : t) x.join();
}

// The inputs of both sides' points of view; `spiegel` 7 reads the board with the wings
// exchanged, which the evaluation without castling rights scores alike.
int Merkmale(const Datensatz_t& d, uint16_t (&m)[2][32], unsigned spiegel) {
    int n = 0;
    JederMann(d, [&](unsigned seite, unsigned typ, Feld f) {
        f ^= spiegel;
        m[Weiss][n] = static_cast<uint16_t>(NetzMerkmal(Weiss, seite, typ, f));
        m[Schwarz][n] = static_cast<uint16_t>(NetzMerkmal(Schwarz, seite, typ, f));
        ++n;
    });
    return n;
}

// One position through the float network and the framework, as the engine computes
// it but without rounding; keeps what the backward pass needs.
struct Durchlauf_t {
    alignas(64) float akku[2][H];
    uint16_t m[2][32];
    int anzahl;
    float netz[2];      // the network's two values, internal units, side to move's view
    float r;            // blended, White's view, before scaling
    float e;            // the evaluation, side to move's view
};

float Vorwaerts(const Netz_t& p, const Datensatz_t& d, const Rahmen_t& rahmen, Durchlauf_t& x,
               unsigned spiegel = 0) {
    x.anzahl = Merkmale(d, x.m, spiegel);
    for (unsigned s = 0; s < 2; ++s) {
        float* a = x.akku[s];
        std::copy(p.begin() + OffsetB1, p.begin() + OffsetB1 + H, a);
        for (int i = 0; i < x.anzahl; ++i) {
            const float* w = &p[static_cast<size_t>(x.m[s][i]) * H];
            for (int k = 0; k < H; ++k) a[k] += w[k];
        }
    }
    const unsigned wir = rahmen.amZug;
    for (int j = 0; j < 2; ++j) {
        const float* w = &p[OffsetW2 + static_cast<size_t>(j) * 2 * H];
        float summe = p[OffsetB2 + j];
        for (unsigned h = 0; h < 2; ++h)
            for (int k = 0; k < H; ++k) summe += std::clamp(x.akku[wir ^ h][k], 0.0f, 1.0f) * w[h * H + k];
        x.netz[j] = std::clamp(summe * NetzAusgabeSkala, -static_cast<float>(NetzWertGrenze),
                               static_cast<float>(NetzWertGrenze));
    }
    const float vz = wir == Weiss ? 1.0f : -1.0f;
    x.r = (rahmen.basis[0] + vz * x.netz[0]) * rahmen.anteil[0] + (rahmen.basis[1] + vz * x.netz[1]) * rahmen.anteil[1] +
          rahmen.wert;
    x.e = vz * x.r * rahmen.faktor[x.r > 0 ? Weiss : Schwarz] + rahmen.zusatz;
    return x.e;
}

// dL/de of one position into the gradient `g`.
void Rueckwaerts(const Netz_t& p, const Rahmen_t& rahmen, const Durchlauf_t& x, float dLde, float* g) {
    const unsigned wir = rahmen.amZug;
    const float faktor = rahmen.faktor[x.r > 0 ? Weiss : Schwarz];
    float dAus[2];
    for (int j = 0; j < 2; ++j) {
        const bool begrenzt = std::abs(x.netz[j]) >= static_cast<float>(NetzWertGrenze);
        dAus[j] = begrenzt ? 0.0f : dLde * faktor * rahmen.anteil[j] * NetzAusgabeSkala;
        g[OffsetB2 + j] += dAus[j];
    }
    alignas(64) float dAkku[2][H];
    for (unsigned h = 0; h < 2; ++h) {
        const float* a = x.akku[wir ^ h];
        float* da = dAkku[wir ^ h];
        for (int k = 0; k < H; ++k) {
            const float v = std::clamp(a[k], 0.0f, 1.0f);
            float d = 0;
            for (int j = 0; j < 2; ++j) {
                const size_t i = OffsetW2 + static_cast<size_t>(j) * 2 * H + h * H + k;
                g[i] += dAus[j] * v;
                d += dAus[j] * p[i];
            }
            da[k] = (a[k] > 0.0f && a[k] < 1.0f) ? d : 0.0f;
        }
    }
    for (int k = 0; k < H; ++k) g[OffsetB1 + k] += dAkku[0][k] + dAkku[1][k];
    for (unsigned s = 0; s < 2; ++s)
        for (int i = 0; i < x.anzahl; ++i) {
            float* gw = &g[static_cast<size_t>(x.m[s][i]) * H];
            for (int k = 0; k < H; ++k) gw[k] += dAkku[s][k];
        }
}

Rahmen_t RahmenVon(const Stellung_t& st, const Stellungsdaten_t& daten, Bauerncache_t& bauern,
                   Materialcache_t& material) {
    const Bewertungsrahmen_t b = BewertungsrahmenVon(st, daten, bauern, material);
    Rahmen_t r{};
    r.basis[0] = static_cast<float>(MgWert(b.summe));
    r.basis[1] = static_cast<float>(EgWert(b.summe));
    r.anteil[0] = static_cast<float>(b.mgGewicht) / 256.0f;
    r.anteil[1] = static_cast<float>(b.egGewicht) / 256.0f;
    r.wert = static_cast<float>(b.wert);
    r.faktor[0] = static_cast<float>(b.faktor[0]) / 64.0f;
    r.faktor[1] = static_cast<float>(b.faktor[1]) / 64.0f;
    r.amZug = static_cast<uint8_t>(st.amZug);
    const Endspielergebnis_t e = Endspielwissen(st);
    r.zusatz = e.modus == EndspielAddieren ? static_cast<float>(e.wert) : 0.0f;
    r.ersetzt = e.modus == EndspielErsetzen;
    return r;
}

// The framework of one record, for the tests.
Rahmen_t RahmenVon(const Datensatz_t& d) {
    auto st = std::make_unique<Stellung_t>();
    auto bauern = std::make_unique<Bauerncache_t>();
    auto material = std::make_unique<Materialcache_t>();
    Stellungsdaten_t daten;
    Entpacke(d, *st, daten);
    return RahmenVon(*st, daten, *bauern, *material);
}

struct Daten_t {
    std::vector<Datensatz_t> saetze;
    std::vector<Rahmen_t> rahmen;
    size_t training = 0;  // the first ones train, the rest validate
};

bool LeseDaten(const Trainerauftrag_t& a, Daten_t& d, std::ostream& bericht) {
    for (const std::string& name : a.daten) {
        std::ifstream ein(name, std::ios::binary);
        std::error_code fehler;
        const uintmax_t groesse = std::filesystem::file_size(name, fehler);
        if (!ein || fehler) {
            bericht << "info string cannot read " << name << '\n';
            return false;
        }
        size_t n = groesse / sizeof(Datensatz_t);
        if (a.hoechstens) n = std::min<size_t>(n, a.hoechstens - std::min<size_t>(a.hoechstens, d.saetze.size()));
        const size_t alt = d.saetze.size();
        d.saetze.resize(alt + n);
        ein.read(reinterpret_cast<char*>(d.saetze.data() + alt), static_cast<std::streamsize>(n * sizeof(Datensatz_t)));
        if (!ein) {
            bericht << "info string cannot read " << name << '\n';
            return false;
        }
    }
    return true;
}

// The framework of every position; false if a record is not a position.
bool Vorbereiten(const Trainerauftrag_t& a, Daten_t& d, std::ostream& bericht) {
    d.rahmen.resize(d.saetze.size());
    std::vector<int> kaputt(a.threads, 0);
    Parallel(a.threads, d.saetze.size(), [&](int t, size_t von, size_t bis) {
        auto st = std::make_unique<Stellung_t>();
        auto bauern = std::make_unique<Bauerncache_t>();
        auto material = std::make_unique<Materialcache_t>();
        for (size_t i = von; i < bis; ++i) {
            Stellungsdaten_t daten;
            if (!Entpacke(d.saetze[i], *st, daten)) {
                ++kaputt[t];
                continue;
            }
            d.rahmen[i] = RahmenVon(*st, daten, *bauern, *material);
        }
    });
    int n = 0;
    for (int k : kaputt) n += k;
    if (n > 0) bericht << "info string " << n << " records are not positions\n";
    return n == 0;
}

// Positions whose score an endgame rule sets teach the network nothing: they go.
void OhneEndspielregeln(Daten_t& d) {
    size_t behalten = 0;
    for (size_t i = 0; i < d.saetze.size(); ++i) {
        if (i == d.training) d.training = behalten;
        if (d.rahmen[i].ersetzt) continue;
        d.saetze[behalten] = d.saetze[i];
        d.rahmen[behalten++] = d.rahmen[i];
    }
    d.saetze.resize(behalten);
    d.rahmen.resize(behalten);
}

// The sigmoid's scale that best turns the search's scores into the games' results.
double PasseK(const Daten_t& d) {
    auto fehler = [&](double k) {
        double s = 0;
        const size_t schritt = std::max<size_t>(1, d.training / 200000);
        for (size_t i = 0; i < d.training; i += schritt) {
            const double p = Sigmoid(d.saetze[i].wert / k) - (d.saetze[i].ergebnis + 1) / 2.0;
            s += p * p;
        }
        return s;
    };
    double lo = 200, hi = 20000;
    for (int i = 0; i < 60; ++i) {
        const double m1 = lo + (hi - lo) / 3, m2 = hi - (hi - lo) / 3;
        if (fehler(m1) < fehler(m2)) hi = m2;
        else lo = m1;
    }
    return (lo + hi) / 2;
}

// Mean squared error over [von, bis) of sigmoid(e / k) against the targets, e from `bewerte`.
template <typename F>
double MittlererFehler(const Daten_t& d, size_t von, size_t bis, double k, int threads, F&& bewerte) {
    std::vector<double> summe(threads, 0.0);
    Parallel(threads, bis - von, [&](int t, size_t a, size_t b) {
        for (size_t i = von + a; i < von + b; ++i) {
            const double p = Sigmoid(bewerte(t, i) / k) - d.rahmen[i].ziel;
            summe[t] += p * p;
        }
    });
    double s = 0;
    for (double x : summe) s += x;
    return bis > von ? s / static_cast<double>(bis - von) : 0.0;
}

}  // namespace

Netz_t NeuesGleitnetz(uint64_t saat) {
    Netz_t p(Parameterzahl, 0.0f);
    std::mt19937_64 zufall(saat);
    std::uniform_real_distribution<float> erste(-0.1f, 0.1f), ausgabe(-0.05f, 0.05f);
    for (size_t i = 0; i < OffsetB1; ++i) p[i] = erste(zufall);
    for (size_t i = OffsetB1; i < OffsetW2; ++i) p[i] = 0.25f;
    for (size_t i = OffsetW2; i < OffsetB2; ++i) p[i] = ausgabe(zufall);
    return p;
}

float GleitWert(const Netz_t& netz, const Datensatz_t& d) {
    Durchlauf_t x;
    return Vorwaerts(netz, d, RahmenVon(d), x);
}

Netz_t GleitGradient(const Netz_t& netz, const Datensatz_t& d) {
    Durchlauf_t x;
    const Rahmen_t r = RahmenVon(d);
    Vorwaerts(netz, d, r, x);
    Netz_t g(Parameterzahl, 0.0f);
    Rueckwaerts(netz, r, x, 1.0f, g.data());
    return g;
}

namespace {

// Walks the float weights and their integers side by side, in layout order, with the
// scale that turns one into the other; P and Q carry the constness of the direction.
template <typename P, typename Q, typename F>
void JedesPaar(P& p, Q& q, F&& f) {
    for (int i = 0; i < NetzEingaben; ++i)
        for (int k = 0; k < H; ++k) f(p[static_cast<size_t>(i) * H + k], q.gewichte[i][k], float{NetzQA});
    for (int k = 0; k < H; ++k) f(p[OffsetB1 + k], q.bias[k], float{NetzQA});
    for (int j = 0; j < 2; ++j)
        for (int k = 0; k < 2 * H; ++k) f(p[OffsetW2 + j * 2 * H + k], q.ausgabeGewichte[j][k], float{NetzQB});
    for (int j = 0; j < 2; ++j) f(p[OffsetB2 + j], q.ausgabeBias[j], float{NetzQA * NetzQB});
}

// The float network an integer one stands for: the inverse of Quantisiere.
Netz_t Entquantisiere(const Bewertungsnetz_t& q) {
    Netz_t p(Parameterzahl);
    JedesPaar(p, q, [](float& x, auto w, float skala) { x = static_cast<float>(w) / skala; });
    return p;
}

std::unique_ptr<Bewertungsnetz_t> Quantisiere(const Netz_t& p) {
    auto q = std::make_unique<Bewertungsnetz_t>();
    JedesPaar(p, *q, [](float x, auto& w, float skala) {
        using T = std::remove_reference_t<decltype(w)>;
        const long grenze = std::numeric_limits<T>::max();
        w = static_cast<T>(std::clamp(std::lround(x * skala), -grenze, grenze));
    });
    return q;
}

}  // namespace

int Trainiere(const Trainerauftrag_t& a, std::ostream& bericht, Trainerergebnis_t* ergebnis) {
    using Uhr = std::chrono::steady_clock;
    const auto start = Uhr::now();
    const int threads = std::max(1, a.threads);
    std::unique_ptr<Bewertungsnetz_t> anfangsnetz;
    if (!a.start.empty()) {
        std::string fehler;
        if (!(anfangsnetz = LadeNetzDatei(a.start, fehler))) {
            bericht << "info string " << fehler << '\n';
            return 1;
        }
    }
    Daten_t d;
    if (a.daten.empty() || !LeseDaten(a, d, bericht)) return 1;
    d.training = d.saetze.size() - static_cast<size_t>(static_cast<double>(d.saetze.size()) * a.pruefAnteil);
    if (d.training < 1 || d.training == d.saetze.size()) {
        bericht << "info string too few positions: " << d.saetze.size() << '\n';
        return 1;
    }
    if (!Vorbereiten(a, d, bericht)) return 1;
    OhneEndspielregeln(d);
    if (d.training < 1 || d.training == d.saetze.size()) {
        bericht << "info string too few positions: " << d.saetze.size() << '\n';
        return 1;
    }
    Trainerergebnis_t e;
    e.k = a.k > 0 ? a.k : PasseK(d);
    for (size_t i = 0; i < d.saetze.size(); ++i)
        d.rahmen[i].ziel = static_cast<float>(a.lambda * Sigmoid(d.saetze[i].wert / e.k) +
                                              (1 - a.lambda) * (d.saetze[i].ergebnis + 1) / 2.0);
    char zeile[200];
    std::snprintf(zeile, sizeof zeile, "info string %zu positions, %zu for validation, K %.0f, lambda %.2f\n",
                  d.saetze.size(), d.saetze.size() - d.training, e.k, a.lambda);
    bericht << zeile << std::flush;

    Netz_t p = anfangsnetz ? Entquantisiere(*anfangsnetz) : NeuesGleitnetz(a.saat);
    Netz_t m(Parameterzahl, 0.0f), v(Parameterzahl, 0.0f);
    std::vector<Durchlauf_t> durchlauf(threads);
    auto floatWert = [&](int t, size_t i) { return Vorwaerts(p, d.saetze[i], d.rahmen[i], durchlauf[t]); };
    e.ersterFehler = MittlererFehler(d, d.training, d.saetze.size(), e.k, threads, floatWert);
    if (anfangsnetz) {
        std::snprintf(zeile, sizeof zeile, "info string starting network: validation %.6f\n", e.ersterFehler);
        bericht << zeile << std::flush;
    }

    std::vector<uint32_t> reihe(d.training);
    for (size_t i = 0; i < reihe.size(); ++i) reihe[i] = static_cast<uint32_t>(i);
    std::mt19937_64 zufall(a.saat);
    std::vector<std::vector<float>> gradient(threads, std::vector<float>(Parameterzahl));
    std::vector<double> fehler(threads);
    constexpr double Beta1 = 0.9, Beta2 = 0.999, Epsilon = 1e-8;
    uint64_t schritt = 0;
    for (int epoche = 1; epoche <= a.epochen; ++epoche) {
        const double lr = a.lernrate * (epoche > a.epochen * 5 / 6 ? 1.0 / 9 : epoche > a.epochen * 2 / 3 ? 1.0 / 3 : 1.0);
        std::shuffle(reihe.begin(), reihe.end(), zufall);
        double trainingsfehler = 0;
        for (size_t anfang = 0; anfang < reihe.size(); anfang += static_cast<size_t>(a.stapel)) {
            const size_t n = std::min(reihe.size() - anfang, static_cast<size_t>(a.stapel));
            Parallel(threads, n, [&](int t, size_t von, size_t bis) {
                float* g = gradient[t].data();
                std::fill(gradient[t].begin(), gradient[t].end(), 0.0f);
                fehler[t] = 0;
                for (size_t j = von; j < bis; ++j) {
                    const size_t i = reihe[anfang + j];
                    // Every other epoch a position is seen with its wings exchanged.
                    const unsigned spiegel = a.spiegeln && ((i ^ static_cast<size_t>(epoche)) & 1) ? 7 : 0;
                    const float ev = Vorwaerts(p, d.saetze[i], d.rahmen[i], durchlauf[t], spiegel);
                    const double s = Sigmoid(ev / e.k), diff = s - d.rahmen[i].ziel;
                    fehler[t] += diff * diff;
                    Rueckwaerts(p, d.rahmen[i], durchlauf[t],
                                static_cast<float>(2 * diff * s * (1 - s) / e.k / static_cast<double>(n)), g);
                }
            });
            for (int t = 0; t < threads; ++t) trainingsfehler += fehler[t];
            // Adam over every weight, the threads' gradients summed.
            ++schritt;
            const double k1 = 1 - std::pow(Beta1, static_cast<double>(schritt));
            const double k2 = 1 - std::pow(Beta2, static_cast<double>(schritt));
            const float schrittweite = static_cast<float>(lr * std::sqrt(k2) / k1);
            Parallel(threads, Parameterzahl, [&](int, size_t von, size_t bis) {
                for (size_t i = von; i < bis; ++i) {
                    float g = 0;
                    for (int t = 0; t < threads; ++t) g += gradient[t][i];
                    m[i] = static_cast<float>(Beta1) * m[i] + static_cast<float>(1 - Beta1) * g;
                    v[i] = static_cast<float>(Beta2) * v[i] + static_cast<float>(1 - Beta2) * g * g;
                    const float grenze = i < OffsetW2 ? GrenzeErsteSchicht : GrenzeAusgabe;
                    p[i] = std::clamp(p[i] - schrittweite * m[i] / (std::sqrt(v[i]) + static_cast<float>(Epsilon)),
                                      -grenze, grenze);
                }
            });
        }
        e.pruefFehler = MittlererFehler(d, d.training, d.saetze.size(), e.k, threads, floatWert);
        e.trainingsFehler[epoche > 1] = trainingsfehler / static_cast<double>(reihe.size());
        std::snprintf(zeile, sizeof zeile, "info string epoch %d lr %.6f train %.6f validation %.6f (%.0f s)\n",
                      epoche, lr, e.trainingsFehler[epoche > 1], e.pruefFehler,
                      std::chrono::duration<double>(Uhr::now() - start).count());
        bericht << zeile << std::flush;
    }

    // The integer network through the engine's own evaluation, rounding included,
    // against the float one on held-out positions.
    const std::unique_ptr<Bewertungsnetz_t> q = Quantisiere(p);
    const size_t bis = std::min(d.saetze.size(), d.training + QuantisierungsStichprobe);
    std::vector<double> abweichung(threads, 0.0);
    std::vector<int> groesste(threads, 0);
    e.quantisiertFehler = MittlererFehler(d, d.training, bis, e.k, threads, [&](int t, size_t i) {
        thread_local std::unique_ptr<Bauerncache_t> bauern = std::make_unique<Bauerncache_t>();
        thread_local std::unique_ptr<Materialcache_t> material = std::make_unique<Materialcache_t>();
        thread_local std::unique_ptr<Stellung_t> st = std::make_unique<Stellung_t>();
        Stellungsdaten_t daten;
        Entpacke(d.saetze[i], *st, daten);
        Akkumulator_t akku;
        NetzAufbauen(*q, *st, akku);
        // As the search scores it: an endgame rule's correction comes on top.
        const int motor = Bewerte(*st, daten, *bauern, *material, NetzWert(*q, akku, st->amZug)) +
                          static_cast<int>(d.rahmen[i].zusatz);
        const float gleit = Vorwaerts(p, d.saetze[i], d.rahmen[i], durchlauf[t]);
        const int diff = std::abs(motor - static_cast<int>(std::lround(gleit)));
        abweichung[t] += diff;
        groesste[t] = std::max(groesste[t], diff);
        return static_cast<double>(motor);
    });
    for (int t = 0; t < threads; ++t) {
        e.mittlereAbweichung += abweichung[t] / static_cast<double>(bis - d.training);
        e.groessteAbweichung = std::max(e.groessteAbweichung, groesste[t]);
    }
    e.gleitFehler = MittlererFehler(d, d.training, bis, e.k, threads, floatWert);
    std::snprintf(zeile, sizeof zeile,
                  "info string quantised, on %zu held-out positions: validation %.6f (float network %.6f), "
                  "engine against float network %.1f units on average, %d at most\n",
                  bis - d.training, e.quantisiertFehler, e.gleitFehler, e.mittlereAbweichung, e.groessteAbweichung);
    bericht << zeile;

    const std::string neu = a.ausgabe + ".neu";
    {
        std::ofstream aus(neu, std::ios::binary | std::ios::trunc);
        aus << NetzDateiInhalt(*q);
        if (!aus.flush()) {
            bericht << "info string cannot write " << a.ausgabe << '\n';
            return 1;
        }
    }
    std::error_code fehlerCode;
    std::filesystem::rename(neu, a.ausgabe, fehlerCode);
    if (fehlerCode) {
        bericht << "info string cannot write " << a.ausgabe << '\n';
        return 1;
    }
    bericht << "info string network written to " << a.ausgabe << '\n';
    if (ergebnis) *ergebnis = e;
    return 0;
}
