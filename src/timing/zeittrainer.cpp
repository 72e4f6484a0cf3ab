#include "timing/zeittrainer.h"

#include <algorithm>
#include <cctype>
#include <climits>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <unordered_map>

#include "timing/zeitlog.h"

namespace {

using Netz_t = NeuroNetz_t;

// The network flattened for backpropagation: inputs, hidden nodes in layer
// order, outputs; one edge list per input and hidden node.
struct Kante_t {
    double* gewicht;
    size_t ziel;
};

struct Topologie_t {
    size_t eingaben = 0;
    std::vector<Netz_t::KnotenInnen_t*> innen;  // flat index eingaben + position
    size_t ausgabe = 0;                         // flat index of output 0
    std::vector<std::vector<Kante_t>> kanten;   // per input and hidden node
    size_t knoten = 0;
};

Topologie_t Abflachen(Netz_t& netz) {
    Topologie_t t;
    t.eingaben = netz.eingabeschicht().size();
    for (auto& schicht : netz.innenschichten())
        for (auto& k : schicht) t.innen.push_back(&k);
    std::unordered_map<const Netz_t::KnotenZiel_t*, size_t> index;
    for (size_t i = 0; i < t.innen.size(); ++i) index[t.innen[i]] = t.eingaben + i;
    t.ausgabe = t.eingaben + t.innen.size();
    size_t a = t.ausgabe;
    for (auto& k : netz.ausgabeschicht()) index[&k] = a++;
    t.knoten = a;
    auto liste = [&index](std::vector<Netz_t::Verbindung_t>& verbindungen) {
        std::vector<Kante_t> kanten;
        for (auto& v : verbindungen) kanten.push_back({&v.gewicht, index.at(v.ziel)});
        return kanten;
    };
    for (auto& k : netz.eingabeschicht()) t.kanten.push_back(liste(k.verbindungen));
    for (auto* k : t.innen) t.kanten.push_back(liste(k->verbindungen));
    return t;
}

// Backpropagation of the output error `fehler` through a network whose node values
// stand in `wert` (inputs, then hidden nodes): every node's delta, inputs included.
void Rueckwaerts(const Topologie_t& t, const std::vector<double>& wert, std::vector<double>& delta, double fehler) {
    std::fill(delta.begin(), delta.end(), 0.0);
    delta[t.ausgabe] = fehler;
    // From the last hidden node back to the first input: targets are done before their sources.
    for (size_t k = t.eingaben + t.innen.size(); k-- > 0;) {
        double s = 0.0;
        for (const auto& kante : t.kanten[k]) s += *kante.gewicht * delta[kante.ziel];
        delta[k] = k >= t.eingaben ? (1.0 - wert[k] * wert[k]) * s : s;
    }
}

// The node values after a forward pass over `eingaben`, the bias node counted once more.
void Werte(const Topologie_t& t, const Zeiteingaben_t& eingaben, std::vector<double>& wert) {
    for (size_t i = 0; i < t.eingaben; ++i) wert[i] = i < eingaben.size() ? eingaben[i] : 0.0;
    wert[t.eingaben - 1] += 1.0;
    for (size_t i = 0; i < t.innen.size(); ++i) wert[t.eingaben + i] = t.innen[i]->wert;
}

bool IstLeer(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

// The file name after a subcommand: at most 1024 characters, trailing white space removed.
std::string Dateiname(const std::string& text, size_t ab) {
    std::string name = ab < text.size() ? text.substr(ab, 1024) : std::string();
    while (!name.empty() && IstLeer(name.back())) name.pop_back();
    return name;
}

// A number after a subcommand, or `standard` when none follows.
long Zahl(const std::string& text, size_t ab, long standard) {
    if (ab >= text.size()) return standard;
    const char* anfang = text.c_str() + ab;
    char* ende = nullptr;
    const long n = std::strtol(anfang, &ende, 10);
    return ende == anfang ? standard : n;
}

// " delete" counts only when a blank, a line end or nothing follows it.
size_t FindeDelete(const std::string& text) {
    static const std::string wort = " delete";
    for (size_t p = text.find(wort); p != std::string::npos; p = text.find(wort, p + 1)) {
        const size_t n = p + wort.size();
        if (n >= text.size() || text[n] == ' ' || text[n] == '\t' || text[n] == '\r' || text[n] == '\n')
            return p;
    }
    return std::string::npos;
}

}  // namespace

Zeittrainer_t::Zeittrainer_t() : netzwerk(std::make_unique<Zeitnetz_t>()) {}

void Zeittrainer_t::neuesNetz(int innenKnoten) { netzwerk = std::make_unique<Zeitnetz_t>(innenKnoten); }

std::vector<Trainingsbeispiel_t> Zeittrainer_t::BeispieleAusLog(std::istream& ein) {
    std::vector<Trainingsbeispiel_t> beispiele;
    std::vector<Zeitlogeintrag_t> suche;
    auto abschliessen = [&beispiele, &suche]() {
        if (suche.empty()) return;
        const uint32_t endzug = suche.back().besterZug;
        for (const auto& e : suche) beispiele.push_back({e.figuren, e.besterZug == endzug ? ZielRuhig : ZielUnruhig});
        suche.clear();
    };
    std::string zeile;
    Zeitlogeintrag_t e;
    while (std::getline(ein, zeile)) {
        if (!zeile.empty() && zeile.back() == '\r') zeile.pop_back();
        if (!ZeitlogZeileLesen(zeile, e)) continue;
        // A new start time, or a depth index that does not rise, begins another search.
        if (!suche.empty() && (e.start != suche.back().start || e.tiefenindex <= suche.back().tiefenindex))
            abschliessen();
        suche.push_back(e);
    }
    abschliessen();
    return beispiele;
}

size_t Zeittrainer_t::hinzufuegen(std::istream& ein) {
    const auto neu = BeispieleAusLog(ein);
    daten.insert(daten.end(), neu.begin(), neu.end());
    return neu.size();
}

bool Zeittrainer_t::hinzufuegen(const std::string& datei) {
    std::ifstream ein(datei);
    if (!ein.is_open()) return false;
    hinzufuegen(ein);
    return true;
}

void Zeittrainer_t::symmetrieBrechen() {
    Topologie_t t = Abflachen(*netzwerk);
    for (const auto& liste : t.kanten)
        for (const auto& k : liste)
            if (*k.gewicht != 0.0) return;
    // Uniform in -0.1..0.1, drawn the same way on every platform.
    for (const auto& liste : t.kanten)
        for (const auto& k : liste) *k.gewicht = (static_cast<double>(zufall()) / 4294967296.0 - 0.5) * 0.2;
}

double Zeittrainer_t::mittlererFehler() {
    if (daten.empty() || !netzwerk->brauchbar()) return 0.0;
    double summe = 0.0;
    for (const auto& b : daten) {
        const double f = netzwerk->bewerten(ZeitEingaben(b.figuren, skala)) - b.ziel;
        summe += f * f;
    }
    return summe / static_cast<double>(daten.size());
}

double Zeittrainer_t::lernen(int durchgaenge) {
    if (daten.empty() || !netzwerk->brauchbar()) return mittlererFehler();
    if (durchgaenge > 0) symmetrieBrechen();
    Topologie_t t = Abflachen(*netzwerk);
    std::vector<double> wert(t.knoten, 0.0), delta(t.knoten, 0.0);
    std::vector<size_t> reihenfolge(daten.size());
    for (size_t i = 0; i < reihenfolge.size(); ++i) reihenfolge[i] = i;
    for (int d = 0; d < durchgaenge; ++d) {
        for (size_t i = reihenfolge.size(); i > 1; --i) std::swap(reihenfolge[i - 1], reihenfolge[zufall() % i]);
        for (size_t nr : reihenfolge) {
            const Trainingsbeispiel_t& b = daten[nr];
            const Zeiteingaben_t eingaben = ZeitEingaben(b.figuren, skala);
            const double aus = netzwerk->bewerten(eingaben);
            Werte(t, eingaben, wert);
            // Clipped, so that one wild example cannot throw the weights far.
            Rueckwaerts(t, wert, delta, std::clamp(aus - b.ziel, -1.0, 1.0));
            for (size_t q = 0; q < t.kanten.size(); ++q)
                for (const auto& kante : t.kanten[q]) *kante.gewicht -= Lernrate * wert[q] * delta[kante.ziel];
        }
    }
    return mittlererFehler();
}

double Zeittrainer_t::skalierungAnpassen(int durchgaenge) {
    if (daten.empty() || !netzwerk->brauchbar()) return mittlererFehler();
    Topologie_t t = Abflachen(*netzwerk);
    std::vector<double> wert(t.knoten, 0.0), delta(t.knoten, 0.0);
    // Adam over the 30 parameters, faktor first, then versatz.
    constexpr size_t N = 2 * ZeitFigurenAnzahl;
    std::array<double, N> m{}, v{};
    const double beta1 = 0.9, beta2 = 0.999;
    for (int d = 1; d <= durchgaenge; ++d) {
        std::array<double, N> g{};
        for (const Trainingsbeispiel_t& b : daten) {
            const Zeiteingaben_t eingaben = ZeitEingaben(b.figuren, skala);
            const double aus = netzwerk->bewerten(eingaben);
            Werte(t, eingaben, wert);
            Rueckwaerts(t, wert, delta, aus - b.ziel);
            for (size_t i = 0; i < ZeitFigurenAnzahl && i < t.eingaben; ++i) {
                g[i] += delta[i] * b.figuren[i];
                g[ZeitFigurenAnzahl + i] += delta[i];
            }
        }
        const double n = static_cast<double>(daten.size());
        for (size_t p = 0; p < N; ++p) {
            m[p] = beta1 * m[p] + (1 - beta1) * g[p] / n;
            v[p] = beta2 * v[p] + (1 - beta2) * (g[p] / n) * (g[p] / n);
            const double mh = m[p] / (1 - std::pow(beta1, d)), vh = v[p] / (1 - std::pow(beta2, d));
            double& x = p < ZeitFigurenAnzahl ? skala.faktor[p] : skala.versatz[p - ZeitFigurenAnzahl];
            x -= Anpassrate * mh / (std::sqrt(vh) + 1e-8);
        }
    }
    return mittlererFehler();
}

bool Zeittrainer_t::lesen(const std::string& datei) {
    std::ifstream ein(datei);
    if (!ein.is_open()) return false;
    auto neu = std::make_unique<Zeitnetz_t>(0);  // empty; the description fills it
    if (!neu->lesen(ein) || neu->anzahlEingaben() != Zeitnetz_t::Eingaben || neu->anzahlAusgaben() < 1) return false;
    netzwerk = std::move(neu);
    return true;
}

bool Zeittrainer_t::schreiben(const std::string& datei) const {
    std::ofstream aus(datei);
    if (!aus.is_open()) return false;
    if (!netzwerk->schreiben(aus)) return false;
    aus.close();
    return !aus.fail();
}

void ZeitBefehl(std::unique_ptr<Zeittrainer_t>& trainer, const char* rest,
                const std::function<void(const std::string&)>& zeile) {
    const std::string text = rest != nullptr ? rest : "";
    auto melden = [&zeile](const std::string& s) {
        if (zeile) zeile(s);
    };
    // Substring search in this order; the first subcommand found is done.
    if (FindeDelete(text) != std::string::npos) {
        trainer.reset();
        return;
    }
    if (size_t p = text.find(" init"); p != std::string::npos) {
        const long n = Zahl(text, p + 5, Zeitnetz_t::StandardInnenKnoten);
        if (!trainer) trainer = std::make_unique<Zeittrainer_t>();
        trainer->neuesNetz(static_cast<int>(std::clamp<long>(n, 1, Zeittrainer_t::MaxInnenKnoten)));
        return;
    }
    if (size_t p = text.find(" add "); p != std::string::npos) {
        const std::string name = Dateiname(text, p + 5);
        if (!trainer) trainer = std::make_unique<Zeittrainer_t>();
        if (!trainer->hinzufuegen(name)) melden("info string file not found:" + name);
        return;
    }
    if (size_t p = text.find(" learn"); p != std::string::npos) {
        if (!trainer || trainer->anzahlBeispiele() == 0) {
            melden("info string nothing to learn");
            return;
        }
        const long n = Zahl(text, p + 6, Zeittrainer_t::StandardDurchgaenge);
        const double fehler =
            trainer->lernen(static_cast<int>(std::clamp<long>(n, 0, Zeittrainer_t::MaxDurchgaenge)));
        char puffer[64];
        std::snprintf(puffer, sizeof puffer, "info string Mittlerer Fehler %.6f", fehler);
        melden(puffer);
        return;
    }
    if (size_t p = text.find(" read "); p != std::string::npos) {
        const std::string name = Dateiname(text, p + 6);
        if (!trainer) trainer = std::make_unique<Zeittrainer_t>();
        if (!trainer->lesen(name)) melden("info string error reading file: " + name);
        return;
    }
    if (size_t p = text.find(" write "); p != std::string::npos) {
        const std::string name = Dateiname(text, p + 7);
        if (!trainer || !trainer->schreiben(name)) melden("info string error writing file: " + name);
        return;
    }
    // Our own addition: the input scaling fitted with the weights held, reported
    // in the form that zeiteingaben.cpp takes.
    if (size_t p = text.find(" fit"); p != std::string::npos) {
        if (!trainer || trainer->anzahlBeispiele() == 0) {
            melden("info string nothing to learn");
            return;
        }
        const long n = Zahl(text, p + 4, Zeittrainer_t::StandardAnpassungen);
        const double vorher = trainer->mittlererFehler();
        const double nachher =
            trainer->skalierungAnpassen(static_cast<int>(std::clamp<long>(n, 0, Zeittrainer_t::MaxDurchgaenge)));
        char puffer[96];
        std::snprintf(puffer, sizeof puffer, "info string Mittlerer Fehler %.6f (before %.6f)", nachher, vorher);
        melden(puffer);
        const Zeitskalierung_t& s = trainer->skalierung();
        for (size_t i = 0; i < ZeitFigurenAnzahl; ++i) {
            std::snprintf(puffer, sizeof puffer, "info string input %zu scale %.4f offset %.4f", i, s.faktor[i],
                          s.versatz[i]);
            melden(puffer);
        }
        return;
    }
}
