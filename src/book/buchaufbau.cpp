#include "book/buchaufbau.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <cstring>
#include <fstream>
#include <unordered_map>

#include "board/zugmachen.h"

namespace {

int Elo(const PgnTags_t& tags, const char* name) {
    const auto it = tags.find(name);
    return it == tags.end() ? 0 : std::atoi(it->second.c_str());
}

// Calls f(reader, moves, tags) for every complete game; after an error it goes
// on with the next game. Returns the number of games dropped.
template <typename F>
uint64_t JedePartie(const std::string& datei, const Meldung_t& meldung, F&& f) {
    PgnLeser_t leser(meldung);
    if (!leser.Oeffnen(datei)) return 0;
    std::vector<Zug_t> zuege;
    PgnTags_t tags;
    uint64_t fehler = 0;
    for (;;) {
        const uint64_t vorher = leser.Fehleranzahl();
        if (leser.LiesPartie(zuege, tags)) {
            f(leser, zuege, tags);
            continue;
        }
        if (leser.Fehleranzahl() == vorher) break;  // the end of the file
        ++fehler;
        if (leser.AmEnde()) break;
        leser.ZurNaechstenPartie();
    }
    return fehler;
}

std::string Feldname(Feld f) {
    return {static_cast<char>('a' + LinieVon(f)), static_cast<char>('0' + ReiheVon(f))};
}

}  // namespace

double EloStaerke(int elo) {
    if (elo <= 0) elo = 2000;
    return std::clamp(std::pow(10.0, (elo - 2500) / 400.0), 0.01, 100.0);
}

uint64_t Zuggewicht(uint32_t wert, int halbpunkte, bool calcElo, int elo) {
    const double g = wert * halbpunkte / 2.0 * (calcElo ? EloStaerke(elo) : 1.0);
    return static_cast<uint64_t>(std::llround(g));
}

int WeissHalbpunkte(const std::string& ergebnis) {
    if (ergebnis == "1-0") return 2;
    if (ergebnis == "0-1") return 0;
    return 1;
}

Importstatistik_t PgnHinzufuegen(Buch_t& buch, const std::string& datei, uint32_t wert, bool calcElo,
                                 const Meldung_t& meldung) {
    Importstatistik_t statistik;
    statistik.fehler = JedePartie(datei, meldung, [&](const PgnLeser_t& leser, const std::vector<Zug_t>& zuege,
                                                      const PgnTags_t& tags) {
        ++statistik.partien;
        if (buch.gesperrt) return;
        const auto ergebnis = tags.find("Result");
        const int weiss = WeissHalbpunkte(ergebnis != tags.end() ? ergebnis->second : "*");
        const int elo[2] = {Elo(tags, "WhiteElo"), Elo(tags, "BlackElo")};
        unsigned seite = leser.Anfangsstellung().amZug;
        const size_t n = std::min(zuege.size(), static_cast<size_t>(BuchTiefe));
        for (size_t i = 0; i < n; ++i, seite ^= 1) {
            const int halbpunkte = seite == Weiss ? weiss : 2 - weiss;
            buch.Hinzufuegen(leser.Schluessel()[i], zuege[i], 1, static_cast<uint32_t>(halbpunkte),
                             Zuggewicht(wert, halbpunkte, calcElo, elo[seite]));
            ++statistik.zuege;
        }
    });
    return statistik;
}

size_t LeseEpdStellung(const std::string& zeile, Stellung_t& st, Stellungsdaten_t& daten) {
    size_t pos = 0;
    for (int feld = 0; feld < 4; ++feld) {
        while (pos < zeile.size() && zeile[pos] == ' ') ++pos;
        while (pos < zeile.size() && zeile[pos] != ' ') ++pos;
    }
    return SetzeStellung(st, daten, zeile.substr(0, pos).c_str()) ? pos : 0;
}

uint64_t StellungenHinzufuegen(Buch_t& buch, const std::string& datei, uint32_t wert) {
    std::ifstream ein(datei);
    if (!ein || buch.gesperrt) return 0;
    uint64_t hinzu = 0;
    std::string zeile;
    while (std::getline(ein, zeile)) {
        Stellung_t st;
        Stellungsdaten_t daten;
        const size_t pos = LeseEpdStellung(zeile, st, daten);
        if (pos == 0) continue;
        const size_t bm = zeile.find(" bm ", pos);
        if (bm == std::string::npos) continue;
        const size_t ende = std::min(zeile.find(';', bm), zeile.size());
        size_t p = bm + 4;
        while (p < ende) {
            while (p < ende && zeile[p] == ' ') ++p;
            size_t q = p;
            while (q < ende && zeile[q] != ' ') ++q;
            if (q == p) break;
            const std::string text = zeile.substr(p, q - p);
            p = q;
            Zug_t zug = LeseSanZug(st, text.c_str(), daten);
            if (zug == 0) {
                zug = LeseKoordinatenZug(st, text.c_str());
                if (zug != 0 && !IstLegal(st, zug, daten)) zug = 0;
            }
            if (zug == 0) continue;
            // A searched move counts as one game drawn: no result to go by.
            buch.Hinzufuegen(daten.schluessel, zug, 1, 1, wert);
            ++hinzu;
        }
    }
    return hinzu;
}

double Entropie(const Buch_t& buch) {
    const std::vector<Buchzug_t> alle = buch.Sortiert();
    long double summe = 0, besuche = 0;
    for (size_t i = 0; i < alle.size();) {
        size_t j = i;
        long double gewicht = 0, partien = 0;
        for (; j < alle.size() && alle[j].schluessel == alle[i].schluessel; ++j) {
            gewicht += static_cast<long double>(alle[j].gewicht);
            partien += alle[j].partien;
        }
        if (partien >= 2 && gewicht > 0) {
            long double h = 0;
            for (size_t k = i; k < j; ++k) {
                if (alle[k].gewicht == 0) continue;
                const long double p = static_cast<long double>(alle[k].gewicht) / gewicht;
                h -= p * std::log2(p);
            }
            summe += partien * h;
            besuche += partien;
        }
        i = j;
    }
    return besuche > 0 ? static_cast<double>(summe / besuche) : 0.0;
}

double PgnEntropie(const std::string& datei, const Meldung_t& meldung) {
    Buch_t buch;
    PgnHinzufuegen(buch, datei, 1000, false, meldung);
    return Entropie(buch);
}

std::string EpdText(const Stellung_t& st) {
    std::string text;
    int leer = 0;
    for (Feld f = 0; f < 64; ++f) {
        char c = 0;
        for (unsigned seite = 0; seite < 2 && c == 0; ++seite)
            for (unsigned typ = Bauer; typ <= Koenig; ++typ)
                if (st.seite[seite].brett[typ] & Bit(f)) c = "PNBRQK"[typ - 1] + (seite == Schwarz ? 'a' - 'A' : 0);
        if (c == 0) {
            ++leer;
        } else {
            if (leer > 0) text += static_cast<char>('0' + leer);
            leer = 0;
            text += c;
        }
        if (LinieVon(f) == 7) {
            if (leer > 0) text += static_cast<char>('0' + leer);
            leer = 0;
            if (f != 63) text += '/';
        }
    }
    text += st.amZug == Weiss ? " w " : " b ";
    const size_t vorher = text.size();
    if (st.chess960) {
        // Files of the castling rooks, capitals for White.
        const Seite_t* s = st.seite;
        if (st.rochaden & WeissKurz) text += static_cast<char>('A' + LinieVon(s[Weiss].kurzerTurm));
        if (st.rochaden & WeissLang) text += static_cast<char>('A' + LinieVon(s[Weiss].langerTurm));
        if (st.rochaden & SchwarzKurz) text += static_cast<char>('a' + LinieVon(s[Schwarz].kurzerTurm));
        if (st.rochaden & SchwarzLang) text += static_cast<char>('a' + LinieVon(s[Schwarz].langerTurm));
    } else {
        const char* zeichen = "KQkq";
        for (int bit = 0; bit < 4; ++bit)
            if (st.rochaden & (1u << bit)) text += zeichen[bit];
    }
    if (text.size() == vorher) text += '-';
    text += ' ';
    text += st.ep ? Feldname(st.ep) : "-";
    return text;
}

bool StellungenSchreiben(const std::string& pgn, const std::string& ausgabe, const Meldung_t& meldung) {
    struct Eintrag_t {
        std::string epd;
        uint64_t anzahl;
    };
    std::vector<Eintrag_t> eintraege;
    std::unordered_map<uint64_t, size_t> index;
    JedePartie(pgn, meldung, [&](const PgnLeser_t& leser, const std::vector<Zug_t>& zuege, const PgnTags_t&) {
        Stellung_t st = leser.Anfangsstellung();
        Stellungsdaten_t daten;
        BerechneStellungsdaten(st, daten);
        const size_t n = std::min(zuege.size(), static_cast<size_t>(BuchTiefe));
        for (size_t i = 0; i < n; ++i) {
            const auto [it, neu] = index.try_emplace(daten.schluessel, eintraege.size());
            if (neu) eintraege.push_back({EpdText(st), 0});
            ++eintraege[it->second].anzahl;
            Rueckzug_t r;
            if (!SpielzugMachen(st, zuege[i], r, daten)) break;
        }
    });
    std::stable_sort(eintraege.begin(), eintraege.end(),
                     [](const Eintrag_t& a, const Eintrag_t& b) { return a.anzahl > b.anzahl; });
    std::ofstream aus(ausgabe);
    if (!aus) return false;
    for (const Eintrag_t& e : eintraege) aus << e.epd << '\n';
    return static_cast<bool>(aus.flush());
}
