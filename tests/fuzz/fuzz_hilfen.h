// What the fuzz targets share: a private scratch directory, input lines, and the
// taming of commands that would otherwise search for minutes, allocate gigabytes
// or write files anywhere.
#pragma once

#include <cstddef>
#include <cstdint>
#include <string>
#include <vector>

namespace fuzz {

// This process's scratch directory (under TMPDIR), removed at exit.
const std::string& Verzeichnis();
// Empties the scratch directory, so no input sees files of an earlier one.
void Leeren();
// A file of the scratch directory with the given content; returns its path.
std::string Datei(const std::string& name, const uint8_t* daten, size_t groesse);

// For the interpreters: empties the scratch directory and makes it the working
// directory while it lives, so relative file names of commands land there.
class ImVerzeichnis_t {
public:
    ImVerzeichnis_t();
    ~ImVerzeichnis_t();
    ImVerzeichnis_t(const ImVerzeichnis_t&) = delete;
    ImVerzeichnis_t& operator=(const ImVerzeichnis_t&) = delete;

private:
    std::string vorher;
};

// Input lines as the program entry hands them on: split at line ends, cut at
// the input buffer's length, trailing white space removed, blank lines dropped.
std::vector<std::string> Zeilen(const uint8_t* daten, size_t groesse);

// A UCI line made safe to run: "go" becomes a search of at most two iterations
// that ends by itself (no ponder, infinite or mate search); perft, table sizes,
// thread counts, node counts and training passes are capped; file names lose
// their directories, so files stay in the working directory.
std::string ZaehmeUciZeile(const std::string& zeile);

}  // namespace fuzz
