#include "protocol/ausgabe.h"

#include <algorithm>
#include <cmath>
#include <cstdio>
#include <cstring>

#include "protocol/optionen.h"
#include "timing/zeitkontrolle.h"

namespace {

// A GUI may reject longer info lines; variations are cut at a whole move before this.
constexpr size_t MaxZeilenLaenge = 1000;

// Time as the GUI sees it: never 0, so the rates below stay finite.
int64_t AnzeigeZeit(int64_t zeitMs) { return std::max<int64_t>(zeitMs, 1); }

// "info depth %d seldepth %d" of slots 5 and 8.
std::string TiefenText(int tiefe, int selTiefe) {
    char puffer[64];
    const int t = tiefe + 1;
    std::snprintf(puffer, sizeof puffer, "info depth %d seldepth %d", t, std::max(selTiefe, t));
    return puffer;
}

// Centipawns from tenths, rounded away from zero; a dead 0 stays 0.
int Centibauern(int wert) {
    if (wert >= 2) return (wert + 9) / 10;
    if (wert >= -1) return 0;
    return (wert - 9) / 10;
}

}  // namespace

void HaengeZuegeAn(std::string& zeile, const Stellung_t& st, const Zug_t* zuege, int anzahl) {
    char text[8];
    for (int i = 0; i < anzahl; ++i) {
        ZugText(st, zuege[i], text);
        const size_t n = std::strlen(text);
        if (zeile.size() + 1 + n >= MaxZeilenLaenge) break;
        zeile += ' ';
        zeile += text;
    }
}

void QuetscheLeerzeichen(std::string& text) {
    const auto ende = std::unique(text.begin(), text.end(), [](char a, char b) { return a == ' ' && b == ' '; });
    text.erase(ende, text.end());
}

std::string UciWertText(int wert, int alpha, int beta) {
    char puffer[64];
    if (wert >= 450001) {
        std::snprintf(puffer, sizeof puffer, " score mate %d", (500001 - wert) / 2);
    } else if (wert < -450000) {
        std::snprintf(puffer, sizeof puffer, " score mate %d", (-500001 - wert) / 2);
    } else {
        std::snprintf(puffer, sizeof puffer, " score cp %d", Centibauern(wert));
    }
    std::string text = puffer;
    if (wert >= beta) {
        text += " lowerbound";
    } else if (wert <= alpha) {
        text += " upperbound";
    }
    return text;
}

int XBoardWert(int wert) {
    if (wert >= 450001) return wert - 467233;
    if (wert < -450000) return wert + 467233;
    return Centibauern(wert);
}

// ---------------------------------------------------------------- Ausgabe_t

Ausgabe_t::Ausgabe_t(std::ostream& a) : aus(a) {}

Ausgabe_t::~Ausgabe_t() = default;

bool Ausgabe_t::stumm() const { return schweigen.load(); }

void Ausgabe_t::zeile(std::string_view text) {
    if (stumm()) return;
    std::lock_guard<std::mutex> halten(sperre);
    aus << text << '\n';
    aus.flush();
}

void Ausgabe_t::statistik(int, int, int64_t, uint64_t, int, int64_t) {}

void Ausgabe_t::aktuellerZug(const Stellung_t&, Zug_t, int, int) {}

void Ausgabe_t::multiPv(const Stellung_t&, const Zug_t*, int, int, int, int) {}

// ---------------------------------------------------------------- UciAusgabe_t

UciAusgabe_t::UciAusgabe_t(const Option_t* tabelle, std::ostream& a) : Ausgabe_t(a) {
    zeile("id name Kelvaran 2017-01-01");
    zeile("id author the Kelvaran developers");
    for (const Option_t* o = tabelle; o != nullptr && o->name != nullptr; ++o) {
        if (!o->angezeigt) continue;
        std::string text = std::string("option name ") + o->name + " type ";
        switch (o->typ) {
            case OptionCheck:
                text += std::string("check default ") + o->vorgabe;
                break;
            case OptionSpin:
                text += std::string("spin default ") + o->vorgabe + " min " + std::to_string(o->min) + " max " +
                        std::to_string(o->max);
                break;
            case OptionCombo:
                // Announced with the word "check", as the engine always has; no row of ours is a combo.
                text += std::string("check default ") + o->vorgabe + " " + (o->liste != nullptr ? o->liste : "");
                break;
            case OptionButton:
                text += "button";
                break;
            case OptionString:
                text += std::string("string default ") + o->vorgabe;
                break;
            default:
                continue;
        }
        zeile(text);
    }
    zeile("uciok");
}

void UciAusgabe_t::statistik(int tiefe, int selTiefe, int64_t zeitMs, uint64_t knoten, int hashvoll,
                             int64_t bitbaseTreffer) {
    const int64_t zeit = AnzeigeZeit(zeitMs);
    char puffer[160];
    std::snprintf(puffer, sizeof puffer, " time %16.0f nodes %16.0f nps %ld hashfull %d", static_cast<double>(zeit),
                  static_cast<double>(knoten), static_cast<long>(knoten * 1000 / static_cast<uint64_t>(zeit)),
                  hashvoll);
    std::string text = TiefenText(tiefe, selTiefe) + puffer;
    if (bitbaseTreffer > 0) {
        std::snprintf(puffer, sizeof puffer, " tbhits %ld", static_cast<long>(bitbaseTreffer));
        text += puffer;
    }
    QuetscheLeerzeichen(text);
    zeile(text);
}

void UciAusgabe_t::bestzug(const Stellung_t& st, Zug_t zug, Zug_t ponder) {
    char text[8];
    std::string zeileText = std::string("bestmove ") + ZugText(st, zug, text);
    if ((ponder & 0xf000) != 0) zeileText += std::string(" ponder ") + ZugText(st, ponder, text);
    zeile(zeileText);
}

void UciAusgabe_t::aktuellerZug(const Stellung_t& st, Zug_t zug, int nummer, int hashvoll) {
    char text[8];
    char puffer[96];
    std::snprintf(puffer, sizeof puffer, " currmovenumber %d hashfull %d", nummer, hashvoll);
    std::string zeileText = std::string("info currmove ") + ZugText(st, zug, text) + puffer;
    QuetscheLeerzeichen(zeileText);
    zeile(zeileText);
}

void UciAusgabe_t::variante(const Stellung_t& st, const Zug_t* zuege, int anzahl, int wert, int alpha, int beta,
                            int tiefe, int selTiefe, int64_t zeitMs, uint64_t knoten, int hashvoll,
                            int64_t bitbaseTreffer, bool unterdruecken) {
    if (unterdruecken) return;
    const int64_t zeit = AnzeigeZeit(zeitMs);
    char puffer[160];
    // One more in the divisor than in the statistics line, as GUIs have always seen it.
    std::snprintf(puffer, sizeof puffer, " time %16.0f nodes %16.0f nps %ld hashfull %d", static_cast<double>(zeit),
                  static_cast<double>(knoten), static_cast<long>(knoten * 1000 / static_cast<uint64_t>(zeit + 1)),
                  hashvoll);
    std::string text = TiefenText(tiefe, selTiefe) + UciWertText(wert, alpha, beta) + puffer;
    if (bitbaseTreffer > 0) {
        std::snprintf(puffer, sizeof puffer, " tbhits %ld", static_cast<long>(bitbaseTreffer));
        text += puffer;
    }
    text += " pv";
    QuetscheLeerzeichen(text);
    HaengeZuegeAn(text, st, zuege, anzahl);
    zeile(text);
}

void UciAusgabe_t::multiPv(const Stellung_t& st, const Zug_t* zuege, int anzahl, int nummer, int wert, int tiefe) {
    char puffer[64];
    std::snprintf(puffer, sizeof puffer, "info multipv %d depth %d", nummer, tiefe + 1);
    std::string text = puffer + UciWertText(wert, wert - 1, wert + 1) + " pv";
    QuetscheLeerzeichen(text);
    HaengeZuegeAn(text, st, zuege, anzahl);
    zeile(text);
}

// ---------------------------------------------------------------- UciTestausgabe_t

UciTestausgabe_t::UciTestausgabe_t(Zeitkontrolle_t* zk, std::ostream& a) : Ausgabe_t(a), zeitkontrolle(zk) {}

void UciTestausgabe_t::bestzug(const Stellung_t&, Zug_t, Zug_t) {
    ++ergebnisse;
    const int64_t start = zeitkontrolle != nullptr ? zeitkontrolle->start : Millisekunden();
    // At least 10 ms, so the logarithm stays finite.
    const double sekunden = std::max(static_cast<double>(Millisekunden() - start) / 1000.0, 0.01);
    sekundenGesamt += sekunden;
    logSumme += std::log(sekunden);
    char puffer[96];
    std::snprintf(puffer, sizeof puffer, "%3d %12.3f %12.3f %12.3f", ergebnisse, sekunden, sekundenGesamt,
                  std::exp(logSumme / ergebnisse));
    zeile(puffer);
}

// ---------------------------------------------------------------- TestAusgabe_t

void TestAusgabe_t::bestzug(const Stellung_t&, Zug_t zug, Zug_t) { besterZug = zug; }

void TestAusgabe_t::variante(const Stellung_t&, const Zug_t* zuege, int anzahl, int w, int, int, int, int, int64_t,
                             uint64_t, int, int64_t, bool) {
    wert = w;
    ersterZug = anzahl > 0 ? zuege[0] : 0;
}
