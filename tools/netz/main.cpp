// kelvaran_netz: the evaluation network's tools.
//
//   kelvaran_netz daten OUT [games=N] [nodes=N] [threads=N] [seed=N] [random=N] [hash=MB]
//                       [net=FILE] OPENINGS...
//   kelvaran_netz lernen OUT.knn DATA... [epochs=N] [batch=N] [lr=X] [lambda=X] [threads=N] [seed=N]
//                        [validation=X] [limit=N] [mirror=0|1] [k=X] [net=FILE]
#include <cstdlib>
#include <cstring>
#include <iostream>
#include <string>

#include "board/tabellen.h"
#include "netz/generator.h"
#include "netz/trainer.h"
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
            !Parameter(p, "seed", a.saat) && !Parameter(p, "random", a.zufallsPlies) && !Parameter(p, "hash", a.hashMb)) {
            if (std::strncmp(p, "net=", 4) == 0) a.netz = p + 4;
            else a.eroeffnungen.emplace_back(p);
        }
    }
    return ErzeugeDaten(a, std::cout);
}

int Lernen(int argc, char** argv) {
    Trainerauftrag_t a;
    a.ausgabe = argv[2];
    for (int i = 3; i < argc; ++i) {
        const char* p = argv[i];
        if (!Parameter(p, "epochs", a.epochen) && !Parameter(p, "batch", a.stapel) && !Parameter(p, "lr", a.lernrate) &&
            !Parameter(p, "lambda", a.lambda) && !Parameter(p, "threads", a.threads) && !Parameter(p, "seed", a.saat) &&
            !Parameter(p, "validation", a.pruefAnteil) && !Parameter(p, "limit", a.hoechstens) &&
            !Parameter(p, "mirror", a.spiegeln) && !Parameter(p, "k", a.k)) {
            if (std::strncmp(p, "net=", 4) == 0) a.start = p + 4;
            else a.daten.emplace_back(p);
        }
    }
    return Trainiere(a, std::cout);
}

}  // namespace

int main(int argc, char** argv) {
    InitTabellen();
    KpkInit();
    if (argc >= 4 && std::strcmp(argv[1], "daten") == 0) return Daten(argc, argv);
    if (argc >= 4 && std::strcmp(argv[1], "lernen") == 0) return Lernen(argc, argv);
    std::cerr << "usage: kelvaran_netz daten OUT [games=N] [nodes=N] [threads=N] [seed=N] [random=N] [hash=MB] "
                 "[net=FILE] OPENINGS...\n"
                 "       kelvaran_netz lernen OUT.knn DATA... [epochs=N] [batch=N] [lr=X] [lambda=X] [threads=N] "
                 "[seed=N] [validation=X] [limit=N] [mirror=0|1] [k=X] [net=FILE]\n";
    return 2;
}
