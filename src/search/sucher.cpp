#include "search/sucher.h"

#include <chrono>
#include <thread>

Sucher_t::Sucher_t() : auftrag(std::make_unique<Suchauftrag_t>()) {}

Sucher_t::~Sucher_t() {
    // Normally the derived destructor has shut the thread down already; a thread still
    // running here could only call into a half-destroyed object.
    Herunterfahren();
}

void* Sucher_t::Einstieg(void* sucher) {
    static_cast<Sucher_t*>(sucher)->Threadkoerper();
    return nullptr;
}

bool Sucher_t::Starten() {
    if (laeuft) return true;
    pthread_attr_t attr;
    pthread_attr_init(&attr);
    pthread_attr_setstacksize(&attr, 1024000);
    laeuft = pthread_create(&thread, &attr, &Sucher_t::Einstieg, this) == 0;
    pthread_attr_destroy(&attr);
    return laeuft;
}

void Sucher_t::Threadkoerper() {
    while (!terminieren.load(std::memory_order_relaxed)) {
        startSemaphor.acquire();
        quittungSemaphor.release();
        if (terminieren.load(std::memory_order_relaxed)) break;
        suchen();
        untaetigSemaphor.release();
    }
}

void Sucher_t::ponderhit() { ponder.store(false, std::memory_order_relaxed); }

void Sucher_t::Go(const Suchauftrag_t& neu) {
    untaetigSemaphor.acquire();  // held by the search until it ends
    *auftrag = neu;
    Uebernehmen();
    stop.store(false, std::memory_order_relaxed);
    ponder.store((neu.flags & StartPonder) != 0, std::memory_order_relaxed);
    ohneEnde.store(neu.unendlich, std::memory_order_relaxed);
    startSemaphor.release();
    quittungSemaphor.acquire();
}

void Sucher_t::WarteBisUntaetig() {
    untaetigSemaphor.acquire();
    untaetigSemaphor.release();
}

bool Sucher_t::Sucht() {
    if (!untaetigSemaphor.try_acquire()) return true;
    untaetigSemaphor.release();
    return false;
}

void Sucher_t::Stop() {
    stop.store(true, std::memory_order_relaxed);
    ponder.store(false, std::memory_order_relaxed);
    WarteBisUntaetig();
}

bool Sucher_t::Herunterfahren() {
    if (!laeuft) return true;
    stop.store(true, std::memory_order_relaxed);
    ponder.store(false, std::memory_order_relaxed);  // a pondering search would wait forever
    terminieren.store(true, std::memory_order_relaxed);
    startSemaphor.release();
    untaetigSemaphor.acquire();
    const bool normal = pthread_join(thread, nullptr) == 0;
    laeuft = false;
    untaetigSemaphor.release();
    return normal;
}

void Sucher_t::WarteWaehrendPonder() {
    while (ponder.load(std::memory_order_relaxed)) std::this_thread::sleep_for(std::chrono::milliseconds(20));
}
