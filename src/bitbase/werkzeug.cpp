#include "bitbase/werkzeug.h"

#include <cctype>
#include <cstdlib>
#include <cstring>
#include <memory>

#include "bitbase/bitbasecache.h"
#include "bitbase/erzeugung.h"
#include "bitbase/index.h"
#include "protocol/optionen.h"

namespace {

constexpr int ParallelThreads = 8;
constexpr int ThreadsMax = 64;

// "Threads=" compared over its 8 characters; the number follows directly.
bool ThreadsArgument(const char* text, int& threads) {
    if (std::strncmp(text, "Threads=", 8) != 0) return false;
    const long n = std::strtol(text + 8, nullptr, 10);
    threads = n < 2 ? 1 : n > ThreadsMax ? ThreadsMax : static_cast<int>(n);
    return true;
}

// "dir/KDK" -> "dir" and "KDK"; without a directory the current one.
void Zerlege(const char* datei, std::string& verzeichnis, std::string& name) {
    const std::string text = datei;
    const size_t schnitt = text.rfind('/');
    verzeichnis = schnitt == std::string::npos ? "." : schnitt == 0 ? "/" : text.substr(0, schnitt);
    name = schnitt == std::string::npos ? text : text.substr(schnitt + 1);
}

int Ausfuehren(bool pruefen, const char* datei, int threads, std::ostream& aus) {
    std::string verzeichnis, name;
    Zerlege(datei, verzeichnis, name);
    const Meldung_t meldung = [&aus](const std::string& zeile) { aus << zeile << std::endl; };
    if (pruefen) PruefeBitbase(name, threads, verzeichnis, meldung);
    else ErzeugeBitbase(name, threads, verzeichnis, meldung);
    return 0;
}

const char* UeberspringeLeer(const char* p) {
    while (*p != '\0' && std::isspace(static_cast<unsigned char>(*p))) ++p;
    return p;
}

}  // namespace

int BitbaseWerkzeug(int argc, char** argv, std::ostream& aus) {
    if (argc < 3) return -1;
    const bool erzeugen = std::strcmp(argv[1], "--CreateBitbase") == 0;
    const bool pruefen = std::strcmp(argv[1], "--CheckBitbase") == 0;
    if (argc == 3 && (erzeugen || pruefen)) return Ausfuehren(pruefen, argv[2], 1, aus);
    if (argc == 3 && std::strcmp(argv[1], "--CreateBitbaseParallel") == 0)
        return Ausfuehren(false, argv[2], ParallelThreads, aus);
    int threads = 1;
    if (argc == 4 && (erzeugen || pruefen) && ThreadsArgument(argv[2], threads))
        return Ausfuehren(pruefen, argv[3], threads, aus);
    return -1;
}

void BitbaseSteineVon(const Stellung_t& st, BitbaseSteine_t& steine) {
    steine.anzahl = 0;
    for (unsigned seite = Weiss; seite <= Schwarz; ++seite) {
        const Seite_t& s = st.seite[seite];
        int* typen = seite == Weiss ? steine.weissTypen : steine.schwarzTypen;
        int* felder = seite == Weiss ? steine.weissFelder : steine.schwarzFelder;
        int n = 0;
        typen[n] = Koenig;
        felder[n++] = static_cast<int>(s.KoenigsFeld());
        for (unsigned typ = Dame; typ >= Bauer; --typ) {
            for (unsigned i = 0; i < s.anzahl[typ] && n < 16; ++i) {
                typen[n] = static_cast<int>(typ);
                felder[n++] = s.Liste(typ)[i];
            }
        }
        typen[n] = 0;
        felder[n] = 0;
        steine.anzahl += n;
    }
}

void BitbaseBefehl(const char* rest, const Optionen_t& optionen, const std::function<void(const std::string&)>& zeile,
                   const std::function<void(const char*, const char*)>& fehler) {
    const char* p = UeberspringeLeer(rest);
    const char* fen = std::strncmp(p, "probe", 5) == 0 ? std::strstr(p + 5, "fen") : nullptr;
    if (fen == nullptr) {
        fehler("'bitbase' without 'probe fen'", nullptr);
        return;
    }
    fen = UeberspringeLeer(fen + 3);
    auto st = std::make_unique<Stellung_t>();
    Stellungsdaten_t daten{};
    if (!SetzeStellung(*st, daten, fen)) {
        fehler("bitbase: Illegal FEN string: ", fen);
        return;
    }
    BitbaseSteine_t steine;
    BitbaseSteineVon(*st, steine);
    Bitbase_t b;
    if (st->rochaden != 0 ||
        !b.SetzeSteine(steine.weissTypen, steine.schwarzTypen, steine.weissFelder, steine.schwarzFelder,
                       static_cast<int>(st->amZug), st->ep)) {
        fehler("bitbase: no bitbase for this position: ", fen);
        return;
    }

    const int mb = optionen.Zahl(optionen.Index("BitbaseCache"));
    const char* pfad = optionen.Text(optionen.Index("BitbasePath"));
    BitbaseCache_t cache(static_cast<uint64_t>(mb < 0 ? 0 : mb) << 20);
    cache.SetzePfad(pfad[0] != '\0' ? pfad : ".");
    const uint64_t index = b.Index();
    const int bit = cache.HoleBit(b.Signaturname, index, false);
    int ergebnis = 0;
    const bool gefunden = cache.Abfrage(steine.weissTypen, steine.schwarzTypen, steine.weissFelder,
                                        steine.schwarzFelder, static_cast<int>(st->amZug), st->ep, false, ergebnis);
    zeile("info string bitbase " + std::string(b.Signaturname) + " index " + std::to_string(index) + " bit " +
          std::to_string(bit) + " result " + (gefunden ? std::to_string(ergebnis) : std::string("unknown")));
}
