// Every line the XBoard adapter makes passes through this queue: UCI commands for
// the interpreter behind it, lines for the GUI and error reports, delivered in
// the order they were made.
//
// The input thread delivers after each GUI command. Lines made on the search
// thread (the ponder search that follows the engine's move) cannot be delivered
// there: the interpreter would wait for that very search to end. A delivery
// thread of the queue takes them.
#pragma once

#include <condition_variable>
#include <cstdint>
#include <deque>
#include <mutex>
#include <string>
#include <thread>

class Eingabe_t;
class XBoardAusgabe_t;

class XboardUciQueue_t {
public:
    enum Art_t : uint8_t { UciBefehl = 0, GuiZeile = 1, Fehler = 2 };

    XboardUciQueue_t(Eingabe_t* uci, XBoardAusgabe_t* ausgabe);
    ~XboardUciQueue_t();

    void Uci(std::string zeile) { Anhaengen({UciBefehl, std::move(zeile), {}}); }
    void Gui(std::string zeile) { Anhaengen({GuiZeile, std::move(zeile), {}}); }
    void Meldung(std::string meldung, std::string argument) {
        Anhaengen({Fehler, std::move(meldung), std::move(argument)});
    }

    // Delivers everything queued, on the calling thread; returns when the queue is empty.
    void Zustellen();
    // Lets the delivery thread deliver, for callers that must not wait.
    void ZustellenLassen();

private:
    struct Eintrag_t {
        Art_t art;
        std::string text;
        std::string argument;
    };

    void Anhaengen(Eintrag_t eintrag);
    void Zustellthread();

    Eingabe_t* uci;
    XBoardAusgabe_t* ausgabe;
    std::deque<Eintrag_t> eintraege;
    std::mutex eintraegeSperre;
    std::mutex zustellSperre;  // one deliverer at a time keeps the order of the lines
    std::condition_variable wecken;
    bool auftrag = false;
    bool ende = false;
    std::thread zusteller;
};
