#include "search/netz.h"

#include <algorithm>
#include <cstring>
#include <fstream>
#include <iterator>

#include "board/zugmachen.h"

#if defined(__x86_64__) && defined(__GNUC__)
#include <immintrin.h>
#define KELVARAN_NETZ_AVX2 1
#endif

// The network file built into the program, placed by the assembler.
extern "C" const unsigned char kelvaranNetzDaten[];
extern "C" const unsigned char kelvaranNetzEnde[];

namespace {

constexpr char NetzKennung[8] = {'K', 'e', 'l', 'v', 'N', 'e', 't', 'z'};
constexpr uint32_t NetzVersion = 1;

uint64_t Fnv1a(const uint8_t* p, size_t n) {
    uint64_t h = 0xcbf29ce484222325ULL;
    for (size_t i = 0; i < n; ++i) h = (h ^ p[i]) * 0x100000001b3ULL;
    return h;
}

int Mann(uint16_t m, unsigned sicht) { return NetzMerkmal(sicht, m >> 9, (m >> 6) & 7, m & 63); }

// The change's rows, for both sides: taken off, then put on.
struct Zeilen_t {
    const int16_t* weg[2][2];
    const int16_t* dazu[2][2];
};
Zeilen_t ZeilenVon(const Bewertungsnetz_t& netz, const NetzAenderung_t& a) {
    Zeilen_t z{};
    for (unsigned s = 0; s < 2; ++s) {
        for (int i = 0; i < a.weg; ++i) z.weg[s][i] = netz.gewichte[Mann(a.wegMann[i], s)];
        for (int i = 0; i < a.dazu; ++i) z.dazu[s][i] = netz.gewichte[Mann(a.dazuMann[i], s)];
    }
    return z;
}

int32_t Begrenzt(int64_t summe) {
    // The sum wraps in 32 bits as the vector lanes do; then scaled to internal units.
    const int64_t w = static_cast<int64_t>(static_cast<int32_t>(summe)) * NetzAusgabeSkala / (NetzQA * NetzQB);
    return static_cast<int32_t>(std::clamp<int64_t>(w, -NetzWertGrenze, NetzWertGrenze));
}

int32_t Gepackt(int32_t mg, int32_t eg) { return static_cast<int32_t>(static_cast<uint32_t>(mg) << 16) + eg; }

#ifdef KELVARAN_NETZ_AVX2
// One side's layer with W rows taken off and D put on, the counts known to the compiler.
template <int W, int D>
[[gnu::target("avx2"), gnu::always_inline]] inline void ZeileAvx2(const int16_t* alt, const int16_t* const* weg,
                                                                    const int16_t* const* dazu, int16_t* neu) {
    for (int i = 0; i < NetzBreite; i += 16) {
        __m256i v = _mm256_load_si256(reinterpret_cast<const __m256i*>(alt + i));
        for (int k = 0; k < W; ++k)
            v = _mm256_sub_epi16(v, _mm256_load_si256(reinterpret_cast<const __m256i*>(weg[k] + i)));
        for (int k = 0; k < D; ++k)
            v = _mm256_add_epi16(v, _mm256_load_si256(reinterpret_cast<const __m256i*>(dazu[k] + i)));
        _mm256_store_si256(reinterpret_cast<__m256i*>(neu + i), v);
    }
}

template <int W, int D>
[[gnu::target("avx2")]] void AnwendenAvx2(const Zeilen_t& z, const Akkumulator_t& alt, Akkumulator_t& neu) {
    for (unsigned s = 0; s < 2; ++s) ZeileAvx2<W, D>(alt.v[s], z.weg[s], z.dazu[s], neu.v[s]);
}

// Every change a move makes: a quiet move or promotion 1/1, a capture or en passant
// 2/1, castling 2/2, a null move nothing.
[[gnu::target("avx2")]] void AnwendenAvx2(const Bewertungsnetz_t& netz, const Akkumulator_t& alt,
                                           const NetzAenderung_t& a, Akkumulator_t& neu) {
    const Zeilen_t z = ZeilenVon(netz, a);
    switch (a.weg * 4 + a.dazu) {
        case 1 * 4 + 1: return AnwendenAvx2<1, 1>(z, alt, neu);
        case 2 * 4 + 1: return AnwendenAvx2<2, 1>(z, alt, neu);
        case 2 * 4 + 2: return AnwendenAvx2<2, 2>(z, alt, neu);
        default: return AnwendenAvx2<0, 0>(z, alt, neu);
    }
}

[[gnu::target("avx2")]] int32_t WertAvx2(const Bewertungsnetz_t& netz, const Akkumulator_t& akku, unsigned amZug) {
    const __m256i null = _mm256_setzero_si256(), eins = _mm256_set1_epi16(NetzQA);
    __m256i summe[2] = {_mm256_setzero_si256(), _mm256_setzero_si256()};
    for (unsigned h = 0; h < 2; ++h) {
        const int16_t* v = akku.v[amZug ^ h];
        for (int i = 0; i < NetzBreite; i += 16) {
            __m256i x = _mm256_load_si256(reinterpret_cast<const __m256i*>(v + i));
            x = _mm256_min_epi16(_mm256_max_epi16(x, null), eins);
            for (int j = 0; j < 2; ++j) {
                const __m256i w =
                    _mm256_load_si256(reinterpret_cast<const __m256i*>(&netz.ausgabeGewichte[j][h * NetzBreite + i]));
                summe[j] = _mm256_add_epi32(summe[j], _mm256_madd_epi16(x, w));
            }
        }
    }
    int32_t ergebnis[2];
    for (int j = 0; j < 2; ++j) {
        __m128i s = _mm_add_epi32(_mm256_castsi256_si128(summe[j]), _mm256_extracti128_si256(summe[j], 1));
        s = _mm_add_epi32(s, _mm_shuffle_epi32(s, 0x4e));
        s = _mm_add_epi32(s, _mm_shuffle_epi32(s, 0xb1));
        ergebnis[j] = Begrenzt(static_cast<int64_t>(static_cast<uint32_t>(_mm_cvtsi128_si32(s)) +
                                                    static_cast<uint32_t>(netz.ausgabeBias[j])));
    }
    return Gepackt(ergebnis[0], ergebnis[1]);
}

bool HatAvx2() {
#ifdef __AVX2__
    return true;
#else
    static const bool ja = __builtin_cpu_supports("avx2");
    return ja;
#endif
}
#endif

}  // namespace

// The file holding the built-in network, its path given by the build.
asm(".section .rodata\n"
    ".balign 64\n"
    ".globl kelvaranNetzDaten\n"
    "kelvaranNetzDaten:\n"
    ".incbin \"" KELVARAN_NETZDATEI "\"\n"
    ".globl kelvaranNetzEnde\n"
    "kelvaranNetzEnde:\n"
    ".byte 0\n"
    ".previous\n");

NetzAenderung_t NetzAenderungVon(const Rueckzug_t& rueck, uint32_t zug, unsigned seite) {
    NetzAenderung_t a;
    const unsigned art = Art(zug);
    if (art == Nullzug) return a;
    const Feld von = Von(zug), nach = Nach(zug);
    const unsigned gegner = seite ^ 1;
    if (art == Rochade) {
        const Feld turmNach = (nach & 56) | ((nach & 7) == 6 ? 5 : 3);
        const Bitboard turmVon = rueck.turmBits & ~Bit(turmNach);
        a.Weg(seite, Koenig, von);
        a.Weg(seite, Turm, turmVon ? static_cast<Feld>(__builtin_ctzll(turmVon)) : turmNach);
        a.Dazu(seite, Koenig, nach);
        a.Dazu(seite, Turm, turmNach);
        return a;
    }
    if (art == EnPassant) {
        a.Weg(seite, Bauer, von);
        a.Weg(gegner, Bauer, seite == Weiss ? nach + 8 : nach - 8);
        a.Dazu(seite, Bauer, nach);
        return a;
    }
    a.Weg(seite, IstUmwandlung(zug) ? Bauer : art, von);
    if (rueck.geschlagenTyp) a.Weg(gegner, rueck.geschlagenTyp, nach);
    a.Dazu(seite, IstUmwandlung(zug) ? UmwandlungsFigur(zug) : art, nach);
    return a;
}

void NetzAufbauen(const Bewertungsnetz_t& netz, const Stellung_t& st, Akkumulator_t& akku) {
    int32_t summe[2][NetzBreite];
    for (unsigned sicht = 0; sicht < 2; ++sicht) {
        std::copy(std::begin(netz.bias), std::end(netz.bias), summe[sicht]);
        for (unsigned seite = 0; seite < 2; ++seite)
            for (unsigned typ = Bauer; typ <= Koenig; ++typ)
                for (Bitboard b = st.seite[seite].brett[typ]; b;) {
                    const int16_t* w = netz.gewichte[NetzMerkmal(sicht, seite, typ, NimmFeld(b))];
                    for (int i = 0; i < NetzBreite; ++i) summe[sicht][i] += w[i];
                }
        // Wrapped to 16 bits as the move-by-move updates wrap.
        for (int i = 0; i < NetzBreite; ++i) akku.v[sicht][i] = static_cast<int16_t>(summe[sicht][i]);
    }
}

void NetzAnwendenPortabel(const Bewertungsnetz_t& netz, const Akkumulator_t& alt, const NetzAenderung_t& a,
                          Akkumulator_t& neu) {
    const Zeilen_t z = ZeilenVon(netz, a);
    for (unsigned s = 0; s < 2; ++s)
        for (int i = 0; i < NetzBreite; ++i) {
            int x = alt.v[s][i];
            for (int k = 0; k < a.weg; ++k) x -= z.weg[s][k][i];
            for (int k = 0; k < a.dazu; ++k) x += z.dazu[s][k][i];
            neu.v[s][i] = static_cast<int16_t>(x);
        }
}

int32_t NetzWertPortabel(const Bewertungsnetz_t& netz, const Akkumulator_t& akku, unsigned amZug) {
    int32_t ergebnis[2];
    for (int j = 0; j < 2; ++j) {
        int64_t summe = netz.ausgabeBias[j];
        for (unsigned h = 0; h < 2; ++h)
            for (int i = 0; i < NetzBreite; ++i)
                summe += std::clamp<int>(akku.v[amZug ^ h][i], 0, NetzQA) * netz.ausgabeGewichte[j][h * NetzBreite + i];
        ergebnis[j] = Begrenzt(summe);
    }
    return Gepackt(ergebnis[0], ergebnis[1]);
}

void NetzAnwenden(const Bewertungsnetz_t& netz, const Akkumulator_t& alt, const NetzAenderung_t& a, Akkumulator_t& neu) {
#ifdef KELVARAN_NETZ_AVX2
    if (HatAvx2()) return AnwendenAvx2(netz, alt, a, neu);
#endif
    NetzAnwendenPortabel(netz, alt, a, neu);
}

int32_t NetzWert(const Bewertungsnetz_t& netz, const Akkumulator_t& akku, unsigned amZug) {
#ifdef KELVARAN_NETZ_AVX2
    if (HatAvx2()) return WertAvx2(netz, akku, amZug);
#endif
    return NetzWertPortabel(netz, akku, amZug);
}

const char* NetzBefehlssatz() {
#ifdef KELVARAN_NETZ_AVX2
    if (HatAvx2()) return "avx2";
#endif
    return "portable";
}

// ---- Files ------------------------------------------------------------------------

namespace {

// Reads or writes the integers of a network in file order: little-endian.
template <typename F>
void JedeZahl(Bewertungsnetz_t& netz, F&& f) {
    for (auto& zeile : netz.gewichte)
        for (int16_t& w : zeile) f(w);
    for (int16_t& w : netz.bias) f(w);
    for (auto& zeile : netz.ausgabeGewichte)
        for (int16_t& w : zeile) f(w);
    for (int32_t& w : netz.ausgabeBias) f(w);
}

void Kopf(uint8_t* p) {
    std::memcpy(p, NetzKennung, 8);
    const uint32_t felder[6] = {NetzVersion, NetzEingaben, NetzBreite, 2, NetzQA, NetzQB};
    for (int i = 0; i < 6; ++i)
        for (int b = 0; b < 4; ++b) p[8 + 4 * i + b] = static_cast<uint8_t>(felder[i] >> (8 * b));
}

}  // namespace

std::unique_ptr<Bewertungsnetz_t> LeseNetz(const uint8_t* daten, size_t laenge, std::string& fehler) {
    uint8_t kopf[32];
    Kopf(kopf);
    if (laenge < 32 || std::memcmp(daten, kopf, 8) != 0) {
        fehler = "not a Kelvaran network file";
        return nullptr;
    }
    if (std::memcmp(daten, kopf, 32) != 0) {
        fehler = "a network of another version or shape";
        return nullptr;
    }
    if (laenge != NetzDateiGroesse) {
        fehler = "truncated or overlong network file";
        return nullptr;
    }
    uint64_t pruefsumme = 0;
    for (int b = 0; b < 8; ++b) pruefsumme |= static_cast<uint64_t>(daten[laenge - 8 + b]) << (8 * b);
    if (pruefsumme != Fnv1a(daten, laenge - 8)) {
        fehler = "network file checksum mismatch";
        return nullptr;
    }
    auto netz = std::make_unique<Bewertungsnetz_t>();
    const uint8_t* p = daten + 32;
    JedeZahl(*netz, [&](auto& w) {
        using T = std::remove_reference_t<decltype(w)>;
        std::make_unsigned_t<T> u = 0;
        for (size_t b = 0; b < sizeof(T); ++b) u |= static_cast<std::make_unsigned_t<T>>(*p++) << (8 * b);
        w = static_cast<T>(u);
    });
    return netz;
}

std::string NetzDateiInhalt(const Bewertungsnetz_t& netz) {
    std::string text(NetzDateiGroesse, '\0');
    uint8_t* const anfang = reinterpret_cast<uint8_t*>(text.data());
    Kopf(anfang);
    uint8_t* p = anfang + 32;
    JedeZahl(const_cast<Bewertungsnetz_t&>(netz), [&](auto& w) {
        using T = std::remove_reference_t<decltype(w)>;
        const auto u = static_cast<std::make_unsigned_t<T>>(w);
        for (size_t b = 0; b < sizeof(T); ++b) *p++ = static_cast<uint8_t>(u >> (8 * b));
    });
    const uint64_t pruefsumme = Fnv1a(anfang, NetzDateiGroesse - 8);
    for (int b = 0; b < 8; ++b) *p++ = static_cast<uint8_t>(pruefsumme >> (8 * b));
    return text;
}

std::unique_ptr<Bewertungsnetz_t> LadeNetzDatei(const std::string& name, std::string& fehler) {
    std::ifstream ein(name, std::ios::binary);
    if (!ein) {
        fehler = "cannot open " + name;
        return nullptr;
    }
    // Read one byte past the expected size, so an overlong file is seen as such.
    std::string inhalt(NetzDateiGroesse + 1, '\0');
    ein.read(inhalt.data(), static_cast<std::streamsize>(inhalt.size()));
    return LeseNetz(reinterpret_cast<const uint8_t*>(inhalt.data()), static_cast<size_t>(ein.gcount()), fehler);
}

std::unique_ptr<Bewertungsnetz_t> LeseEingebautesNetz(std::string& fehler) {
    return LeseNetz(kelvaranNetzDaten, static_cast<size_t>(kelvaranNetzEnde - kelvaranNetzDaten), fehler);
}

const Bewertungsnetz_t& EingebautesNetz() {
    static const std::unique_ptr<Bewertungsnetz_t> netz = [] {
        std::string fehler;
        auto n = LeseEingebautesNetz(fehler);
        // The tests refuse such a build; should one run, it plays without the network.
        return n ? std::move(n) : std::make_unique<Bewertungsnetz_t>();
    }();
    return *netz;
}
