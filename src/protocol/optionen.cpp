#include "protocol/optionen.h"

#include <cctype>
#include <cstdio>
#include <cstdlib>
#include <cstring>

// The 3 MB of "Hash" is deliberately small: every GUI sets it anyway.
const Option_t Optionstabelle[] = {
    {OptionSpin, 1, "Hash", "3", 1, 32000, nullptr},
    {OptionCheck, 1, "Ponder", "true", 0, 0, nullptr},
    {OptionCheck, 1, "OwnBook", "true", 0, 0, nullptr},
    {OptionButton, 1, "Clear Hash", "false", 0, 0, nullptr},
    {OptionSpin, 1, "MultiPV", "1", 1, 10, nullptr},
    {OptionSpin, 1, "MultiPV_Score", "0", 0, 1000, nullptr},
    {OptionCheck, 1, "UCI_Chess960", "false", 0, 0, nullptr},
    {OptionString, 1, "BookFile", "Kelvaran.opn", 0, 0, nullptr},
    {OptionString, 1, "UCI_Opponent", "none none human none", 0, 0, nullptr},
    {OptionSpin, 0, "BitbaseCache", "0", 0, 100, nullptr},
    {OptionString, 0, "BitbasePath", ".", 0, 0, nullptr},
    {OptionSpin, 1, "NumberOfProcessors", "1", 1, 32, nullptr},
    {OptionString, 1, "TimeLogfile", "nul:", 0, 0, nullptr},
    {OptionCheck, 0, "NoOutput", "false", 0, 0, nullptr},
    {OptionSpin, 0, "Resign", "700", 400, 2000, nullptr},
    {OptionString, 0, "EvalFile", "internal", 0, 0, nullptr},
    {0, 0, nullptr, nullptr, 0, 0, nullptr},
};

// The random players announce nothing.
const Option_t LeereOptionstabelle[] = {
    {0, 0, nullptr, nullptr, 0, 0, nullptr},
};

namespace {

const char* UeberspringeLeer(const char* p) {
    while (*p != '\0' && std::isspace(static_cast<unsigned char>(*p))) ++p;
    return p;
}

void EntferneLeerAmEnde(char* text) {
    size_t n = std::strlen(text);
    while (n > 0 && std::isspace(static_cast<unsigned char>(text[n - 1]))) text[--n] = '\0';
}

// Copies at most TextLaenge characters; the slot always ends with a terminator.
void KopiereText(char* ziel, const char* quelle) {
    size_t n = std::strlen(quelle);
    if (n > Optionen_t::TextLaenge) n = Optionen_t::TextLaenge;
    std::memcpy(ziel, quelle, n);
    ziel[n] = '\0';
}

constexpr char Trenner[] = " var ";
constexpr size_t TrennerLaenge = sizeof(Trenner) - 1;

// Choice `index` of a combo list into `wahl` (trailing white space removed); false when absent.
bool ComboWahl(const char* liste, int index, char* wahl) {
    if (liste == nullptr || index < 0) return false;
    const char* anfang = liste;
    for (int i = 0; i < index; ++i) {
        const char* trenner = std::strstr(anfang, Trenner);
        if (trenner == nullptr) return false;
        anfang = trenner + TrennerLaenge;
    }
    const char* ende = std::strstr(anfang, Trenner);
    size_t n = ende != nullptr ? static_cast<size_t>(ende - anfang) : std::strlen(anfang);
    if (n > Optionen_t::TextLaenge) n = Optionen_t::TextLaenge;
    std::memcpy(wahl, anfang, n);
    wahl[n] = '\0';
    EntferneLeerAmEnde(wahl);
    return true;
}

int ComboIndex(const char* liste, const char* text) {
    char wahl[Optionen_t::TextLaenge + 4];
    for (int i = 0; ComboWahl(liste, i, wahl); ++i) {
        if (std::strcmp(wahl, text) == 0) return i;
    }
    return -1;
}

}  // namespace

Optionen_t::Optionen_t(const Option_t* tab) : tabelle(tab), anzahl(0) {
    while (tabelle[anzahl].name != nullptr) ++anzahl;
    werte = std::make_unique<Wert_t[]>(static_cast<size_t>(anzahl));
    for (int i = 0; i < anzahl; ++i) {
        const Option_t& o = tabelle[i];
        Wert_t& w = werte[i];
        KopiereText(w.text, o.vorgabe != nullptr ? o.vorgabe : "");
        switch (o.typ) {
            case OptionCheck:
                w.zahl = std::strcmp(w.text, "true") == 0 ? 1 : 0;
                break;
            case OptionSpin:
                w.zahl = static_cast<int32_t>(std::strtol(w.text, nullptr, 10));
                break;
            case OptionCombo: {
                const int index = ComboIndex(o.liste, w.text);
                w.zahl = index < 0 ? 0 : index;  // a default outside the list falls back to the first choice
                break;
            }
            default:
                w.zahl = 0;
                break;
        }
    }
}

int Optionen_t::Index(const char* name) const {
    if (name == nullptr) return -1;
    for (int i = 0; i < anzahl; ++i) {
        if (std::strcmp(tabelle[i].name, name) == 0) return i;
    }
    return -1;
}

int32_t Optionen_t::Zahl(int index) const {
    return index >= 0 && index < anzahl ? werte[index].zahl : 0;
}

const char* Optionen_t::Text(int index) const {
    return index >= 0 && index < anzahl ? werte[index].text : "";
}

bool Optionen_t::SetzeZahl(int index, long zahl) {
    if (index < 0 || index >= anzahl) return false;
    const Option_t& o = tabelle[index];
    Wert_t& w = werte[index];
    if (o.typ == OptionCombo) {
        char wahl[TextLaenge + 4];
        if (zahl > 0x7fffffffL || !ComboWahl(o.liste, static_cast<int>(zahl), wahl)) return false;
        w.zahl = static_cast<int32_t>(zahl);
        KopiereText(w.text, wahl);
        return true;
    }
    if (o.typ == OptionSpin) {
        if (zahl < o.min) zahl = o.min;
        if (zahl > o.max) zahl = o.max;
    }
    w.zahl = static_cast<int32_t>(zahl);
    std::snprintf(w.text, sizeof w.text, "%ld", zahl);
    return true;
}

bool Optionen_t::SetzeOption(const char* zeile) {
    if (zeile == nullptr || std::strncmp(zeile, "setoption ", 10) != 0) return false;
    const char* p = UeberspringeLeer(zeile + 10);
    if (std::strncmp(p, "name ", 5) != 0) return false;
    p = UeberspringeLeer(p + 5);

    // Names may contain blanks and need not be followed by more than "value",
    // so the longest name that prefixes the rest is the one meant.
    int gefunden = -1;
    size_t laenge = 0;
    for (int i = 0; i < anzahl; ++i) {
        const size_t n = std::strlen(tabelle[i].name);
        if (std::strncmp(p, tabelle[i].name, n) == 0 && (gefunden < 0 || n > laenge)) {
            gefunden = i;
            laenge = n;
        }
    }
    if (gefunden < 0) return false;
    const Option_t& o = tabelle[gefunden];
    Wert_t& w = werte[gefunden];

    if (o.typ == OptionButton) {
        w.zahl = 1;
        KopiereText(w.text, "true");
        return true;
    }

    p = UeberspringeLeer(p + laenge);
    if (std::strncmp(p, "value ", 6) != 0) return false;
    p = UeberspringeLeer(p + 6);

    switch (o.typ) {
        case OptionCheck:
            if (std::strncmp(p, "true", 4) == 0) {
                w.zahl = 1;
                KopiereText(w.text, "true");
                return true;
            }
            if (std::strncmp(p, "false", 5) == 0) {
                w.zahl = 0;
                KopiereText(w.text, "false");
                return true;
            }
            return false;
        case OptionSpin:
            return SetzeZahl(gefunden, std::strtol(p, nullptr, 10));
        case OptionCombo: {
            KopiereText(w.text, p);
            EntferneLeerAmEnde(w.text);
            const int index = ComboIndex(o.liste, w.text);
            if (index < 0) return false;  // the text stays as typed
            w.zahl = index;
            return true;
        }
        case OptionString:
            KopiereText(w.text, p);
            w.zahl = static_cast<int32_t>(std::strtol(w.text, nullptr, 10));
            return true;
        default:
            return false;
    }
}

bool Optionen_t::ClearHashNehmen() {
    const int index = Index("Clear Hash");
    if (index < 0 || werte[index].zahl == 0) return false;
    werte[index].zahl = 0;
    KopiereText(werte[index].text, "false");
    return true;
}

int32_t Optionen_t::Resign() const {
    const int index = Index("Resign");
    return index < 0 ? 450000 : werte[index].zahl;
}

bool Optionen_t::NoOutput() const {
    const int index = Index("NoOutput");
    return index >= 0 && werte[index].zahl != 0;
}
