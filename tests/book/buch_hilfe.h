// Small game collections for the book tests; scratch files come from test_dateien.h.
#pragma once

#include <string>

#include "../test_dateien.h"

// One game in export form.
inline std::string Partie(const std::string& zuege, const std::string& ergebnis, const std::string& mehrTags = "") {
    return "[White \"w\"]\n[Black \"s\"]\n[Result \"" + ergebnis + "\"]\n" + mehrTags + "\n" + zuege + " " + ergebnis +
           "\n\n";
}
