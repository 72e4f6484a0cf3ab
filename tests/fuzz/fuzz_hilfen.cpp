#include "fuzz_hilfen.h"

#include <unistd.h>

#include <algorithm>
#include <cctype>
#include <cstdlib>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <mutex>

#include "protocol/uci.h"

namespace fuzz {

namespace {

namespace fs = std::filesystem;

constexpr size_t Zeilenpuffer = 40000;  // the program entry's line buffer
constexpr int64_t MaxTabelleMb = 4;       // Hash, BitbaseCache
constexpr int64_t MaxPerft = 2;           // perft depth and its table size
constexpr int64_t MaxBuchKnoten = 200;    // "book makepos ... nodes"
constexpr int64_t MaxLernDurchgaenge = 2;
constexpr int64_t MaxInnenKnoten = 8;

void Entfernen() {
    std::error_code f;
    fs::remove_all(Verzeichnis(), f);
}

bool IstLeer(char c) { return std::isspace(static_cast<unsigned char>(c)) != 0; }

// Every number right after an occurrence of `wort` (white space and a sign
// allowed before its digits) becomes at most `grenze`.
void KappeZahlNach(std::string& s, const std::string& wort, int64_t grenze) {
    for (size_t p = s.find(wort); p != std::string::npos; p = s.find(wort, p + 1)) {
        size_t i = p + wort.size();
        while (i < s.size() && IstLeer(s[i])) ++i;
        if (i < s.size() && (s[i] == '-' || s[i] == '+')) ++i;
        size_t ende = i;
        int64_t wert = 0;
        while (ende < s.size() && std::isdigit(static_cast<unsigned char>(s[ende]))) {
            wert = std::min<int64_t>(wert * 10 + (s[ende] - '0'), grenze + 1);
            ++ende;
        }
        if (ende > i && wert > grenze) s.replace(i, ende - i, std::to_string(grenze));
    }
}

// Every run of digits becomes at most `grenze`.
void KappeZahlen(std::string& s, int64_t grenze) {
    std::string neu;
    for (size_t i = 0; i < s.size();) {
        if (!std::isdigit(static_cast<unsigned char>(s[i]))) {
            neu += s[i++];
            continue;
        }
        const size_t anfang = i;
        int64_t wert = 0;
        for (; i < s.size() && std::isdigit(static_cast<unsigned char>(s[i])); ++i)
            wert = std::min<int64_t>(wert * 10 + (s[i] - '0'), grenze + 1);
        neu += wert > grenze ? std::to_string(grenze) : s.substr(anfang, i - anfang);
    }
    s = neu;
}

// Directories out of file names: every file stays in the working directory.
void OhnePfade(std::string& s) {
    std::replace(s.begin(), s.end(), '/', '_');
    std::replace(s.begin(), s.end(), '\\', '_');
}

// Each occurrence of `wort` loses its first letter, so substring searches miss it.
void Verstecke(std::string& s, const char* wort) {
    for (size_t p = s.find(wort); p != std::string::npos; p = s.find(wort, p + 1)) s[p] = 'X';
}

}  // namespace

const std::string& Verzeichnis() {
    // Never destroyed: the exit handler that removes the directory still needs the name.
    static const std::string* const pfad = [] {
        const fs::path p = fs::temp_directory_path() / ("kelvaran_fuzz_" + std::to_string(::getpid()));
        std::error_code f;
        fs::create_directories(p, f);
        auto* name = new std::string(p.string());
        std::atexit(Entfernen);
        return name;
    }();
    return *pfad;
}

void Leeren() {
    std::error_code f;
    for (const auto& eintrag : fs::directory_iterator(Verzeichnis(), f)) fs::remove_all(eintrag.path(), f);
}

std::string Datei(const std::string& name, const uint8_t* daten, size_t groesse) {
    const std::string pfad = Verzeichnis() + "/" + name;
    std::ofstream aus(pfad, std::ios::binary | std::ios::trunc);
    aus.write(reinterpret_cast<const char*>(daten), static_cast<std::streamsize>(groesse));
    return pfad;
}

ImVerzeichnis_t::ImVerzeichnis_t() {
    Leeren();
    std::error_code f;
    vorher = fs::current_path(f).string();
    fs::current_path(Verzeichnis(), f);
}

ImVerzeichnis_t::~ImVerzeichnis_t() {
    std::error_code f;
    fs::current_path(vorher, f);
}

std::vector<std::string> Zeilen(const uint8_t* daten, size_t groesse) {
    std::vector<std::string> zeilen;
    const char* text = reinterpret_cast<const char*>(daten);
    size_t anfang = 0;
    while (anfang < groesse) {
        size_t ende = anfang;
        while (ende < groesse && text[ende] != '\n' && ende - anfang < Zeilenpuffer - 1) ++ende;
        std::string zeile(text + anfang, ende - anfang);
        // A C string ends at its first NUL, as the line buffer does.
        zeile.resize(std::strlen(zeile.c_str()));
        while (!zeile.empty() && IstLeer(zeile.back())) zeile.pop_back();
        if (ErstesWort(zeile.c_str()).text[0] != '\0') zeilen.push_back(zeile);
        anfang = ende < groesse && text[ende] == '\n' ? ende + 1 : ende;
    }
    return zeilen;
}

std::string ZaehmeUciZeile(const std::string& zeile) {
    const std::string wort = ErstesWort(zeile.c_str()).text;
    std::string s = zeile;
    if (wort == "go") {
        // Depth comes before every other limit; only "infinite" outranks it, and
        // "ponder" and "mate" would run on, so they are hidden.
        const size_t rest = zeile.find("go") + 2;
        s = zeile.substr(rest);
        Verstecke(s, "infinite");
        Verstecke(s, "ponder");
        Verstecke(s, "mate");
        const bool flach = zeile.find("depth 1") != std::string::npos;
        return std::string(flach ? "go depth 1 " : "go depth 2 ") + s;
    }
    if (wort == "perft") {
        KappeZahlen(s, MaxPerft);
    } else if (wort == "setoption") {
        OhnePfade(s);
        KappeZahlen(s, s.find("NumberOfProcessors") != std::string::npos ? 1 : MaxTabelleMb);
    } else if (wort == "book") {
        OhnePfade(s);
        KappeZahlNach(s, " nodes", MaxBuchKnoten);
        KappeZahlNach(s, " hash", 1);
        if (s.find(" makepos") != std::string::npos) s += " nodes 200";
    } else if (wort == "time") {
        OhnePfade(s);
        KappeZahlNach(s, " init", MaxInnenKnoten);
        KappeZahlNach(s, " learn", MaxLernDurchgaenge);
    }
    return s;
}

}  // namespace fuzz
