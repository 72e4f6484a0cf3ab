#include "timing/neuronetz.h"

#include <cmath>
#include <cstdio>
#include <limits>

namespace {

// Reads one integer that must fit 32 bits.
bool LiesGanzzahl(std::istream& ein, int32_t& wert) {
    long long x = 0;
    if (!(ein >> x)) return false;
    if (x < std::numeric_limits<int32_t>::min() || x > std::numeric_limits<int32_t>::max()) return false;
    wert = static_cast<int32_t>(x);
    return true;
}

bool LiesReal(std::istream& ein, double& wert) {
    double x = 0.0;
    if (!(ein >> x)) return false;
    if (!std::isfinite(x)) return false;
    wert = x;
    return true;
}

// Enough digits that a written network reads back bit for bit.
void SchreibeReal(std::ostream& aus, double x) {
    char puffer[40];
    std::snprintf(puffer, sizeof puffer, "%.17g", x);
    aus << puffer;
}

}  // namespace

void NeuroNetz_t::leeren() {
    aufzeichnen = false;
    beschreibung.clear();
    eingabe.clear();
    innen.clear();
    ausgabeSchicht.clear();
    anzahlSchichten = 0;
}

bool NeuroNetz_t::anlegen(int schichten, bool mitAufzeichnung) {
    leeren();
    if (schichten < 3 || schichten > MaxSchichten) return false;
    anzahlSchichten = schichten;
    innen.resize(static_cast<size_t>(schichten - 2));
    aufzeichnen = mitAufzeichnung;
    if (aufzeichnen) beschreibung.push_back(schichten);
    return true;
}

bool NeuroNetz_t::schichtAnlegen(int schicht, int anzahl) {
    if (schicht < 0 || schicht >= anzahlSchichten) return false;
    if (anzahl < 1 || anzahl > MaxKnotenJeSchicht) return false;
    // A layer is made once: connections hold pointers into it.
    if (schicht == 0) {
        if (!eingabe.empty()) return false;
        eingabe.resize(static_cast<size_t>(anzahl));
    } else if (schicht == anzahlSchichten - 1) {
        if (!ausgabeSchicht.empty()) return false;
        ausgabeSchicht.resize(static_cast<size_t>(anzahl));
    } else {
        auto& s = innen[static_cast<size_t>(schicht - 1)];
        if (!s.empty()) return false;
        s.resize(static_cast<size_t>(anzahl));
    }
    if (aufzeichnen) {
        beschreibung.push_back(schicht);
        beschreibung.push_back(anzahl);
    }
    return true;
}

std::vector<NeuroNetz_t::Verbindung_t>* NeuroNetz_t::ausgehend(int schicht, int knoten) {
    if (knoten < 0) return nullptr;
    const auto k = static_cast<size_t>(knoten);
    if (schicht == 0) return k < eingabe.size() ? &eingabe[k].verbindungen : nullptr;
    if (schicht < 1 || schicht > anzahlSchichten - 2) return nullptr;
    auto& s = innen[static_cast<size_t>(schicht - 1)];
    return k < s.size() ? &s[k].verbindungen : nullptr;
}

NeuroNetz_t::KnotenZiel_t* NeuroNetz_t::zielKnoten(int schicht, int knoten) {
    if (knoten < 0) return nullptr;
    const auto k = static_cast<size_t>(knoten);
    if (schicht == anzahlSchichten - 1) return k < ausgabeSchicht.size() ? &ausgabeSchicht[k] : nullptr;
    if (schicht < 1 || schicht > anzahlSchichten - 2) return nullptr;
    auto& s = innen[static_cast<size_t>(schicht - 1)];
    return k < s.size() ? &s[k] : nullptr;
}

bool NeuroNetz_t::verbinden(int vonSchicht, int vonKnoten, int nachSchicht, int nachKnoten, double gewicht) {
    // Forward only: the pass visits the layers once, in order.
    if (nachSchicht <= vonSchicht) return false;
    auto* liste = ausgehend(vonSchicht, vonKnoten);
    KnotenZiel_t* zielknoten = zielKnoten(nachSchicht, nachKnoten);
    if (liste == nullptr || zielknoten == nullptr) return false;
    liste->push_back({zielknoten, gewicht});
    ++zielknoten->eingaenge;
    if (aufzeichnen) {
        beschreibung.push_back(vonSchicht);
        beschreibung.push_back(vonKnoten);
        beschreibung.push_back(nachSchicht);
        beschreibung.push_back(nachKnoten);
    }
    return true;
}

bool NeuroNetz_t::brauchbar() const {
    if (anzahlSchichten < 3 || eingabe.empty() || ausgabeSchicht.empty()) return false;
    for (const auto& s : innen)
        if (s.empty()) return false;
    return true;
}

bool NeuroNetz_t::lesen(std::istream& ein) {
    leeren();
    long long n = 0;
    if (!(ein >> n) || n < 1) return false;
    int32_t schichten = 0;
    if (!LiesGanzzahl(ein, schichten) || schichten < 3) return false;
    // The layer pairs must lie within the structure.
    if (1 + 2LL * schichten > n) return false;
    const long long rest = n - 1 - 2LL * schichten;
    if (rest % 4 != 0) return false;
    bool ok = anlegen(schichten, true);
    for (int32_t i = 0; ok && i < schichten; ++i) {
        int32_t schicht = 0, anzahl = 0;
        ok = LiesGanzzahl(ein, schicht) && LiesGanzzahl(ein, anzahl) && schichtAnlegen(schicht, anzahl);
    }
    // Every layer got exactly one pair (a repeated one is refused by schichtAnlegen).
    for (long long g = 0; ok && g < rest / 4; ++g) {
        int32_t a = 0, b = 0, c = 0, d = 0;
        ok = LiesGanzzahl(ein, a) && LiesGanzzahl(ein, b) && LiesGanzzahl(ein, c) && LiesGanzzahl(ein, d) &&
             verbinden(a, b, c, d, 0.0);
    }
    for (auto& k : eingabe)
        for (auto& v : k.verbindungen)
            if (ok) ok = LiesReal(ein, v.gewicht);
    for (auto& s : innen)
        for (auto& k : s)
            for (auto& v : k.verbindungen)
                if (ok) ok = LiesReal(ein, v.gewicht);
    if (!ok) {
        leeren();
        return false;
    }
    // The optional training section. Read as an integer, a real such as 0.025 gives 0 and ends it.
    long long merker = 0;
    if (!(ein >> merker) || merker == 0) return true;
    if (!trainingsdatenLesen(ein)) {
        leeren();
        return false;
    }
    return true;
}

bool NeuroNetz_t::trainingsdatenLesen(std::istream& ein) {
    for (auto& s : innen)
        for (auto& k : s) {
            k.trainingsdaten.clear();
            for (int i = 0; i < k.eingaenge; ++i) {
                int32_t a = 0;
                double b = 0.0;
                if (!LiesGanzzahl(ein, a) || !LiesReal(ein, b)) return false;
                k.trainingsdaten.emplace_back(a, b);
            }
        }
    // The output nodes have no place for theirs: read over them.
    for (const auto& k : ausgabeSchicht)
        for (int i = 0; i < k.eingaenge; ++i) {
            int32_t a = 0;
            double b = 0.0;
            if (!LiesGanzzahl(ein, a) || !LiesReal(ein, b)) return false;
        }
    return true;
}

bool NeuroNetz_t::schreiben(std::ostream& aus) const {
    // Only a recorded structure can be written back.
    if (beschreibung.empty() || !brauchbar()) return false;
    aus << beschreibung.size() << '\n';
    // Layer count and pairs on one line, then one line per connection.
    const size_t kopf = 1 + 2 * static_cast<size_t>(beschreibung[0]);
    for (size_t i = 0; i < kopf && i < beschreibung.size(); ++i) aus << (i ? " " : "") << beschreibung[i];
    aus << '\n';
    for (size_t i = kopf; i + 3 < beschreibung.size(); i += 4)
        aus << beschreibung[i] << ' ' << beschreibung[i + 1] << ' ' << beschreibung[i + 2] << ' '
            << beschreibung[i + 3] << '\n';
    auto gewichte = [&aus](const std::vector<Verbindung_t>& liste) {
        if (liste.empty()) return;
        for (size_t i = 0; i < liste.size(); ++i) {
            if (i) aus << ' ';
            SchreibeReal(aus, liste[i].gewicht);
        }
        aus << '\n';
    };
    for (const auto& k : eingabe) gewichte(k.verbindungen);
    for (const auto& s : innen)
        for (const auto& k : s) gewichte(k.verbindungen);
    // Networks we write carry no training data.
    aus << "0\n";
    return static_cast<bool>(aus);
}

void NeuroNetz_t::summenLoeschen() {
    for (auto& k : eingabe) k.wert = 0.0;
    for (auto& s : innen)
        for (auto& k : s) k.summe = 0.0;
    for (auto& k : ausgabeSchicht) k.summe = 0.0;
}

void NeuroNetz_t::eingeben(int i, double x) {
    if (i < 0 || static_cast<size_t>(i) >= eingabe.size()) return;
    auto& k = eingabe[static_cast<size_t>(i)];
    k.wert = x;
    for (auto& v : k.verbindungen) v.ziel->zufuehren(x * v.gewicht);
}

void NeuroNetz_t::rechnen() {
    if (!brauchbar()) return;
    for (auto& v : eingabe.back().verbindungen) v.ziel->zufuehren(v.gewicht);
    for (auto& s : innen)
        for (auto& k : s) {
            k.wert = std::tanh(k.summe);
            for (auto& v : k.verbindungen) v.ziel->zufuehren(k.wert * v.gewicht);
        }
    for (auto& k : ausgabeSchicht) k.wert = k.summe;
}

double NeuroNetz_t::ausgabe(int i) const {
    if (i < 0 || static_cast<size_t>(i) >= ausgabeSchicht.size()) return 0.0;
    return ausgabeSchicht[static_cast<size_t>(i)].wert;
}
