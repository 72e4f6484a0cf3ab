// The book's inputs: PGN and EPD files for "book add" / "book addpos", our book
// file and Polyglot books as the engine looks moves up in them during play.
#include <memory>
#include <string>
#include <vector>

#include "book/buch.h"
#include "book/buchaufbau.h"
#include "book/buchdatei.h"
#include "book/buchzug.h"
#include "book/pgnleser.h"
#include "book/polyglot.h"
#include "board/zugmachen.h"
#include "fuzz_hilfen.h"
#include "fuzz_ziele.h"
#include "protocol/optionen.h"

namespace {

const Meldung_t Still = [](const std::string&) {};

// What a book holds must survive its own file unchanged.
void PruefeRundreise(const Buch_t& buch) {
    const std::vector<Buchzug_t> saetze = buch.Sortiert();
    const std::string datei = fuzz::Verzeichnis() + "/rund.opn";
    FUZZ_PRUEFEN(Buchdatei::Schreiben(datei, saetze, buch.gesperrt ? Buchdatei::FlagGesperrt : 0) ==
                 Buchdatei::Status::Ok);
    std::vector<Buchzug_t> gelesen;
    uint16_t flags = 0;
    FUZZ_PRUEFEN(Buchdatei::Lesen(datei, gelesen, flags) == Buchdatei::Status::Ok);
    FUZZ_PRUEFEN(gelesen.size() == saetze.size());
    for (size_t i = 0; i < saetze.size(); ++i)
        FUZZ_PRUEFEN(gelesen[i].schluessel == saetze[i].schluessel && gelesen[i].zug == saetze[i].zug &&
                     gelesen[i].gewicht == saetze[i].gewicht && gelesen[i].partien == saetze[i].partien &&
                     gelesen[i].punkte == saetze[i].punkte);
}

// The lookups of play on the start position and after 1.e4: every move offered is legal.
void PruefeSpielzuege(const std::string& datei) {
    Optionen_t optionen(Optionstabelle);
    FUZZ_PRUEFEN(optionen.SetzeOption(("setoption name BookFile value " + datei).c_str()));
    for (const char* fen : {static_cast<const char*>(nullptr), "rnbqkbnr/pppppppp/8/8/4P3/8/PPPP1PPP/RNBQKBNR b KQkq e3 0 1"}) {
        auto st = std::make_unique<Stellung_t>();
        Stellungsdaten_t daten;
        FUZZ_PRUEFEN(SetzeStellung(*st, daten, fen));
        std::vector<Buchkandidat_t> kandidaten;
        if (BuchKandidaten(datei, *st, daten, kandidaten))
            for (const Buchkandidat_t& k : kandidaten) FUZZ_PRUEFEN(IstLegal(*st, k.zug, daten));
        Zug_t zug = 0;
        std::string info;
        if (BuchZug(*st, daten, optionen, zug, info)) FUZZ_PRUEFEN(IstLegal(*st, zug, daten));
    }
}

}  // namespace

int FuzzPgn(const uint8_t* daten, size_t groesse) {
    FuzzVorbereiten();
    fuzz::Leeren();
    const std::string datei = fuzz::Datei("partien.pgn", daten, groesse);
    Buch_t buch;
    PgnHinzufuegen(buch, datei, 1000, groesse % 2 == 1, Still);
    PruefeRundreise(buch);
    Entropie(buch);

    // The reader on the text itself, game after game, as the book tools go through a file.
    PgnLeser_t leser(Still);
    leser.OeffneText(std::string(reinterpret_cast<const char*>(daten), groesse), "text.pgn");
    for (;;) {
        std::vector<Zug_t> zuege;
        PgnTags_t tags;
        if (leser.LiesPartie(zuege, tags)) continue;
        if (leser.AmEnde()) break;
        leser.ZurNaechstenPartie();
    }
    return 0;
}

int FuzzEpd(const uint8_t* daten, size_t groesse) {
    FuzzVorbereiten();
    fuzz::Leeren();
    const std::string datei = fuzz::Datei("stellungen.epd", daten, groesse);
    Buch_t buch;
    StellungenHinzufuegen(buch, datei, 1000);
    PruefeRundreise(buch);
    return 0;
}

int FuzzBuch(const uint8_t* daten, size_t groesse) {
    FuzzVorbereiten();
    fuzz::Leeren();
    const std::string datei = fuzz::Datei("buch.opn", daten, groesse);
    std::vector<Buchzug_t> saetze;
    uint16_t flags = 0;
    if (Buchdatei::Lesen(datei, saetze, flags) == Buchdatei::Status::Ok) {
        Buch_t buch;
        for (const Buchzug_t& z : saetze) buch.Hinzufuegen(z);
        buch.gesperrt = (flags & Buchdatei::FlagGesperrt) != 0;
        PruefeRundreise(buch);
    }
    std::vector<Buchzug_t> zuege;
    Buchdatei::Suchen(datei, Buchdatei::Schluesselsignatur(), zuege);
    PruefeSpielzuege(datei);
    return 0;
}

int FuzzPolyglot(const uint8_t* daten, size_t groesse) {
    FuzzVorbereiten();
    fuzz::Leeren();
    const std::string datei = fuzz::Datei("buch.bin", daten, groesse);
    auto st = std::make_unique<Stellung_t>();
    Stellungsdaten_t d;
    SetzeStellung(*st, d, nullptr);
    std::vector<PolyglotEintrag_t> eintraege;
    if (PolyglotSuchen(datei, PolyglotSchluessel(*st), eintraege))
        for (const PolyglotEintrag_t& e : eintraege) {
            const Zug_t zug = PolyglotZugAus(*st, d, e.zug);
            if (zug != 0) FUZZ_PRUEFEN(IstLegal(*st, zug, d));
        }
    PruefeSpielzuege(datei);
    return 0;
}
