#include "book/polyglot.h"

#include <cstdio>
#include <filesystem>
#include <memory>

#include "board/zuggenerator.h"
#include "board/zugmachen.h"

namespace {

constexpr int Rochadenschluessel = 768;  // white short, white long, black short, black long: our bit order
constexpr int EpSchluessel = 772;
constexpr int ZugSchluessel = 780;

struct DateiZu {
    void operator()(std::FILE* f) const { std::fclose(f); }
};

uint64_t LiesBigEndian(const unsigned char* p, int bytes) {
    uint64_t wert = 0;
    for (int i = 0; i < bytes; ++i) wert = (wert << 8) | p[i];
    return wert;
}

}  // namespace

uint64_t PolyglotSchluessel(const Stellung_t& st) {
    uint64_t schluessel = 0;
    for (unsigned seite = 0; seite < 2; ++seite) {
        for (unsigned typ = Bauer; typ <= Koenig; ++typ) {
            // Kinds: black pawn 0, white pawn 1, ..., white king 11.
            const unsigned art = 2 * (typ - 1) + (seite == Weiss ? 1 : 0);
            Bitboard b = st.seite[seite].brett[typ];
            while (b) {
                const Feld f = NimmFeld(b);
                schluessel ^= PolyglotZufall[64 * art + 8 * (ReiheVon(f) - 1) + LinieVon(f)];
            }
        }
    }
    for (int bit = 0; bit < 4; ++bit)
        if (st.rochaden & (1u << bit)) schluessel ^= PolyglotZufall[Rochadenschluessel + bit];
    if (st.ep) {
        // The pawn that moved stands one rank beyond the en-passant square.
        const Feld bauer = st.amZug == Weiss ? st.ep + 8 : st.ep - 8;
        const Bitboard nachbarn = ((Bit(bauer) << 1) & OhneALinie) | ((Bit(bauer) >> 1) & OhneHLinie);
        if (nachbarn & st.seite[st.amZug].brett[Bauer]) schluessel ^= PolyglotZufall[EpSchluessel + LinieVon(st.ep)];
    }
    if (st.amZug == Weiss) schluessel ^= PolyglotZufall[ZugSchluessel];
    return schluessel;
}

uint16_t PolyglotZugWort(const Stellung_t& st, Zug_t zug) {
    const Feld von = Von(zug);
    Feld nach = Nach(zug);
    if (Art(zug) == Rochade) {
        const Seite_t& s = st.seite[st.amZug];
        nach = LinieVon(nach) == 6 ? s.kurzerTurm : s.langerTurm;
    }
    const unsigned umwandlung = IstUmwandlung(zug) ? Art(zug) - UmwandlungSpringer + 1 : 0;
    return static_cast<uint16_t>(LinieVon(nach) | (ReiheVon(nach) - 1) << 3 | LinieVon(von) << 6 |
                                 (ReiheVon(von) - 1) << 9 | umwandlung << 12);
}

Zug_t PolyglotZugAus(Stellung_t& st, const Stellungsdaten_t& daten, uint16_t pgZug) {
    Zugliste_t liste;
    const uint32_t* ende = ErzeugeZuege(st, daten, liste);
    for (const uint32_t* p = liste; p < ende; ++p) {
        const Zug_t zug = static_cast<Zug_t>(*p);
        if (PolyglotZugWort(st, zug) == (pgZug & 0x7fff) && IstLegal(st, zug, daten)) return zug;
    }
    return 0;
}

bool PolyglotSuchen(const std::string& datei, uint64_t schluessel, std::vector<PolyglotEintrag_t>& eintraege) {
    eintraege.clear();
    std::error_code fehler;
    const uint64_t groesse = std::filesystem::file_size(datei, fehler);
    if (fehler || groesse % 16 != 0) return false;
    std::unique_ptr<std::FILE, DateiZu> f(std::fopen(datei.c_str(), "rb"));
    if (!f) return false;

    unsigned char e[16];
    auto lies = [&](uint64_t i) {
        return std::fseek(f.get(), static_cast<long>(i * 16), SEEK_SET) == 0 && std::fread(e, 1, 16, f.get()) == 16;
    };
    uint64_t unten = 0, oben = groesse / 16;
    while (unten < oben) {
        const uint64_t mitte = unten + (oben - unten) / 2;
        if (!lies(mitte)) return false;
        if (LiesBigEndian(e, 8) < schluessel) unten = mitte + 1;
        else oben = mitte;
    }
    for (uint64_t i = unten; i < groesse / 16 && lies(i) && LiesBigEndian(e, 8) == schluessel; ++i) {
        PolyglotEintrag_t p;
        p.schluessel = schluessel;
        p.zug = static_cast<uint16_t>(LiesBigEndian(e + 8, 2));
        p.gewicht = static_cast<uint16_t>(LiesBigEndian(e + 10, 2));
        p.lernen = static_cast<uint32_t>(LiesBigEndian(e + 12, 4));
        eintraege.push_back(p);
    }
    return true;
}
