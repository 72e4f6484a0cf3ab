// Makes a large PGN file for the book benchmark: every game opens with a line
// of an ECO classification file (Scid's scid.eco) and goes on with random legal
// moves, written as real files are: tags with ratings, move numbers, comments
// over several lines, NAGs and marks, nested variations, escape lines, and a
// few games from a FEN tag. With a count of broken games, that many games get an
// illegal move or a bad FEN tag; the reader must report each once.
//
//   pgn_erzeugen ECO-FILE GAMES SEED OUT [BROKEN]
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <iostream>
#include <random>
#include <sstream>
#include <string>
#include <vector>

#include "board/stellung.h"
#include "board/tabellen.h"
#include "board/zug.h"
#include "board/zuggenerator.h"
#include "board/zugmachen.h"

namespace {

std::vector<std::vector<std::string>> LiesEco(const std::string& datei) {
    std::ifstream ein(datei);
    std::string text, zeile;
    while (std::getline(ein, zeile))
        if (!zeile.empty() && zeile[0] != '#') text += zeile + " ";
    std::vector<std::vector<std::string>> linien;
    std::stringstream eintraege(text);
    std::string eintrag;
    while (std::getline(eintraege, eintrag, '*')) {
        const size_t ende = eintrag.rfind('"');
        if (ende == std::string::npos) continue;
        std::stringstream zuege(eintrag.substr(ende + 1));
        std::vector<std::string> linie;
        for (std::string w; zuege >> w;) {
            const size_t punkt = w.find_last_of('.');
            if (punkt != std::string::npos) w = w.substr(punkt + 1);
            if (!w.empty()) linie.push_back(w);
        }
        if (!linie.empty()) linien.push_back(linie);
    }
    return linien;
}

std::vector<Zug_t> LegaleZuege(Stellung_t& st, const Stellungsdaten_t& daten) {
    Zugliste_t liste;
    const uint32_t* ende = ErzeugeZuege(st, daten, liste);
    std::vector<Zug_t> zuege;
    for (const uint32_t* p = liste; p < ende; ++p)
        if (IstLegal(st, static_cast<Zug_t>(*p), daten)) zuege.push_back(static_cast<Zug_t>(*p));
    return zuege;
}

class Erzeuger_t {
public:
    Erzeuger_t(unsigned saat, std::vector<std::vector<std::string>> eco) : zufall(saat), linien(std::move(eco)) {}

    std::string Partie(int nummer, bool kaputt) {
        Stellung_t st;
        Stellungsdaten_t daten;
        SetzeStellung(st, daten, nullptr);
        std::string fen;
        std::vector<Zug_t> zuege;
        // Mostly an ECO line, a few games from a position reached by random moves.
        const bool mitFen = Zahl(50) == 0;
        if (!mitFen) {
            const std::vector<std::string>& linie = linien[Zahl(static_cast<int>(linien.size()))];
            for (const std::string& san : linie) {
                const Zug_t z = LeseSanZug(st, san.c_str(), daten);
                Rueckzug_t r;
                if (z == 0 || !SpielzugMachen(st, z, r, daten)) break;
                zuege.push_back(z);
            }
        }
        Stellung_t anfang;
        Stellungsdaten_t anfangsDaten;
        SetzeStellung(anfang, anfangsDaten, nullptr);
        if (mitFen) {
            for (int i = 0; i < 10 + Zahl(20); ++i) {
                std::vector<Zug_t> moeglich = LegaleZuege(st, daten);
                if (moeglich.empty()) break;
                Rueckzug_t r;
                SpielzugMachen(st, moeglich[Zahl(static_cast<int>(moeglich.size()))], r, daten);
            }
            anfang = st;
            anfangsDaten = daten;
            fen = FenText(st, 1 + Zahl(30));
        }

        // Random moves, captures a little preferred, to a random length.
        const int laenge = static_cast<int>(zuege.size()) + 10 + Zahl(100);
        int ergebnis = -2;
        while (static_cast<int>(zuege.size()) < laenge) {
            std::vector<Zug_t> moeglich = LegaleZuege(st, daten);
            if (moeglich.empty()) {
                int e = 0;
                SpielEnde(st, daten, &e);
                ergebnis = e;  // -1 White mated, +1 Black mated, 0 stalemate
                break;
            }
            Zug_t z = moeglich[Zahl(static_cast<int>(moeglich.size()))];
            for (Zug_t k : moeglich)
                if ((st.seite[st.amZug ^ 1].brett[0] & Bit(Nach(k))) && Zahl(3) == 0) z = k;
            Rueckzug_t r;
            SpielzugMachen(st, z, r, daten);
            zuege.push_back(z);
        }
        const int weissElo = 1800 + Zahl(1000), schwarzElo = 1800 + Zahl(1000);
        if (ergebnis == -2) {
            const int wurf = Zahl(100);
            ergebnis = wurf < 35 + (weissElo - schwarzElo) / 40 ? 1 : wurf < 70 ? 0 : -1;
        }
        const char* resultat = ergebnis > 0 ? "1-0" : ergebnis < 0 ? "0-1" : "1/2-1/2";

        std::string t;
        t += "[Event \"Generated \\\"book\\\" test\"]\n[Site \"Kelvaran\"]\n[Date \"2017.01.01\"]\n";
        t += "[Round \"" + std::to_string(nummer) + "\"]\n";
        t += "[White \"Spieler " + std::to_string(Zahl(500)) + "\"]\n[Black \"Spieler " + std::to_string(Zahl(500)) +
             "\"]\n";
        t += std::string("[Result \"") + resultat + "\"]\n";
        if (Zahl(10) != 0) t += "[WhiteElo \"" + std::to_string(weissElo) + "\"]\n";
        if (Zahl(10) != 0) t += "[BlackElo \"" + std::to_string(schwarzElo) + "\"]\n";
        if (mitFen) t += "[SetUp \"1\"]\n[FEN \"" + (kaputt ? std::string("8/8/8 w - - 0 1") : fen) + "\"]\n";
        t += "\n";

        std::string text;
        Stellung_t s = anfang;
        Stellungsdaten_t d = anfangsDaten;
        const int zugnummer = mitFen ? std::atoi(fen.substr(fen.rfind(' ') + 1).c_str()) : 1;
        const size_t kaputtBei = kaputt && !mitFen ? static_cast<size_t>(Zahl(static_cast<int>(zuege.size()))) : ~size_t{0};
        for (size_t i = 0; i < zuege.size(); ++i) {
            const int nr = zugnummer + static_cast<int>((i + (anfang.amZug == Schwarz ? 1 : 0)) / 2);
            if (s.amZug == Weiss) text += std::to_string(nr) + ". ";
            else if (i == 0 || Zahl(8) == 0) text += std::to_string(nr) + "... ";
            char san[16];
            ZugSan(s, zuege[i], d, san);
            text += i == kaputtBei ? std::string("Ke9") : std::string(san);
            if (Zahl(25) == 0) text += Zahl(2) ? "!" : "?!";
            text += " ";
            if (Zahl(20) == 0) text += "$" + std::to_string(1 + Zahl(20)) + " ";
            if (Zahl(15) == 0) text += "{A comment with (brackets) [tags] and \"quotes\"\nover two lines} ";
            if (Zahl(30) == 0) text += ";to_the_end_of_the_line\n";
            if (Zahl(12) == 0) text += Variante(s, d, 2) + " ";
            Rueckzug_t r;
            SpielzugMachen(s, zuege[i], r, d);
        }
        text += resultat;
        t += Umbrechen(text);
        if (Zahl(40) == 0) t += "\n% an escape line, from some program\n";
        return t + "\n\n";
    }

private:
    int Zahl(int n) { return static_cast<int>(zufall() % static_cast<unsigned>(n)); }

    // A random line of up to four moves from here, with a nested one sometimes.
    std::string Variante(Stellung_t st, Stellungsdaten_t daten, int tiefe) {
        std::string v = "(";
        for (int i = 0; i < 1 + Zahl(4); ++i) {
            std::vector<Zug_t> moeglich = LegaleZuege(st, daten);
            if (moeglich.empty()) break;
            const Zug_t z = moeglich[Zahl(static_cast<int>(moeglich.size()))];
            char san[16];
            ZugSan(st, z, daten, san);
            v += std::string(i ? " " : "") + san;
            if (tiefe > 0 && Zahl(5) == 0) v += " " + Variante(st, daten, tiefe - 1);
            Rueckzug_t r;
            SpielzugMachen(st, z, r, daten);
        }
        return v + ")";
    }

    static std::string FenText(const Stellung_t& st, int zugnummer) {
        std::string t;
        for (Feld f = 0; f < 64; ++f) {
            char c = '1';
            for (unsigned seite = 0; seite < 2; ++seite)
                for (unsigned typ = Bauer; typ <= Koenig; ++typ)
                    if (st.seite[seite].brett[typ] & Bit(f)) c = "PNBRQK"[typ - 1] + (seite ? 32 : 0);
            if (c == '1' && !t.empty() && t.back() >= '1' && t.back() <= '7') ++t.back();
            else t += c;
            if (LinieVon(f) == 7 && f != 63) t += '/';
        }
        t += st.amZug == Weiss ? " w " : " b ";
        std::string r;
        for (int bit = 0; bit < 4; ++bit)
            if (st.rochaden & (1 << bit)) r += "KQkq"[bit];
        t += (r.empty() ? "-" : r) + " ";
        t += st.ep ? std::string{static_cast<char>('a' + LinieVon(st.ep)), static_cast<char>('0' + ReiheVon(st.ep))}
                   : "-";
        return t + " 0 " + std::to_string(zugnummer);
    }

    // Lines of at most 79 characters, broken at blanks outside comments.
    static std::string Umbrechen(const std::string& text) {
        std::string aus, zeile;
        std::stringstream ein(text);
        for (std::string w; std::getline(ein, w, ' ');) {
            if (!zeile.empty() && zeile.size() + 1 + w.size() > 79 && zeile.find('\n') == std::string::npos) {
                aus += zeile + "\n";
                zeile.clear();
            }
            zeile += (zeile.empty() ? "" : " ") + w;
            const size_t nl = zeile.rfind('\n');
            if (nl != std::string::npos) {
                aus += zeile.substr(0, nl + 1);
                zeile = zeile.substr(nl + 1);
            }
        }
        return aus + zeile + "\n";
    }

    std::mt19937 zufall;
    std::vector<std::vector<std::string>> linien;
};

}  // namespace

int main(int argc, char** argv) {
    if (argc < 5) {
        std::cerr << "usage: pgn_erzeugen ECO-FILE GAMES SEED OUT [BROKEN]\n";
        return 2;
    }
    InitTabellen();
    auto linien = LiesEco(argv[1]);
    if (linien.empty()) {
        std::cerr << "no opening lines in " << argv[1] << "\n";
        return 1;
    }
    const int partien = std::atoi(argv[2]);
    const int kaputt = argc > 5 ? std::atoi(argv[5]) : 0;
    Erzeuger_t erzeuger(static_cast<unsigned>(std::atoi(argv[3])), std::move(linien));
    std::ofstream aus(argv[4], std::ios::binary);
    // The broken games are spread evenly through the file.
    const int abstand = kaputt > 0 ? partien / kaputt : 0;
    for (int i = 0; i < partien; ++i) aus << erzeuger.Partie(i + 1, kaputt > 0 && i % abstand == abstand / 2);
    return aus ? 0 : 1;
}
