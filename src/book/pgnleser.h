// The PGN reader of the book tools: a byte stream with one character of
// look-ahead, a tokenizer and a game parser. Errors go out as one
// "info string PGN-Parser: file ... line ... char ...: ..." line each and end
// the game being read; the reader keeps its place, so the caller can go on.
#pragma once

#include <cstdint>
#include <cstdio>
#include <functional>
#include <map>
#include <string>
#include <vector>

#include "board/stellung.h"
#include "board/zug.h"

using PgnTags_t = std::map<std::string, std::string>;
using Meldung_t = std::function<void(const std::string&)>;

// Writes the line to standard output and flushes.
void MeldungAufStdout(const std::string& zeile);

class PgnLeser_t {
public:
    enum Token : int {
        TokenString = 0,
        TokenZahl = 1,
        TokenPunkt = 2,
        TokenStern = 3,
        TokenRundAuf = 4,
        TokenRundZu = 5,
        TokenEckigAuf = 6,
        TokenEckigZu = 7,
        TokenNag = 8,
        TokenSymbol = 9,
        TokenEnde = 10,
    };

    explicit PgnLeser_t(Meldung_t meldung = MeldungAufStdout);
    ~PgnLeser_t();
    PgnLeser_t(const PgnLeser_t&) = delete;
    PgnLeser_t& operator=(const PgnLeser_t&) = delete;

    // Opens a file; "Cannot open file" is reported when that fails.
    bool Oeffnen(const std::string& datei);
    // Reads from a text instead of a file (the name only appears in reports).
    void OeffneText(std::string text, const std::string& name);

    // Reads the next game: true for a complete, consistent game. False at the
    // end of the file (silently) or after a reported error.
    bool LiesPartie(std::vector<Zug_t>& zuege, PgnTags_t& tags);

    // After an error: skips the rest of the broken game, up to its termination
    // marker or the tag section of the next game, whichever comes first.
    void ZurNaechstenPartie();

    // The position the last game started from (a FEN tag or the start position),
    // and the position key before each of its moves.
    const Stellung_t& Anfangsstellung() const { return anfang; }
    const std::vector<uint64_t>& Schluessel() const { return schluessel; }

    bool AmEnde() const { return zeichen < 0; }
    bool Ok() const { return ok; }
    uint64_t Fehleranzahl() const { return fehleranzahl; }
    uint32_t Zeile() const { return zeile; }
    uint32_t Spalte() const { return spalte; }

    // Reports at the start of the last token read and clears the ok flag.
    void Fehler(const std::string& meldung, const std::string& zusatz = "");

    // Exposed for the tests of the tokenizer.
    Token NaechstesToken();
    const std::string& TokenText() const { return text; }

private:
    void Weiter();
    void ErstesZeichen();
    void UeberspringeLeerUndKommentare();
    bool Nachfuellen();
    bool TagCheck(const PgnTags_t& tags);

    Meldung_t meldung;
    std::FILE* datei = nullptr;
    std::string name;
    std::vector<unsigned char> puffer;
    size_t lesePos = 0;
    size_t fuellung = 0;
    int zeichen = -1;  // the look-ahead; -1 at the end
    uint32_t zeile = 1;
    uint32_t spalte = 1;
    uint32_t tokenZeile = 1;  // where the last token began
    uint32_t tokenSpalte = 1;
    bool ok = false;
    uint64_t fehleranzahl = 0;
    bool partieOffen = false;  // a game has begun whose termination marker is not read yet
    bool imZugtext = false;    // that game's moves have begun
    std::string text;
    std::vector<uint64_t> schluessel;
    Stellung_t anfang{};
    Stellung_t stellung{};
};
