// A small feed-forward network of layers joined by weighted connections, read
// from and written to a white-space separated text description:
//
//   n                      how many structure integers follow
//   L                      layers (at least 3): 0 input, L-1 output, hidden between
//   L x (layer, count)
//   k x (source layer, source node, target layer, target node)   k = (n - 1 - 2L) / 4
//   weights                per input node, then per hidden node, in creation order
//   [flag]                 absent or 0: done; else (integer, real) pairs per hidden
//                          and output node, as many as the node has incoming connections
//
// The last input node is the bias: the forward pass adds its weights once more,
// as if its value were 1 on top of whatever was fed to it.
#pragma once

#include <cstdint>
#include <istream>
#include <ostream>
#include <utility>
#include <vector>

class NeuroNetz_t {
public:
    class KnotenZiel_t;

    struct Verbindung_t {
        KnotenZiel_t* ziel;
        double gewicht;
    };

    class Knoten_t {
    public:
        virtual ~Knoten_t() = default;
        virtual void zufuehren(double) {}
        double wert = 0.0;
    };

    class KnotenEingabe_t : public Knoten_t {
    public:
        void zufuehren(double) override {}
        std::vector<Verbindung_t> verbindungen;
    };

    class KnotenZiel_t : public Knoten_t {
    public:
        void zufuehren(double x) override { summe += x; }
        double summe = 0.0;
        int eingaenge = 0;  // incoming connections: the length of its training data
    };

    class KnotenInnen_t : public KnotenZiel_t {
    public:
        std::vector<Verbindung_t> verbindungen;
        std::vector<std::pair<int32_t, double>> trainingsdaten;
    };

    class KnotenAusgabe_t : public KnotenZiel_t {};

    NeuroNetz_t() = default;
    virtual ~NeuroNetz_t() = default;
    // Connections point into the layers: a copy would point into the original.
    NeuroNetz_t(const NeuroNetz_t&) = delete;
    NeuroNetz_t& operator=(const NeuroNetz_t&) = delete;

    // Empties the network and prepares `schichten` layers (at least 3);
    // with `aufzeichnen` the structure is recorded so that it can be written.
    bool anlegen(int schichten, bool mitAufzeichnung);
    // Creates the nodes of one layer; each layer once, before its connections.
    bool schichtAnlegen(int schicht, int anzahl);
    // Adds a connection from an earlier layer to a later one.
    bool verbinden(int vonSchicht, int vonKnoten, int nachSchicht, int nachKnoten, double gewicht);

    bool lesen(std::istream& ein);
    bool schreiben(std::ostream& aus) const;

    // Usable: at least one input, one hidden and one output node.
    bool brauchbar() const;
    void leeren();

    void summenLoeschen();
    // Feeds input i with x; out-of-range inputs are ignored.
    void eingeben(int i, double x);
    void rechnen();
    // The value of output node i after `rechnen` (0 when there is none).
    double ausgabe(int i = 0) const;

    int anzahlEingaben() const { return static_cast<int>(eingabe.size()); }
    int anzahlAusgaben() const { return static_cast<int>(ausgabeSchicht.size()); }

    // For the trainer, which walks the nodes itself.
    std::vector<KnotenEingabe_t>& eingabeschicht() { return eingabe; }
    std::vector<std::vector<KnotenInnen_t>>& innenschichten() { return innen; }
    std::vector<KnotenAusgabe_t>& ausgabeschicht() { return ausgabeSchicht; }
    const std::vector<KnotenEingabe_t>& eingabeschicht() const { return eingabe; }
    const std::vector<std::vector<KnotenInnen_t>>& innenschichten() const { return innen; }
    const std::vector<KnotenAusgabe_t>& ausgabeschicht() const { return ausgabeSchicht; }

    // Keep a garbage description from asking for millions of nodes or layers.
    static constexpr int MaxKnotenJeSchicht = 65536;
    static constexpr int MaxSchichten = 1024;

private:
    // Outgoing list of a source node, or null when the node does not exist.
    std::vector<Verbindung_t>* ausgehend(int schicht, int knoten);
    KnotenZiel_t* zielKnoten(int schicht, int knoten);
    bool trainingsdatenLesen(std::istream& ein);

    bool aufzeichnen = false;
    std::vector<int32_t> beschreibung;
    std::vector<KnotenEingabe_t> eingabe;
    std::vector<std::vector<KnotenInnen_t>> innen;
    std::vector<KnotenAusgabe_t> ausgabeSchicht;
    int anzahlSchichten = 0;  // 0 until `anlegen`
};
