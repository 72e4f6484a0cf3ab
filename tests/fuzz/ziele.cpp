#include <cstring>
#include <mutex>

#include "board/tabellen.h"
#include "fuzz_ziele.h"
#include "search/endspiel.h"

const FuzzZiel_t FuzzZiele[] = {
    {"uci", FuzzUci},
    {"xboard", FuzzXboard},
    {"fen", FuzzFen},
    {"zugtext", FuzzZugtext},
    {"pgn", FuzzPgn},
    {"epd", FuzzEpd},
    {"bitbase", FuzzBitbase},
    {"block", FuzzBlock},
    {"buch", FuzzBuch},
    {"polyglot", FuzzPolyglot},
    {"netz", FuzzNetz},
    {"zeitlog", FuzzZeitlog},
    {"bewertungsnetz", FuzzBewertungsnetz},
    {nullptr, nullptr},
};

const FuzzZiel_t* FindeFuzzZiel(const char* name) {
    for (const FuzzZiel_t* z = FuzzZiele; z->name != nullptr; ++z)
        if (std::strcmp(z->name, name) == 0) return z;
    return nullptr;
}

void FuzzVorbereiten() {
    static std::once_flag gebaut;
    std::call_once(gebaut, [] {
        InitTabellen();
        KpkInit();
    });
}
