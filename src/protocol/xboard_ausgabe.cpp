#include "protocol/xboard_ausgabe.h"

#include <cstdio>
#include <cstring>
#include <string>

#include "protocol/optionen.h"
#include "protocol/xboard.h"
#include "timing/zeitkontrolle.h"

namespace {

void KopiereText(char (&ziel)[8], const char* text) { std::snprintf(ziel, sizeof ziel, "%s", text); }

}  // namespace

XBoardAusgabe_t::XBoardAusgabe_t(Zeitkontrolle_t* zk, std::ostream& a) : Ausgabe_t(a), zeitkontrolle(zk) {}

bool XBoardAusgabe_t::stumm() const {
    if (optionen == nullptr) return false;
    std::lock_guard<std::mutex> halten(optionenSperre);
    return optionen->NoOutput();
}

void XBoardAusgabe_t::fehler(const char* meldung, const char* argument) {
    zeile(std::string("Error (") + (meldung != nullptr ? meldung : "") +
          "): " + (argument != nullptr ? argument : "internal error"));
}

void XBoardAusgabe_t::warnung(const char* meldung, const char* argument) { fehler(meldung, argument); }

void XBoardAusgabe_t::bestzug(const Stellung_t& st, Zug_t zug, Zug_t ponder) {
    if (analyse || stumm()) return;
    char text[8];
    ZugText(st, zug, text);
    if (xboard == nullptr) {
        zeile(std::string("move ") + text);
        return;
    }
    // Under the adapter's lock: the input thread sees the printed move and the game change together.
    std::lock_guard<std::mutex> halten(xboard->Sperre());
    if (!xboard->ErwartetZug(st, zug)) return;  // a search the GUI no longer waits for
    xboard->Remisangebot();
    zeile(std::string("move ") + text);
    xboard->ZugGespielt(zug, ponder);
}

void XBoardAusgabe_t::aktuellerZug(const Stellung_t& st, Zug_t zug, int nummer, int) {
    char text[8];
    ZugText(st, zug, text);
    std::lock_guard<std::mutex> halten(standSperre);
    stand.zugNummer = nummer;
    KopiereText(stand.zugText, text);
}

void XBoardAusgabe_t::variante(const Stellung_t& st, const Zug_t* zuege, int anzahl, int wert, int, int, int tiefe,
                               int, int64_t zeitMs, uint64_t knoten, int, int64_t, bool unterdruecken) {
    std::string text;
    {
        std::lock_guard<std::mutex> halten(standSperre);
        // The adapter's draw and resign decisions read the score even when thinking is not shown.
        stand.letzterWert = wert;
        stand.tiefe = tiefe;
        stand.knoten = knoten;
        if (!post || unterdruecken) return;
        char puffer[96];
        std::snprintf(puffer, sizeof puffer, "%d %d %.0f %.0f", tiefe, XBoardWert(wert),
                      static_cast<double>(zeitMs / 10), static_cast<double>(knoten));
        text = puffer;
        if (stand.hinweis[0] != '\0') text += std::string(" (") + stand.hinweis + ")";
        QuetscheLeerzeichen(text);
        HaengeZuegeAn(text, st, zuege, anzahl);
        if (analyse && anzahl > 0) {
            char zugText[8];
            KopiereText(stand.hinweis, ZugText(st, zuege[0], zugText));
        }
    }
    zeile(text);
}

void XBoardAusgabe_t::NeueSuche(int zuegeGesamt, const char* hinweis) {
    std::lock_guard<std::mutex> halten(standSperre);
    stand = XBoardSuchstand_t{};
    stand.zuegeGesamt = zuegeGesamt;
    KopiereText(stand.hinweis, hinweis != nullptr ? hinweis : "");
    stand.suchstart = Millisekunden();
}

XBoardSuchstand_t XBoardAusgabe_t::Stand() const {
    std::lock_guard<std::mutex> halten(standSperre);
    return stand;
}
