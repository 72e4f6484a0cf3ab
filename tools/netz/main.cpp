// kelvaran_netz: the evaluation network's tools.
//
//   kelvaran_netz daten OUT [games=N] [nodes=N] [threads=N] [seed=N] [random=N] [hash=MB] OPENINGS...
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include "board/tabellen.h"
#include "netz/generator.h"
#include "search/endspiel.h"

namespace {

// "key=value" into `wert` when the argument names `name`.
template <typename T>
bool Parameter(const char* arg, const char* name, T& wert) {
    const size_t n = std::strlen(name);
    if (std::strncmp(arg, name, n) != 0 || arg[n] != '=') return false;
    if constexpr (std::is_floating_point_v<T>) wert = static_cast<T>(std::strtod(arg + n + 1, nullptr));
    else wert = static_cast<T>(std::strtoll(arg + n + 1, nullptr, 10));
    return true;
}

int Daten(int argc, char** argv) {
    Generatorauftrag_t a;
    a.datei = argv[2];
    for (int i = 3; i < argc; ++i) {
        const char* p = argv[i];
        if (!Parameter(p, "games", a.spiele) && !Parameter(p, "nodes", a.knoten) && !Parameter(p, "threads", a.threads) &&
            !Parameter(p, "seed", a.saat) && !Parameter(p, "random", a.zufallsPlies) && !Parameter(p, "hash", a.hashMb))
            a.eroeffnungen.emplace_back(p);
    }
    return ErzeugeDaten(a, std::cout);
}

}  // namespace

int main(int argc, char** argv) {
    InitTabellen();
    KpkInit();
    if (argc >= 4 && std::strcmp(argv[1], "daten") == 0) return Daten(argc, argv);
    std::cerr << "usage: kelvaran_netz daten OUT [games=N] [nodes=N] [threads=N] [seed=N] [random=N] [hash=MB] "
                 "OPENINGS...\n";
    return 2;
}
