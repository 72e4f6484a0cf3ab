#include "protocol/xboard_queue.h"

#include <cstring>

#include "protocol/uci.h"
#include "protocol/xboard_ausgabe.h"

XboardUciQueue_t::XboardUciQueue_t(Eingabe_t* u, XBoardAusgabe_t* a) : uci(u), ausgabe(a) {
    zusteller = std::thread(&XboardUciQueue_t::Zustellthread, this);
}

XboardUciQueue_t::~XboardUciQueue_t() {
    {
        std::lock_guard<std::mutex> halten(eintraegeSperre);
        ende = true;
    }
    wecken.notify_one();
    if (zusteller.joinable()) zusteller.join();
}

void XboardUciQueue_t::Anhaengen(Eintrag_t eintrag) {
    std::lock_guard<std::mutex> halten(eintraegeSperre);
    eintraege.push_back(std::move(eintrag));
}

void XboardUciQueue_t::Zustellen() {
    std::lock_guard<std::mutex> zustellen(zustellSperre);
    for (;;) {
        Eintrag_t e;
        {
            std::lock_guard<std::mutex> halten(eintraegeSperre);
            if (eintraege.empty()) return;
            e = std::move(eintraege.front());
            eintraege.pop_front();
        }
        switch (e.art) {
            case UciBefehl:
                if (uci == nullptr) break;
                if (ausgabe != nullptr && std::strncmp(e.text.c_str(), "setoption", 9) == 0) {
                    // The search thread reads options too ("NoOutput", "Resign"): they change under its lock.
                    std::lock_guard<std::mutex> optionen(ausgabe->Optionssperre());
                    uci->befehl(e.text.c_str());
                } else {
                    uci->befehl(e.text.c_str());
                }
                break;
            case GuiZeile:
                if (ausgabe != nullptr) ausgabe->zeile(e.text);
                break;
            case Fehler:
                if (ausgabe != nullptr) ausgabe->fehler(e.text.c_str(), e.argument.c_str());
                break;
        }
    }
}

void XboardUciQueue_t::ZustellenLassen() {
    {
        std::lock_guard<std::mutex> halten(eintraegeSperre);
        auftrag = true;
    }
    wecken.notify_one();
}

void XboardUciQueue_t::Zustellthread() {
    for (;;) {
        {
            std::unique_lock<std::mutex> warten(eintraegeSperre);
            wecken.wait(warten, [this] { return auftrag || ende; });
            if (ende) return;
            auftrag = false;
        }
        Zustellen();
    }
}
