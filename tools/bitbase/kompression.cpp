// Compression figures of the bitbase block format: file size against the raw
// bit count, and the speed of compressor and decoder.
//
//   kompression SIGNATUR...   synthetic bitbases of those signatures (a one-ply
//                             rule with illegal positions as don't-care bits)
//   kompression DATEI.kbb...  existing files: decoded, then compressed again
//                             (without a mask, as the files carry none)
#include <chrono>
#include <cstdio>
#include <cstring>
#include <string>
#include <vector>

#include "bitbase/blockformat.h"
#include "bitbase/index.h"
#include "bitbase/kompressor.h"
#include "bitbase/schreiber.h"
#include "board/tabellen.h"

namespace {

double Sekunden(std::chrono::steady_clock::time_point seit) {
    return std::chrono::duration<double>(std::chrono::steady_clock::now() - seit).count();
}

const int Wert[7] = {0, 1, 3, 3, 5, 9, 0};

// White wins unless Black to move takes an undefended man or White lacks material.
void Synthetisch(const char* name, std::vector<uint8_t>& bits, std::vector<uint8_t>& egal) {
    Bitbase_t bb;
    bb.SetzeSignatur(name);
    const uint64_t n = bb.positionen;
    bits.assign((n + 7) / 8, 0);
    egal.assign((n + 7) / 8, 0);
    for (uint64_t i = 0; i < n; ++i) {
        bool illegal = !bb.AusIndex(i);
        Bitboard belegt = 0, weiss = 0, schwarz = 0;
        int material = 0;
        for (int m = 0; m < bb.anzahlSteine && !illegal; ++m) {
            const Bitboard b = Bit(static_cast<Feld>(bb.feld[m]));
            illegal |= (belegt & b) != 0;
            const int typ = static_cast<int>(std::strchr(Steinbuchstaben, bb.Signaturname[m]) - Steinbuchstaben);
            illegal |= typ == 1 && (bb.feld[m] < 8 || bb.feld[m] >= 56);
            belegt |= b;
            (m < bb.anzahlWeiss ? weiss : schwarz) |= b;
            material += m < bb.anzahlWeiss ? Wert[typ] : -Wert[typ];
        }
        if (!illegal) {
            const Feld wk = static_cast<Feld>(bb.feld[0]), sk = static_cast<Feld>(bb.feld[bb.anzahlWeiss]);
            illegal = (KoenigFelder[wk] & Bit(sk)) != 0;
            // Attacks of the men other than the kings, roughly (pawns as kings).
            Bitboard angriffW = KoenigFelder[wk], angriffS = KoenigFelder[sk];
            for (int m = 1; m < bb.anzahlSteine; ++m) {
                if (m == bb.anzahlWeiss) continue;
                const Feld f = static_cast<Feld>(bb.feld[m]);
                Bitboard a = 0;
                switch (bb.Signaturname[m]) {
                case 'D': a = DameAngriffe(f, belegt); break;
                case 'T': a = TurmAngriffe(f, belegt); break;
                case 'L': a = LaeuferAngriffe(f, belegt); break;
                case 'S': a = SpringerFelder[f]; break;
                default: a = KoenigFelder[f]; break;
                }
                (m < bb.anzahlWeiss ? angriffW : angriffS) |= a;
            }
            // The side not to move must not be in check.
            illegal |= bb.amZug == 0 ? (angriffW & Bit(sk)) != 0 : (angriffS & Bit(wk)) != 0;
            if (!illegal) {
                const bool schlagbar = bb.amZug == 1 && (KoenigFelder[sk] & weiss & ~angriffW & ~Bit(wk)) != 0;
                if (material >= 3 && !schlagbar) bits[i >> 3] |= static_cast<uint8_t>(1u << (i & 7));
            }
        }
        if (illegal) egal[i >> 3] |= static_cast<uint8_t>(1u << (i & 7));
    }
}

void Messen(const std::string& titel, const std::vector<uint8_t>& bits, const uint8_t* egal, uint64_t positionen) {
    const std::string datei = "/tmp/kelvaran_kompression.kbb";
    uint64_t groesse = 0;
    auto t0 = std::chrono::steady_clock::now();
    if (!SchreibeBitbase(datei, bits.data(), egal, positionen, &groesse)) {
        std::printf("%s: Schreiben fehlgeschlagen\n", titel.c_str());
        return;
    }
    const double packen = Sekunden(t0);
    std::vector<uint8_t> zurueck;
    t0 = std::chrono::steady_clock::now();
    const bool ok = LeseBitbase(datei, positionen, zurueck);
    const double lesen = Sekunden(t0);
    bool gleich = ok;
    for (size_t i = 0; ok && i < bits.size(); ++i) {
        const uint8_t zaehlt = egal != nullptr ? static_cast<uint8_t>(~egal[i]) : 0xFF;
        gleich &= ((bits[i] ^ zurueck[i]) & zaehlt) == 0;
    }
    const double mb = static_cast<double>(bits.size()) / 1e6;
    std::printf("%-24s %10llu Bytes roh, %9llu Bytes Datei (%5.2f %%), packen %7.1f MB/s, lesen %7.1f MB/s%s\n",
                titel.c_str(), static_cast<unsigned long long>(bits.size()), static_cast<unsigned long long>(groesse),
                100.0 * static_cast<double>(groesse) / static_cast<double>(bits.size()), mb / packen, mb / lesen,
                gleich ? "" : "  FEHLER");
    std::remove(datei.c_str());
}

// Decoder alone: every stored block of the file decoded `runden` times.
void Dekodierer(const std::string& datei, uint64_t positionen) {
    std::vector<uint8_t> inhalt;
    if (FILE* f = std::fopen(datei.c_str(), "rb")) {
        uint8_t puffer[1 << 16];
        size_t n;
        while ((n = std::fread(puffer, 1, sizeof puffer, f)) > 0) inhalt.insert(inhalt.end(), puffer, puffer + n);
        std::fclose(f);
    }
    const uint64_t bloecke = (positionen + BlockPositionen - 1) / BlockPositionen;
    uint8_t aus[BlockBytes];
    uint64_t anzahl = 0;
    const auto t0 = std::chrono::steady_clock::now();
    for (int runde = 0; runde < 20; ++runde) {
        for (uint64_t k = 0; k < bloecke && (k + 1) * 5 <= inhalt.size(); ++k) {
            const uint8_t* e = &inhalt[k * 5];
            if (IstFuellEintrag(e) || e[4] == 0) continue;
            const uint64_t o = EintragOffset(e);
            const size_t l = static_cast<size_t>(LeseLaenge(e[4]));
            if (o + l <= inhalt.size() && BlockEntpacken(&inhalt[o], l, aus)) ++anzahl;
        }
    }
    const double s = Sekunden(t0);
    if (anzahl > 0) std::printf("%-24s Dekodierer %7.1f MB/s (%llu komprimierte Bloecke)\n", datei.c_str(),
                                static_cast<double>(anzahl) * BlockBytes / 1e6 / s,
                                static_cast<unsigned long long>(anzahl / 20));
}

}  // namespace

int main(int argc, char** argv) {
    InitTabellen();
    for (int i = 1; i < argc; ++i) {
        std::string arg = argv[i];
        std::vector<uint8_t> bits, egal;
        if (arg.size() > 4 && arg.substr(arg.size() - 4) == ".kbb") {
            std::string name = arg.substr(0, arg.size() - 4);
            if (const size_t s = name.rfind('/'); s != std::string::npos) name = name.substr(s + 1);
            const uint64_t n = AnzahlPositionen(name.c_str());
            if (n == 0 || !LeseBitbase(arg, n, bits)) {
                std::printf("%s: nicht lesbar\n", arg.c_str());
                continue;
            }
            FILE* f = std::fopen(arg.c_str(), "rb");
            std::fseek(f, 0, SEEK_END);
            std::printf("%-24s %10llu Bytes roh, %9ld Bytes Datei (%5.2f %%)\n", arg.c_str(),
                        static_cast<unsigned long long>(bits.size()), std::ftell(f),
                        100.0 * static_cast<double>(std::ftell(f)) / static_cast<double>(bits.size()));
            std::fclose(f);
            Dekodierer(arg, n);
            Messen(name + " neu gepackt", bits, nullptr, n);
        } else {
            const uint64_t n = AnzahlPositionen(arg.c_str());
            if (n == 0) continue;
            Synthetisch(arg.c_str(), bits, egal);
            Messen(arg + " mit Maske", bits, egal.data(), n);
            Messen(arg + " ohne Maske", bits, nullptr, n);
            SchreibeBitbase("/tmp/kelvaran_dekoder.kbb", bits.data(), egal.data(), n);
            Dekodierer("/tmp/kelvaran_dekoder.kbb", n);
            std::remove("/tmp/kelvaran_dekoder.kbb");
        }
    }
    return 0;
}
