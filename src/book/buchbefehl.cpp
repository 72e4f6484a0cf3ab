#include "book/buchbefehl.h"

#include <algorithm>
#include <chrono>
#include <cstdio>
#include <initializer_list>
#include <string>

#include "book/buchaufbau.h"
#include "book/buchdatei.h"
#include "book/buchrechnung.h"
#include "book/buchzug.h"

namespace {

constexpr size_t MaxDateiname = 1024;

bool IstZeilenende(char c) { return c == ' ' || c == '\r' || c == '\n' || c == '\0'; }

// A keyword that must stand alone: followed by a blank, a line end or nothing.
bool HatWort(const std::string& text, const char* wort) {
    const size_t n = std::char_traits<char>::length(wort);
    for (size_t p = text.find(wort); p != std::string::npos; p = text.find(wort, p + 1))
        if (IstZeilenende(p + n < text.size() ? text[p + n] : '\0')) return true;
    return false;
}

// From `anfang` to the first of the option keywords (or the end), without the
// blanks around it, at most 1024 characters.
std::string Dateiargument(const std::string& text, size_t anfang, std::initializer_list<const char*> optionen) {
    size_t ende = text.size();
    for (const char* o : optionen) ende = std::min(ende, text.find(o, anfang));
    std::string name = text.substr(anfang, std::min(ende - anfang, MaxDateiname));
    const size_t a = name.find_first_not_of(" \t\r\n");
    if (a == std::string::npos) return "";
    return name.substr(a, name.find_last_not_of(" \t\r\n") - a + 1);
}

// " value %u" and its kin, read from the keyword on.
template <typename T>
T Zahl(const std::string& text, size_t anfang, const char* wort, const char* format, T vorgabe) {
    const size_t p = text.find(wort, anfang);
    T wert = vorgabe;
    if (p != std::string::npos && std::sscanf(text.c_str() + p, format, &wert) != 1) wert = vorgabe;
    return wert;
}

double Sekunden(std::chrono::steady_clock::time_point start) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - start).count();
}

std::string Format(const char* format, auto... werte) {
    char puffer[1400];
    std::snprintf(puffer, sizeof puffer, format, werte...);
    return puffer;
}

void Schreiben(std::unique_ptr<Buch_t>& buch, const std::string& text, size_t p, const Meldung_t& bericht) {
    if (!buch) return;
    const std::string danach = text.substr(p + 6);
    if (danach.rfind("mem ", 0) == 0) {
        // The whole book as it stands; it stays in memory.
        const std::string datei = Dateiargument(text, p + 10, {});
        if (datei.empty()) return;
        const auto s = Buchdatei::Schreiben(datei, buch->Sortiert(),
                                            static_cast<uint16_t>(buch->gesperrt ? Buchdatei::FlagGesperrt : 0));
        if (bericht) bericht(Format("info string writemem %s: %zu moves, %s", datei.c_str(), buch->Anzahl(),
                                    Buchdatei::StatusText(s)));
        return;
    }
    const bool epd = danach.rfind("EPD ", 0) == 0;
    const bool schach960 = danach.rfind("960 ", 0) == 0;
    if (!epd && !schach960 && danach.rfind(' ', 0) != 0) return;
    const size_t anfang = p + 6 + (epd || schach960 ? 3 : 0);
    const std::string datei = Dateiargument(text, anfang, {" threshold ", " width "});
    if (datei.empty()) return;
    const int schwelle = Zahl(text, anfang, " threshold ", " threshold %d", 3000);
    const int breite = Zahl(text, anfang, " width ", " width %d", 25);

    if (!schach960) {
        // Per position the moves a game should be played from, heaviest first.
        const std::vector<Buchzug_t> alle = buch->Sortiert();
        std::vector<Buchzug_t> auswahl, stellung;
        for (size_t i = 0; i < alle.size();) {
            size_t j = i;
            while (j < alle.size() && alle[j].schluessel == alle[i].schluessel) ++j;
            stellung.assign(alle.begin() + static_cast<long>(i), alle.begin() + static_cast<long>(j));
            for (const Buchzug_t& z : Auswahl(stellung, schwelle * 0.001, breite)) auswahl.push_back(z);
            i = j;
        }
        std::sort(auswahl.begin(), auswahl.end(), VorImBuch);
        const uint16_t flags = Buchdatei::FlagAuswahl | (buch->gesperrt ? Buchdatei::FlagGesperrt : 0);
        const auto s = Buchdatei::Schreiben(datei, auswahl, flags);
        if (bericht)
            bericht(Format("info string write %s: %zu of %zu moves (threshold %.3f%%, width %d), %s", datei.c_str(),
                           auswahl.size(), alle.size(), schwelle * 0.001, breite, Buchdatei::StatusText(s)));
    }
    buch.reset();
}

// "probe <book file> <FEN>": what a book holds for a position, either kind of book.
void Nachschlagen(const std::string& text, const Meldung_t& zeile) {
    const size_t blank = text.find(' ');
    const std::string datei = text.substr(0, blank);
    Stellung_t st;
    Stellungsdaten_t daten;
    if (blank == std::string::npos || !SetzeStellung(st, daten, text.c_str() + blank + 1)) {
        zeile("info string probe: book file and FEN expected");
        return;
    }
    std::vector<Buchkandidat_t> kandidaten;
    if (!BuchKandidaten(datei, st, daten, kandidaten)) {
        zeile("info string probe " + datei + ": cannot read the book");
        return;
    }
    long double summe = 0;
    for (const Buchkandidat_t& k : kandidaten) summe += static_cast<long double>(k.gewicht);
    std::stable_sort(kandidaten.begin(), kandidaten.end(),
                     [](const Buchkandidat_t& a, const Buchkandidat_t& b) { return a.gewicht > b.gewicht; });
    for (const Buchkandidat_t& k : kandidaten) {
        char zug[8];
        ZugText(st, k.zug, zug);
        std::string z = Format("info string probe %s weight %llu (%.1f%%)", zug,
                               static_cast<unsigned long long>(k.gewicht),
                               static_cast<double>(100.0L * static_cast<long double>(k.gewicht) / summe));
        // Polyglot books keep no counts.
        if (k.partien > 0) z += Format(" games %u points %.1f", k.partien, k.punkte / 2.0);
        zeile(z);
    }
    if (kandidaten.empty()) zeile("info string probe: no book move");
}

}  // namespace

void BuchBefehl(std::unique_ptr<Buch_t>& buch, const char* rest, const Meldung_t& antwort, const Meldung_t& bericht) {
    const std::string text = rest != nullptr ? rest : "";
    const Meldung_t melden = [&antwort](const std::string& z) {
        if (antwort) antwort(z);
    };
    const auto start = std::chrono::steady_clock::now();
    size_t p;

    if (HatWort(text, " delete")) {
        buch.reset();
        if (bericht) bericht("info string delete: no book in memory");
    } else if (text.find(" lock") != std::string::npos) {
        if (buch) buch->gesperrt = true;
    } else if (text.find(" unlock") != std::string::npos) {
        if (buch) buch->gesperrt = false;
    } else if ((p = text.find(" add ")) != std::string::npos) {
        const std::string datei = Dateiargument(text, p + 5, {" value ", " CalcELO"});
        if (datei.empty()) return;
        const uint32_t wert = Zahl(text, p, " value ", " value %u", 1000u);
        const bool calcElo = HatWort(text.substr(p), " CalcELO");
        if (!buch) buch = std::make_unique<Buch_t>();
        if (buch->gesperrt) {
            if (bericht) bericht("info string add: the book is locked");
            return;
        }
        const Importstatistik_t s = PgnHinzufuegen(*buch, datei, wert, calcElo, melden);
        const double t = Sekunden(start);
        if (bericht)
            bericht(Format("info string add %s: %llu games, %llu moves, %llu games with errors, %.2f s, %.0f games/s, "
                           "book %zu moves",
                           datei.c_str(), static_cast<unsigned long long>(s.partien),
                           static_cast<unsigned long long>(s.zuege), static_cast<unsigned long long>(s.fehler), t,
                           t > 0 ? s.partien / t : 0.0, buch->Anzahl()));
    } else if ((p = text.find(" readmem ")) != std::string::npos) {
        const std::string datei = Dateiargument(text, p + 9, {});
        if (datei.empty()) return;
        if (!buch) buch = std::make_unique<Buch_t>();
        std::vector<Buchzug_t> saetze;
        uint16_t flags = 0;
        // Read whole and checked before anything is merged: a bad file leaves the book as it was.
        const auto s = Buchdatei::Lesen(datei, saetze, flags);
        if (s == Buchdatei::Status::Ok) {
            for (const Buchzug_t& z : saetze) buch->Hinzufuegen(z);
            if (flags & Buchdatei::FlagGesperrt) buch->gesperrt = true;
        }
        if (bericht)
            bericht(Format("info string readmem %s: %s, book %zu moves", datei.c_str(), Buchdatei::StatusText(s),
                           buch->Anzahl()));
    } else if ((p = text.find(" write")) != std::string::npos) {
        Schreiben(buch, text, p, bericht);
    } else if ((p = text.find(" entropy ")) != std::string::npos) {
        const std::string datei = Dateiargument(text, p + 9, {});
        if (datei.empty()) return;
        melden(Format("info book entropy %.2f", PgnEntropie(datei, melden)));
    } else if ((p = text.find(" positions ")) != std::string::npos) {
        const std::string datei = Dateiargument(text, p + 11, {" out "});
        const size_t o = text.find(" out ", p);
        if (datei.empty() || o == std::string::npos) return;
        const std::string ziel = Dateiargument(text, o + 5, {});
        if (ziel.empty()) return;
        const bool gut = StellungenSchreiben(datei, ziel, melden);
        if (bericht) bericht(Format("info string positions %s: %s", ziel.c_str(), gut ? "written" : "cannot write file"));
    } else if ((p = text.find(" makepos ")) != std::string::npos) {
        const std::string datei = Dateiargument(text, p + 9, {" out ", " nodes ", " hash "});
        const size_t o = text.find(" out ", p);
        if (datei.empty() || o == std::string::npos) return;
        const std::string ziel = Dateiargument(text, o + 5, {" nodes ", " hash "});
        if (ziel.empty()) return;
        const long long knoten = Zahl(text, p, " nodes ", " nodes %lld", 1000000LL);
        const int hash = std::clamp(Zahl(text, p, " hash ", " hash %d", 3), 1, 32000);
        Rechenstatistik_t s;
        const bool gut = StellungenBerechnen(datei, ziel, knoten, hash, Berechnungsdatei, s);
        if (bericht)
            bericht(Format("info string makepos %s: %llu positions, %llu searched, %.1f s%s", ziel.c_str(),
                           static_cast<unsigned long long>(s.stellungen), static_cast<unsigned long long>(s.gesucht),
                           Sekunden(start), gut ? "" : ", cannot read or write a file"));
    } else if ((p = text.find(" addpos ")) != std::string::npos) {
        const std::string datei = Dateiargument(text, p + 8, {" value "});
        if (datei.empty()) return;
        const uint32_t wert = Zahl(text, p, " value ", " value %u", 1000u);
        if (!buch) buch = std::make_unique<Buch_t>();
        const uint64_t n = StellungenHinzufuegen(*buch, datei, wert);
        if (bericht)
            bericht(Format("info string addpos %s: %llu moves added, book %zu moves", datei.c_str(),
                           static_cast<unsigned long long>(n), buch->Anzahl()));
    }
}

int BuchWerkzeug(int argc, char** argv, std::ostream& aus) {
    const Meldung_t zeile = [&aus](const std::string& z) { aus << z << std::endl; };
    if (argc < 3) {
        zeile("usage: kelvaran --book \"<book command>\" ...   e.g. --book \"add games.pgn\" \"write Kelvaran.opn\"");
        return 1;
    }
    std::unique_ptr<Buch_t> buch;
    for (int i = 2; i < argc; ++i) {
        const std::string befehl = argv[i];
        if (befehl.rfind("probe ", 0) == 0) Nachschlagen(befehl.substr(6), zeile);
        else BuchBefehl(buch, (" " + befehl).c_str(), zeile, zeile);
    }
    return 0;
}
