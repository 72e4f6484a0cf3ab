// The search's figures in one place, and switches for variants of its rules.
//
// Every switch is off by default: the search as Kelvaran plays it. Each names a
// variant that an earlier version played and that may be worth its strength; a
// match turns it back on here and nowhere else.
#pragma once

namespace Suchparameter {

// --- Variants (false = the rule as it stands) ---

// Captures sorted by the victim's value too; the king-move and killer bonuses
// only for quiet moves.
constexpr bool SchlagzuegeNachOpferwert = false;
// Pawn endings sorted with the general key instead of history, queening and the
// rank the captured pawn has reached.
constexpr bool BauernendspielAllgemeinSortieren = false;
// No late-move reduction in check, for a checking move, or for a special move
// (promotion, castling, en passant).
constexpr bool ReduktionSchontSchachUndSonderzuege = false;
// Captures neither become killers nor gain history; no special move becomes a killer.
constexpr bool NurRuhigeZuegeMerken = false;
// History in steps of 32, the table halved above 60000 and quartered at every "go".
constexpr bool HistorieFeinUndGealtert = false;
// A null move that finds a mate cuts with beta instead of the mate score.
constexpr bool NullzugMattAlsBeta = false;
// In check the node is not evaluated (0) and no move is pruned by futility.
constexpr bool ImSchachOhneBewertung = false;
// The capture search searches a losing capture that answers a check.
constexpr bool SchachVerlustschlaegeSuchen = false;
// The capture search clears the killers of its ply.
constexpr bool RuhesucheLoeschtKiller = false;
// The first iteration runs to its end whatever the hard limit says.
constexpr bool ErsteIterationOhneGrenze = false;
// With one line, a root move overtaken by a better one loses its exact mark.
constexpr bool WurzelUeberholtNichtExakt = false;

// --- Figures (scores in tenths of a centipawn, depths in half plies) ---

// Piece values of the capture tests, by piece type (none, pawn ... king).
constexpr int Steinwert[7] = {0, 1, 3, 3, 5, 10, 99};

// Null move: depth - (NullzugR + steps at NullzugStufe1 and NullzugStufe2).
constexpr int NullzugR = 8, NullzugStufe = 2, NullzugStufe1 = 20, NullzugStufe2 = 36;
// Futility below this depth, with the wider margin; the narrow one below depth 2.
constexpr int FutilitaetTiefe = 4, FutilitaetMargeFlach = 1000, FutilitaetMarge = 5000;
// Late-move reduction: above these move counts the reduction grows.
constexpr int ReduktionZaehlerMittel = 7, ReduktionZaehlerStark = 13;
// Table pre-pass from this depth on.
constexpr int VorpruefungTiefe = 10;
// A split point only after a first move that cost at least this many nodes.
constexpr int TeilungMindestKnoten = 18;
// Bitbase knowledge shifts the children's scores by this much.
constexpr int BitbaseVersatz = 1500;
// Capture search: margin 750 + 65 per capture level (qdepth is negative), 500 more
// against a lone piece; defended victims above a surplus of 530; queening pushes
// within 770 of alpha.
constexpr int RuheMarge = 750, RuheMargeJeStufe = 65, RuheMargeEinzelfigur = 500, RuheGedecktUeber = 530,
              RuheUmwandlungMarge = 770;
// Root: aspiration window and its growth per re-search (in 1024ths).
constexpr int Aspiration = 500, AspirationWachstum = 192;

}  // namespace Suchparameter
