// Network descriptions ("time read" and the network reader) and time logs
// ("time add"), the files of the time-network trainer.
#include <sstream>
#include <string>

#include "fuzz_hilfen.h"
#include "fuzz_ziele.h"
#include "timing/neuronetz.h"
#include "timing/zeittrainer.h"

int FuzzNetz(const uint8_t* daten, size_t groesse) {
    FuzzVorbereiten();
    fuzz::Leeren();
    const std::string text(reinterpret_cast<const char*>(daten), groesse);
    {
        std::istringstream ein(text);
        NeuroNetz_t netz;
        if (netz.lesen(ein) && netz.brauchbar()) {
            netz.summenLoeschen();
            for (int i = 0; i < netz.anzahlEingaben(); ++i) netz.eingeben(i, 0.5);
            netz.rechnen();
            netz.ausgabe();
            // What was read is written so that it reads again.
            std::ostringstream aus;
            if (netz.schreiben(aus)) {
                std::istringstream wieder(aus.str());
                NeuroNetz_t zweites;
                FUZZ_PRUEFEN(zweites.lesen(wieder));
            }
        }
    }
    // "time read": the trainer keeps its network unless the file holds a fitting one.
    Zeittrainer_t trainer;
    const std::string datei = fuzz::Datei("netz.txt", daten, groesse);
    if (trainer.lesen(datei)) {
        FUZZ_PRUEFEN(trainer.netz().anzahlEingaben() == Zeitnetz_t::Eingaben);
        std::array<double, Zeitnetz_t::Eingaben> eingaben{};
        eingaben.fill(0.25);
        trainer.netz().bewerten(eingaben);
        FUZZ_PRUEFEN(trainer.schreiben(fuzz::Verzeichnis() + "/wieder.txt"));
        Zeittrainer_t zweiter;
        FUZZ_PRUEFEN(zweiter.lesen(fuzz::Verzeichnis() + "/wieder.txt"));
    }
    return 0;
}

int FuzzZeitlog(const uint8_t* daten, size_t groesse) {
    FuzzVorbereiten();
    std::istringstream ein(std::string(reinterpret_cast<const char*>(daten), groesse));
    Zeittrainer_t trainer;
    if (trainer.hinzufuegen(ein) > 0) trainer.lernen(1);
    return 0;
}
