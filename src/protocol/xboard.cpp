#include "protocol/xboard.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include <unistd.h>

#include "protocol/ausgabe.h"
#include "protocol/optionen.h"
#include "protocol/xboard_ausgabe.h"
#include "timing/zeitkontrolle.h"

namespace {

constexpr size_t WortLaenge = 16;  // XBoard command words are compared over at most 16 characters
constexpr size_t PingLaenge = 30;

bool IstLeer(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

const char* UeberspringeLeer(const char* p) {
    while (*p != '\0' && IstLeer(*p)) ++p;
    return p;
}

// The rest of a command without the white space around it.
std::string Beschnitten(const char* text) {
    const char* p = UeberspringeLeer(text);
    size_t n = std::strlen(p);
    while (n > 0 && IstLeer(p[n - 1])) --n;
    return std::string(p, n);
}

// A number that fills the rest of the line.
bool LeseReal(const char* text, double& wert) {
    const std::string s = Beschnitten(text);
    char* ende = nullptr;
    wert = std::strtod(s.c_str(), &ende);
    return !s.empty() && *ende == '\0' && wert > -1e15 && wert < 1e15;
}

bool LeseGanz(const char* text, long& wert) {
    const std::string s = Beschnitten(text);
    char* ende = nullptr;
    wert = std::strtol(s.c_str(), &ende, 10);
    return !s.empty() && *ende == '\0';
}

const char* const Merkmale[] = {
    "feature done=0",
    "feature myname=\"Kelvaran 2017-01-01\"",
    "feature ping=1",
    "feature setboard=1",
    "feature playother=1",
    "feature usermove=1",
    "feature sigint=0",
    "feature variants=\"normal,fischerandom\"",
    "feature colors=0",
    "feature ics=0",
    "feature name=1",
    "feature memory=1",
    "feature smp=1",
};

}  // namespace

std::string EinstellungsdateiNebenProgramm() {
    char pfad[4096];
    const ssize_t n = readlink("/proc/self/exe", pfad, sizeof pfad - 1);
    if (n <= 0) return "Kelvaran.ini";
    std::string verzeichnis(pfad, static_cast<size_t>(n));
    const size_t schnitt = verzeichnis.rfind('/');
    return schnitt == std::string::npos ? "Kelvaran.ini" : verzeichnis.substr(0, schnitt + 1) + "Kelvaran.ini";
}

struct XBoardInterface_t::Befehl_t {
    const char* wort;
    void (XBoardInterface_t::*ausfuehren)(const char* zeile, const char* rest);
};

// Compared whole and case-sensitively, in this order.
const XBoardInterface_t::Befehl_t XBoardInterface_t::Befehle[] = {
    {"xboard", &XBoardInterface_t::Xboard},
    {"protover", &XBoardInterface_t::Protover},
    {"accepted", &XBoardInterface_t::Ignorieren},
    {"rejected", &XBoardInterface_t::Ignorieren},
    {"new", &XBoardInterface_t::Neu},
    {"variant", &XBoardInterface_t::Variante},
    {"quit", &XBoardInterface_t::Beenden},
    {"random", &XBoardInterface_t::Ignorieren},
    {"force", &XBoardInterface_t::Force},
    {"go", &XBoardInterface_t::Go},
    {"playother", &XBoardInterface_t::Playother},
    {"level", &XBoardInterface_t::Level},
    {"st", &XBoardInterface_t::St},
    {"sd", &XBoardInterface_t::Sd},
    {"time", &XBoardInterface_t::Uhr},
    {"otim", &XBoardInterface_t::Gegneruhr},
    {"usermove", &XBoardInterface_t::Usermove},
    {"?", &XBoardInterface_t::ZiehSofort},
    {"ping", &XBoardInterface_t::Ping},
    {"draw", &XBoardInterface_t::Remis},
    {"result", &XBoardInterface_t::Ergebnis},
    {"setboard", &XBoardInterface_t::Setboard},
    {"hint", &XBoardInterface_t::Hinweis},
    {"bk", &XBoardInterface_t::Buch},
    {"undo", &XBoardInterface_t::Undo},
    {"remove", &XBoardInterface_t::Remove},
    {"hard", &XBoardInterface_t::Hard},
    {"easy", &XBoardInterface_t::Easy},
    {"post", &XBoardInterface_t::Post},
    {"nopost", &XBoardInterface_t::Nopost},
    {"analyze", &XBoardInterface_t::Analyze},
    {"name", &XBoardInterface_t::Name},
    {"rating", &XBoardInterface_t::Ignorieren},
    {"computer", &XBoardInterface_t::Ignorieren},
    {"exit", &XBoardInterface_t::Exit},
    {".", &XBoardInterface_t::Status},
    {"memory", &XBoardInterface_t::Speicher},
    {"cores", &XBoardInterface_t::Kerne},
    {nullptr, nullptr},
};

XBoardInterface_t::XBoardInterface_t(Eingabe_t* u, Optionen_t* o, XBoardAusgabe_t* a, std::string datei)
    : optionen(o), ausgabe(a), einstellungsdatei(std::move(datei)), queue(u, a) {}

XBoardInterface_t::~XBoardInterface_t() {
    std::lock_guard<std::mutex> halten(sperre);
    if (ausgabe != nullptr && ausgabe->xboard == this) ausgabe->xboard = nullptr;
}

void XBoardInterface_t::befehl(const char* zeile) {
    if (zeile == nullptr) return;
    const char* anfang = UeberspringeLeer(zeile);
    size_t n = 0;
    while (anfang[n] != '\0' && !IstLeer(anfang[n])) ++n;
    if (n == 0) return;
    char wort[WortLaenge + 1] = {};
    std::memcpy(wort, anfang, std::min(n, WortLaenge));
    {
        // The game changes only under the lock; the lines it makes are delivered after it,
        // since delivering may wait for a search that needs the lock to end.
        std::lock_guard<std::mutex> halten(sperre);
        if (beendet) return;
        const Befehl_t* b = Befehle;
        while (b->wort != nullptr && (n > WortLaenge || std::strcmp(b->wort, wort) != 0)) ++b;
        if (b->wort != nullptr) {
            (this->*(b->ausfuehren))(anfang, anfang + n);
        } else {
            queue.Meldung("unknown command", zeile);
        }
    }
    queue.Zustellen();
}

// ---------------------------------------------------------------- searches

void XBoardInterface_t::LeiseStoppen() {
    if (suche == Suchart_t::Keine) return;
    queue.Uci("setoption name NoOutput value true");
    queue.Uci("stop");
    queue.Uci("setoption name NoOutput value false");
    suche = Suchart_t::Keine;
}

void XBoardInterface_t::Anhalten() {
    LeiseStoppen();
    ponderZug = 0;
    erwarteteAntwort.clear();
    if (ausgabe != nullptr) ausgabe->NeueSuche(0, "");
    for (std::string& ping : gehaltenePings) queue.Gui(std::move(ping));
    gehaltenePings.clear();
}

void XBoardInterface_t::StarteZugsuche() {
    engineSeite = partie.Stellung().amZug;
    if (const char* ergebnis = partie.Ergebnis()) {
        // Nothing to think about: the GUI hears the result again instead.
        queue.Gui(ergebnis);
        return;
    }
    if (ausgabe != nullptr) ausgabe->NeueSuche(partie.LegaleZuege(), "");
    suchstart = Millisekunden();
    queue.Uci(partie.PositionsZeile());
    queue.Uci(zeit.GoZeile(GespielteZuege(false), false));
    suche = Suchart_t::Zug;
}

void XBoardInterface_t::StartePonder(Zug_t ponder) {
    ponderZug = ponder;
    const std::string text = partie.Text(ponder);
    if (ausgabe != nullptr) ausgabe->NeueSuche(partie.LegaleZuegeNach(ponder), text.c_str());
    queue.Uci(partie.PositionsZeile(ponder));
    queue.Uci(zeit.GoZeile(GespielteZuege(true), true));
    suche = Suchart_t::Ponder;
}

void XBoardInterface_t::StarteAnalyse() {
    if (ausgabe != nullptr) {
        ausgabe->analyse = 1;
        ausgabe->NeueSuche(partie.LegaleZuege(), "");
    }
    queue.Uci(partie.PositionsZeile());
    queue.Uci("go infinite");
    suche = Suchart_t::Analyse;
}

// ---------------------------------------------------------------- after the search (search thread)

bool XBoardInterface_t::ErwartetZug(const Stellung_t& st, Zug_t zug) {
    // A search stopped or overtaken by the GUI, or one that found no move, is not answered.
    return suche == Suchart_t::Zug && Art(zug) != Nullzug && GleicheStellung(st, partie.Stellung()) &&
           partie.IstLegal(zug);
}

void XBoardInterface_t::Remisangebot() {
    const XBoardSuchstand_t stand = ausgabe->Stand();
    if (remis.Angebot(partie.Stellung().amZug, stand.zuegeGesamt, stand.letzterWert, partie.Halbzuege()))
        ausgabe->zeile("offer draw");
}

void XBoardInterface_t::ZugGespielt(Zug_t zug, Zug_t ponder) {
    suche = Suchart_t::Keine;
    zeit.NachZug(GespielteZuege(false), Millisekunden() - suchstart);
    partie.Mache(zug);

    const char* ergebnis = partie.Ergebnis();
    bool aufgegeben = false;
    if (ergebnis != nullptr) {
        ausgabe->zeile(ergebnis);
    } else {
        int32_t resign = 0;
        {
            std::lock_guard<std::mutex> halten(ausgabe->Optionssperre());
            resign = optionen != nullptr ? optionen->Resign() : 450000;
        }
        aufgegeben = remis.Aufgeben(resign);
        if (aufgegeben) ausgabe->zeile("resign");
    }
    for (const std::string& ping : gehaltenePings) ausgabe->zeile(ping);
    gehaltenePings.clear();

    ponderZug = 0;
    erwarteteAntwort.clear();
    if (ergebnis != nullptr || aufgegeben || Art(ponder) == Nullzug || !partie.IstLegal(ponder)) return;
    erwarteteAntwort = partie.Text(ponder);
    if (!ponderErlaubt || zeit.tiefe > 0 || zeit.zugzeit >= 0) return;
    StartePonder(ponder);
    // This thread still holds the search that just ended; another one starts the next.
    queue.ZustellenLassen();
}

// ---------------------------------------------------------------- commands

void XBoardInterface_t::Xboard(const char*, const char*) { queue.Gui(""); }

void XBoardInterface_t::Protover(const char*, const char* rest) {
    long version = 0;
    const std::string argument = Beschnitten(rest);
    if (!LeseGanz(rest, version) || version < 2) {
        queue.Meldung("protocol version 2 required", argument);
        queue.Uci("quit");
        beendet = true;
        return;
    }
    protokollVersion = version;
    for (const char* merkmal : Merkmale) queue.Gui(merkmal);
    LiesEinstellungen();
    queue.Gui("feature done=1");
    partie.Beginne(nullptr);
}

void XBoardInterface_t::LiesEinstellungen() {
    std::ifstream datei(einstellungsdatei);
    if (!datei) {
        queue.Meldung("file 'Kelvaran.ini' not found", "protover");
        return;
    }
    for (std::string zeile; std::getline(datei, zeile);) {
        while (!zeile.empty() && IstLeer(zeile.back())) zeile.pop_back();
        if (zeile.rfind("setoption ", 0) == 0) queue.Uci(zeile);
    }
}

void XBoardInterface_t::Ignorieren(const char*, const char*) {}

void XBoardInterface_t::Neu(const char*, const char*) {
    Anhalten();
    queue.Uci("position startpos");
    queue.Uci("setoption name UCI_Chess960 value false");
    queue.Uci("setoption name Clear Hash value true");
    queue.Uci("ucinewgame");
    partie.Beginne(nullptr);
    force = false;
    engineSeite = Schwarz;
    zeit.tiefe = 0;
    zeit.eigeneUhrMs = zeit.gegnerUhrMs = zeit.perioden[0].basisMs;
    remis.Zuruecksetzen();
    if (analyseModus) StarteAnalyse();
}

void XBoardInterface_t::Variante(const char*, const char* rest) {
    const bool chess960 = Beschnitten(rest) == "fischerandom";
    queue.Uci(std::string("setoption name UCI_Chess960 value ") + (chess960 ? "true" : "false"));
}

void XBoardInterface_t::Beenden(const char*, const char*) {
    // Silence first: the search that "quit" stops must not print its move.
    queue.Uci("setoption name NoOutput value true");
    queue.Uci("quit");
    suche = Suchart_t::Keine;
    beendet = true;
}

void XBoardInterface_t::Force(const char*, const char*) {
    force = true;
    Anhalten();
}

void XBoardInterface_t::Go(const char*, const char*) {
    force = false;
    // A ponder search or analysis on the same game gives way to thinking on the move.
    LeiseStoppen();
    StarteZugsuche();
}

void XBoardInterface_t::Playother(const char*, const char*) {
    force = false;
    engineSeite = partie.Stellung().amZug ^ 1;
}

void XBoardInterface_t::Level(const char* zeile, const char* rest) {
    if (!zeit.LeseLevel(rest)) queue.Meldung("bad parameters", zeile);
}

void XBoardInterface_t::St(const char* zeile, const char* rest) {
    double sekunden = 0;
    if (!LeseReal(rest, sekunden) || sekunden < 0) {
        queue.Meldung("bad parameters", zeile);
        return;
    }
    zeit.zugzeit = static_cast<int64_t>(sekunden * 1000.0);
    zeit.tiefe = 0;
}

void XBoardInterface_t::Sd(const char* zeile, const char* rest) {
    long tiefe = 0;
    if (!LeseGanz(rest, tiefe) || tiefe < 0) {
        queue.Meldung("bad parameters", zeile);
        return;
    }
    zeit.tiefe = tiefe;
}

void XBoardInterface_t::Uhr(const char* zeile, const char* rest) {
    double zentisekunden = 0;
    if (!LeseReal(rest, zentisekunden)) {
        queue.Meldung("bad parameters", zeile);
        return;
    }
    zeit.eigeneUhrMs = static_cast<int64_t>(zentisekunden * 10.0);
}

void XBoardInterface_t::Gegneruhr(const char* zeile, const char* rest) {
    double zentisekunden = 0;
    if (!LeseReal(rest, zentisekunden)) {
        queue.Meldung("bad parameters", zeile);
        return;
    }
    zeit.gegnerUhrMs = static_cast<int64_t>(zentisekunden * 10.0);
}

void XBoardInterface_t::Usermove(const char*, const char* rest) {
    const char* p = UeberspringeLeer(rest);
    size_t n = 0;
    while (p[n] != '\0' && !IstLeer(p[n])) ++n;
    const std::string text(p, std::min(n, XBoardPartie_t::ZugBreite));
    const Zug_t zug = partie.Finde(text.c_str());
    if (zug == 0) {
        queue.Gui("Illegal move: " + text);
        return;
    }
    // The GUI moving while the engine thinks on its own move: that search is void.
    if (suche == Suchart_t::Zug) LeiseStoppen();
    const bool ponderTreffer = suche == Suchart_t::Ponder && zug == ponderZug;
    partie.Mache(zug);

    if (const char* ergebnis = partie.Ergebnis()) {
        Anhalten();
        if (!force && !analyseModus) queue.Gui(ergebnis);
        return;
    }
    if (analyseModus) {
        LeiseStoppen();
        StarteAnalyse();
        return;
    }
    if (force) return;
    if (ponderTreffer) {
        // The search already runs on this very position: it only has to stop pondering.
        queue.Uci("ponderhit");
        suche = Suchart_t::Zug;
        engineSeite = partie.Stellung().amZug;
        suchstart = Millisekunden();
        ponderZug = 0;
        return;
    }
    LeiseStoppen();
    ponderZug = 0;
    StarteZugsuche();
}

void XBoardInterface_t::ZiehSofort(const char*, const char*) {
    if (suche == Suchart_t::Ponder) return;
    queue.Uci("stop");
}

void XBoardInterface_t::Ping(const char* zeile, const char*) {
    std::string antwort(zeile, std::min(std::strlen(zeile), PingLaenge));
    if (antwort.size() >= 2) antwort[1] = 'o';
    if (suche == Suchart_t::Ponder) {
        gehaltenePings.push_back(antwort);
    } else {
        queue.Gui(antwort);
    }
}

void XBoardInterface_t::Remis(const char*, const char*) { remis.gegnerBietet = true; }

void XBoardInterface_t::Ergebnis(const char*, const char*) {
    force = true;
    Anhalten();
}

void XBoardInterface_t::Setboard(const char*, const char* rest) {
    const std::string fen = Beschnitten(rest);
    if (!partie.Beginne(fen.c_str())) {
        queue.Gui("Illegal position");
        return;
    }
    Anhalten();
    remis.Zuruecksetzen();
    if (analyseModus) StarteAnalyse();
}

void XBoardInterface_t::Hinweis(const char*, const char*) {
    if (!erwarteteAntwort.empty()) queue.Gui("Hint: " + erwarteteAntwort);
}

void XBoardInterface_t::Buch(const char*, const char*) { queue.Gui(""); }

void XBoardInterface_t::Undo(const char*, const char*) {
    Anhalten();
    partie.NimmZurueck(1);
    if (analyseModus) StarteAnalyse();
}

void XBoardInterface_t::Remove(const char*, const char*) {
    Anhalten();
    partie.NimmZurueck(2);
    if (analyseModus) StarteAnalyse();
}

void XBoardInterface_t::Hard(const char*, const char*) { ponderErlaubt = true; }

void XBoardInterface_t::Easy(const char*, const char*) {
    ponderErlaubt = false;
    if (suche == Suchart_t::Ponder) Anhalten();
}

void XBoardInterface_t::Post(const char*, const char*) {
    if (ausgabe != nullptr) ausgabe->post = 1;
}

void XBoardInterface_t::Nopost(const char*, const char*) {
    if (ausgabe != nullptr) ausgabe->post = 0;
}

void XBoardInterface_t::Analyze(const char*, const char*) {
    LeiseStoppen();
    analyseModus = true;
    StarteAnalyse();
}

void XBoardInterface_t::Name(const char*, const char* rest) {
    // There is no option "Opponent" ("UCI_Opponent" is one): the line changes nothing,
    // as it never has.
    queue.Uci("setoption name Opponent value " + Beschnitten(rest));
}

void XBoardInterface_t::Exit(const char*, const char*) {
    if (!analyseModus) return;
    LeiseStoppen();
    analyseModus = false;
    if (ausgabe != nullptr) ausgabe->analyse = 0;
    queue.Uci("setoption name Clear Hash value true");
}

void XBoardInterface_t::Status(const char*, const char*) {
    if (ausgabe == nullptr) return;
    const XBoardSuchstand_t stand = ausgabe->Stand();
    const double zentisekunden = static_cast<double>((Millisekunden() - stand.suchstart) / 10);
    const int links = stand.zuegeGesamt > stand.zugNummer ? stand.zuegeGesamt - stand.zugNummer : 0;
    char puffer[128];
    std::snprintf(puffer, sizeof puffer, "stat01:%13.0f %16.0f %6d %3d %3d %s", zentisekunden,
                  static_cast<double>(stand.knoten), stand.tiefe, links, stand.zuegeGesamt, stand.zugText);
    std::string zeile = puffer;
    QuetscheLeerzeichen(zeile);
    while (!zeile.empty() && zeile.back() == ' ') zeile.pop_back();
    queue.Gui(zeile);
}

void XBoardInterface_t::Speicher(const char* zeile, const char* rest) {
    long mb = 0;
    if (!LeseGanz(rest, mb)) {
        queue.Meldung("bad parameters", zeile);
        return;
    }
    char puffer[64];
    std::snprintf(puffer, sizeof puffer, "setoption name Hash value %ld", mb);
    queue.Uci(puffer);
}

void XBoardInterface_t::Kerne(const char* zeile, const char* rest) {
    long kerne = 0;
    if (!LeseGanz(rest, kerne) || kerne < -2147483647L || kerne > 2147483647L) {
        queue.Meldung("bad parameters", zeile);
        return;
    }
    char puffer[64];
    std::snprintf(puffer, sizeof puffer, "setoption name NumberOfProcessors value %d", static_cast<int>(kerne));
    queue.Uci(puffer);
}
