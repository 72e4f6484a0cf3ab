#include "book/pgnleser.h"

#include <cstring>
#include <iostream>

#include "board/zugmachen.h"

namespace {

constexpr size_t PufferGroesse = 1 << 16;
// Longer tokens are cut: binary junk must not grow one text without end.
constexpr size_t MaxToken = 4096;

bool IstBuchstabe(int c) { return (c >= 'a' && c <= 'z') || (c >= 'A' && c <= 'Z'); }
bool IstZiffer(int c) { return c >= '0' && c <= '9'; }
bool IstLeer(int c) { return c == ' ' || c == '\t' || c == '\n' || c == '\r' || c == '\f' || c == '\v'; }
bool IstSymbolZeichen(int c) { return IstBuchstabe(c) || IstZiffer(c) || (c > 0 && std::strchr("_+#=:-/", c)); }
bool IstErgebnis(const std::string& s) { return s == "1-0" || s == "0-1" || s == "1/2-1/2"; }

}  // namespace

void MeldungAufStdout(const std::string& zeile) { std::cout << zeile << std::endl; }

PgnLeser_t::PgnLeser_t(Meldung_t m) : meldung(std::move(m)) {}

PgnLeser_t::~PgnLeser_t() {
    if (datei != nullptr) std::fclose(datei);
}

bool PgnLeser_t::Oeffnen(const std::string& dateiname) {
    if (datei != nullptr) std::fclose(datei);
    name = dateiname;
    zeile = 1;
    spalte = 0;
    partieOffen = imZugtext = false;
    lesePos = fuellung = 0;
    datei = std::fopen(dateiname.c_str(), "rb");
    if (datei == nullptr) {
        zeichen = -1;
        spalte = 1;
        tokenZeile = tokenSpalte = 1;
        Fehler("Cannot open file");
        return false;
    }
    puffer.resize(PufferGroesse);
    ErstesZeichen();
    return true;
}

void PgnLeser_t::ErstesZeichen() {
    ok = true;
    zeichen = 0;
    Weiter();
    // A byte-order mark is no part of the text.
    if (zeichen == 0xEF && Nachfuellen() && fuellung - lesePos >= 2 && puffer[lesePos] == 0xBB &&
        puffer[lesePos + 1] == 0xBF) {
        lesePos += 2;
        spalte = 0;
        Weiter();
    }
}

void PgnLeser_t::OeffneText(std::string inhalt, const std::string& dateiname) {
    if (datei != nullptr) std::fclose(datei);
    datei = nullptr;
    name = dateiname;
    puffer.assign(inhalt.begin(), inhalt.end());
    lesePos = 0;
    fuellung = puffer.size();
    zeile = 1;
    spalte = 0;
    partieOffen = imZugtext = false;
    ErstesZeichen();
}

// True when at least one byte waits in the buffer.
bool PgnLeser_t::Nachfuellen() {
    if (lesePos < fuellung) return true;
    if (datei == nullptr) return false;
    fuellung = std::fread(puffer.data(), 1, puffer.size(), datei);
    lesePos = 0;
    return fuellung > 0;
}

// A line feed starts the next line at column 0, so its first character is column 1.
void PgnLeser_t::Weiter() {
    if (lesePos >= fuellung && !Nachfuellen()) {
        if (zeichen >= 0) ++spalte;  // the end sits just past the last character
        zeichen = -1;
        return;
    }
    zeichen = puffer[lesePos++];
    if (zeichen == '\n') {
        ++zeile;
        spalte = 0;
    } else {
        ++spalte;
    }
}

void PgnLeser_t::UeberspringeLeerUndKommentare() {
    for (;;) {
        while (IstLeer(zeichen)) Weiter();
        if (zeichen == ';' || (zeichen == '%' && spalte == 1)) {
            // A comment to the end of the line, or an escape line.
            while (zeichen >= 0 && zeichen != '\n' && zeichen != '\r') Weiter();
        } else if (zeichen == '{') {
            while (zeichen >= 0 && zeichen != '}') Weiter();
            if (zeichen == '}') Weiter();
        } else {
            return;
        }
    }
}

PgnLeser_t::Token PgnLeser_t::NaechstesToken() {
    UeberspringeLeerUndKommentare();
    tokenZeile = zeile;
    tokenSpalte = spalte;
    text.clear();
    const int c = zeichen;
    if (c < 0) return TokenEnde;

    if (c == '"') {
        Weiter();
        while (zeichen >= 0 && zeichen != '"') {
            if (zeichen == '\\') {
                Weiter();
                if (zeichen < 0) break;
            }
            if (text.size() < MaxToken) text += static_cast<char>(zeichen);
            Weiter();
        }
        if (zeichen == '"') Weiter();
        return TokenString;
    }
    if (c == '$') {
        Weiter();
        while (IstZiffer(zeichen)) {
            if (text.size() < MaxToken) text += static_cast<char>(zeichen);
            Weiter();
        }
        return TokenNag;
    }
    // Annotation marks after a move ("e4!?") weigh like a NAG.
    if (c == '!' || c == '?') {
        while (zeichen == '!' || zeichen == '?') {
            text += static_cast<char>(zeichen);
            Weiter();
        }
        return TokenNag;
    }
    const char* einzeln = ".*()[]";
    if (const char* p = std::strchr(einzeln, c)) {
        Weiter();
        text = static_cast<char>(c);
        return static_cast<Token>(TokenPunkt + (p - einzeln));
    }

    // A symbol starts with whatever character stands here.
    bool nurZiffern = IstZiffer(c);
    text += static_cast<char>(c);
    Weiter();
    while (IstSymbolZeichen(zeichen)) {
        nurZiffern = nurZiffern && IstZiffer(zeichen);
        if (text.size() < MaxToken) text += static_cast<char>(zeichen);
        Weiter();
    }
    return nurZiffern ? TokenZahl : TokenSymbol;
}

void PgnLeser_t::Fehler(const std::string& text_, const std::string& zusatz) {
    ok = false;
    ++fehleranzahl;
    if (!meldung) return;
    meldung("info string PGN-Parser: file " + name + " line " + std::to_string(tokenZeile) + " char " +
            std::to_string(tokenSpalte) + ": " + text_ + zusatz);
}

bool PgnLeser_t::TagCheck(const PgnTags_t& tags) {
    for (const char* tag : {"White", "Black", "Result"}) {
        if (tags.count(tag) == 0) {
            Fehler(std::string("'") + tag + "' missing (in game above current line)");
            return false;
        }
    }
    return true;
}

bool PgnLeser_t::LiesPartie(std::vector<Zug_t>& zuege, PgnTags_t& tags) {
    zuege.clear();
    tags.clear();
    schluessel.clear();
    Stellungsdaten_t daten;
    SetzeStellung(anfang, daten, nullptr);
    stellung = anfang;
    std::string ergebnis = "*";
    partieOffen = imZugtext = false;

    for (;;) {
        const Token t = NaechstesToken();
        if (t >= TokenEnde) {
            // The normal way to find the end of a file between two games.
            partieOffen = false;
            return false;
        }
        partieOffen = true;
        switch (t) {
            case TokenString:
                Fehler("unexpected string ", text);
                return false;
            case TokenZahl:
            case TokenPunkt:
            case TokenNag:
                imZugtext = true;
                break;
            case TokenRundAuf: {
                // Variations are skipped whole, nested ones included.
                imZugtext = true;
                int tiefe = 1;
                while (tiefe > 0) {
                    const Token v = NaechstesToken();
                    if (v >= TokenEnde) {
                        Fehler("unexpected end of file");
                        return false;
                    }
                    tiefe += v == TokenRundAuf ? 1 : v == TokenRundZu ? -1 : 0;
                }
                break;
            }
            case TokenRundZu:
                Fehler("unexpected ')'");
                return false;
            case TokenEckigZu:
                Fehler("unexpected ']'");
                return false;
            case TokenEckigAuf: {
                if (NaechstesToken() != TokenSymbol) {
                    Fehler("symbol expected");
                    return false;
                }
                const std::string tagName = text;
                if (NaechstesToken() != TokenString) {
                    Fehler("String erwartet");
                    return false;
                }
                tags[tagName] = text;
                if (tagName == "Result") ergebnis = text;
                if (tagName == "FEN") {
                    // Moves read so far belonged to another start.
                    zuege.clear();
                    schluessel.clear();
                    if (!SetzeStellung(anfang, daten, text.c_str())) {
                        SetzeStellung(anfang, daten, nullptr);
                        stellung = anfang;
                        Fehler("illegal FEN ", text);
                        return false;
                    }
                    stellung = anfang;
                }
                if (NaechstesToken() != TokenEckigZu) {
                    Fehler("']' expected");
                    return false;
                }
                break;
            }
            case TokenStern:
                partieOffen = false;
                if (ergebnis != "*") {
                    Fehler("Game termination marker different from Result");
                    return false;
                }
                return TagCheck(tags);
            default: {  // a symbol
                if (IstErgebnis(text)) {
                    partieOffen = false;
                    if (text != ergebnis) {
                        Fehler("Game termination marker different from Result");
                        return false;
                    }
                    return TagCheck(tags);
                }
                imZugtext = true;
                const uint64_t vorher = daten.schluessel;
                const Zug_t zug = LeseSanZug(stellung, text.c_str(), daten);
                Rueckzug_t r;
                r.ep = stellung.ep;
                r.rochaden = stellung.rochaden;
                if (zug == 0 || !SpielzugMachen(stellung, zug, r, daten)) {
                    Fehler("illegal move ", text);
                    return false;
                }
                zuege.push_back(zug);
                schluessel.push_back(vorher);
                break;
            }
        }
    }
}

void PgnLeser_t::ZurNaechstenPartie() {
    if (!partieOffen) return;
    partieOffen = false;
    bool inTag = false;
    for (;;) {
        UeberspringeLeerUndKommentare();
        // A tag at the start of a line after the moves opens the next game.
        if (zeichen == '[' && spalte == 1 && imZugtext) return;
        const Token t = NaechstesToken();
        if (t >= TokenEnde || t == TokenStern || (t == TokenSymbol && IstErgebnis(text))) return;
        if (t == TokenEckigAuf) inTag = true;
        else if (t == TokenEckigZu) inTag = false;
        else if (!inTag && t != TokenString) imZugtext = true;
    }
}
