// The rules check of finished files: every bit must agree with the bits of the
// positions one move away.
#include <mutex>

#include "bitbase/erzeugerhilfen.h"
#include "bitbase/retrograd.h"

bool PruefeSignatur(const std::string& name, int threads, const KindLader_t& lader, Pruefbericht_t& bericht,
                    std::string& fehler) {
    Erzeugersignatur_t sig;
    if (!sig.Setze(name.c_str())) {
        fehler = "keine Signatur: " + name;
        return false;
    }
    Kinderbasen_t basen(lader);
    bool ok = basen.LadeKinder(sig, fehler);
    const std::unique_ptr<Kind_t> selbst = basen.Selbst(sig, ok, fehler);
    if (!ok) return false;

    std::atomic<uint64_t> geprueft{0}, falsch{0};
    std::mutex sperre;
    Parallel(sig.bitbase.positionen, threads < 1 ? 1 : threads, [&](uint64_t a, uint64_t e) {
        uint64_t zg = 0, zf = 0;
        for (uint64_t i = a; i < e; ++i) {
            ErzeugerStellung_t p;
            if (!sig.AusIndex(i, p) || !sig.Zulaessig(p) || sig.Index(p) != i) continue;
            ++zg;
            const int x = p.amZug;
            bool w, s;
            Kindwert(*selbst, p, w, s);
            const bool xGewinnt = x == Weiss ? w : s;
            const bool yGewinnt = x == Weiss ? s : w;

            bool zugGewinnt = false, alleVerlieren = true;
            const int zuege = sig.Zuege(p, [&](const ErzeugerStellung_t& c, int st, int g, int u) {
                bool cw, cs;
                Kindwert(g >= 0 || u != 0 ? basen.Kind(g, u != 0 ? st : -1, u) : *selbst, c, cw, cs);
                zugGewinnt |= x == Weiss ? cw : cs;
                alleVerlieren &= x == Weiss ? cs : cw;
                return true;
            });
            const bool sollVerlieren = zuege == 0 ? sig.ImSchach(p) : alleVerlieren;
            // Identical men in another order: the same bits under the other index.
            bool gleich = true;
            sig.FuerJedeReihenfolge(p, [&](const ErzeugerStellung_t& q) {
                gleich &= LeseBit(selbst->bits, sig.IndexInReihenfolge(q)) == w;
            });
            if (gleich && xGewinnt == zugGewinnt && yGewinnt == sollVerlieren) continue;
            if (zf++ == 0) {
                std::lock_guard<std::mutex> halt(sperre);
                if (bericht.beispiel.empty())
                    bericht.beispiel = ErzeugerFen(sig, p) + " Index " + std::to_string(i) + " Bits " +
                                       std::to_string(w) + "/" + std::to_string(s);
            }
        }
        geprueft += zg;
        falsch += zf;
    });
    bericht.geprueft = geprueft;
    bericht.fehler = falsch;
    return true;
}
