// Evaluation network files ("EvalFile"): the bytes as a file, and the bytes as the
// weights of a file whose header and checksum are made right, so that the weights
// themselves reach the accumulators and the output.
#include <cstdlib>
#include <cstring>
#include <memory>
#include <string>

#include "fuzz_ziele.h"
#include "search/netz.h"

namespace {

void Rechne(const Bewertungsnetz_t& netz) {
    Stellung_t st;
    Stellungsdaten_t daten;
    SetzeStellung(st, daten, "r3k2r/p1ppqpb1/bn2pnp1/3PN3/1p2P3/2N2Q1p/PPPBBPPP/R3K2R w KQkq - 0 1");
    Akkumulator_t akku;
    NetzAufbauen(netz, st, akku);
    for (unsigned amZug = 0; amZug < 2; ++amZug) {
        const int32_t w = NetzWert(netz, akku, amZug);
        FUZZ_PRUEFEN(w == NetzWertPortabel(netz, akku, amZug));
        FUZZ_PRUEFEN(std::abs((w + 32768) >> 16) <= NetzWertGrenze);
    }
}

}  // namespace

int FuzzBewertungsnetz(const uint8_t* daten, size_t groesse) {
    FuzzVorbereiten();
    std::string fehler;
    if (const auto netz = LeseNetz(daten, groesse, fehler)) {
        Rechne(*netz);
        // What was read is written back byte for byte.
        FUZZ_PRUEFEN(NetzDateiInhalt(*netz) == std::string(reinterpret_cast<const char*>(daten), groesse));
    } else {
        FUZZ_PRUEFEN(!fehler.empty());
    }
    // The bytes, repeated, as every weight of a network: written and read back, it
    // must be the same network and compute without overflow.
    if (groesse == 0) return 0;
    auto netz = std::make_unique<Bewertungsnetz_t>();
    auto* roh = reinterpret_cast<uint8_t*>(netz.get());
    for (size_t i = 0; i < sizeof(Bewertungsnetz_t); ++i) roh[i] = daten[i % groesse];
    const std::string inhalt = NetzDateiInhalt(*netz);
    const auto wieder = LeseNetz(reinterpret_cast<const uint8_t*>(inhalt.data()), inhalt.size(), fehler);
    FUZZ_PRUEFEN(wieder != nullptr && NetzDateiInhalt(*wieder) == inhalt);
    Rechne(*wieder);
    return 0;
}
