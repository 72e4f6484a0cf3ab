// The engine's options: the static tables and the live option set.
//
// Every consumer (search, XBoard adapter, tools) reads an option by looking up
// its exact name, so a table without that row simply yields "not known".
#pragma once

#include <cstdint>
#include <memory>

enum OptionTyp : uint32_t {
    OptionCheck = 0,
    OptionSpin = 1,
    OptionCombo = 2,
    OptionButton = 3,
    OptionString = 4,
};

// One row of a read-only options table; the table ends with a row whose name is null.
struct Option_t {
    uint32_t typ;         // OptionTyp
    uint8_t angezeigt;    // announced to the GUI; hidden rows stay settable
    const char* name;
    const char* vorgabe;  // default as text
    int32_t min;          // spin only
    int32_t max;
    const char* liste;    // combo: the choices joined by " var ", else null
};

// The engine's table (15 rows) and the table of the random players (no rows).
extern const Option_t Optionstabelle[];
extern const Option_t LeereOptionstabelle[];

class Optionen_t {
public:
    static constexpr int TextLaenge = 256;

    // One value slot per row.
    struct Wert_t {
        int32_t zahl;
        char text[TextLaenge + 4];
    };

    explicit Optionen_t(const Option_t* tabelle);

    int Anzahl() const { return anzahl; }
    const Option_t* Tabelle() const { return tabelle; }

    // Index of the row with exactly this name, -1 when there is none.
    int Index(const char* name) const;

    // Readers; an index out of range reads 0, false and "".
    int32_t Zahl(int index) const;
    bool Wahr(int index) const { return Zahl(index) != 0; }
    const char* Text(int index) const;

    // Spin: clamped; combo: the choice at that position; otherwise the text is "%ld".
    bool SetzeZahl(int index, long zahl);

    // The "setoption" command line; false (and nothing changed) when it cannot be read.
    bool SetzeOption(const char* zeile);

    // Returns whether "Clear Hash" was pressed and releases the button.
    bool ClearHashNehmen();

    // "Resign" (450000 without such a row) and "NoOutput" (false without one).
    int32_t Resign() const;
    bool NoOutput() const;

private:
    const Option_t* tabelle;
    int anzahl;
    std::unique_ptr<Wert_t[]> werte;
};
