// The coded command files `.dmk` (coder and decoder).
//
// Layout, positions 1-based, one byte each:
//   1..100   header "' Fichier de commande externe de Mirel/ Mirel external cmd file."
//            padded with blanks to 98 characters, then CR LF
//   101..152 random bytes of codes 32 to 253, except:
//   147      the seed byte: its negated code seeds the permutation P of 1..45
//   100+P(1) length high: 32 + length div 200
//   100+P(2) length low:  32 + length mod 200
//   153..    body: the text scattered by P in blocks of 45 and XORed with the table
//
// The text is coded as its UTF-8 bytes (older files hold 8-bit characters;
// UTF-8 keeps every character of the editor), so "length" counts bytes. The
// two length bytes hold at most 44,799 bytes of text.
#pragma once

#include <QByteArray>
#include <QString>
#include <QVector>

#include <array>
#include <cstdint>
#include <functional>
#include <optional>
#include <random>

// The 45-entry XOR table of the coding (our own values; a const table,
// filled at compile time).
extern const std::array<uint8_t, 46> TableDmk; // 1-based, entry 0 unused

inline const QString EnteteDmk =
    QStringLiteral("' Fichier de commande externe de Mirel/ Mirel external cmd file.");
constexpr int LongueurMaxDmk = (255 - 32) * 200 + 199; // 44,799 bytes

// The generator of the number drawing routine, `Rnd`: a 24-bit linear
// congruential generator, so that the permutation of a seed byte is the same
// in every coded file ever written. `Rnd(x)` with x < 0 reseeds from the bits
// of the 32-bit float x, then every call with x != 0 steps and returns a
// fraction in [0, 1). It is a value: no state outside it.
class GenerateurRnd {
public:
    float Rnd(float x = 1.0f);
    uint32_t Etat() const { return etat_; }

private:
    uint32_t etat_ = 0x50000; // the generator's state at start
};

// The random draw without repetition, on a generator of its own: `n`
// distinct whole numbers of a..b, 1-based (entry 0 unused), seeded by
// `graine` (negative). Empty when n exceeds the range. The message for a
// range too small and the save and restore of a shared generator belong to
// the run's version, `TirageSansRepetition(Etat&, ...)`.
QVector<int> TirageDmk(int n, int a, int b, float graine);

// A drawing routine of that shape: (n, a, b, seed) -> 1-based list. Coder and
// decoder take one so that both use the same; the default is `TirageDmk`.
using FonctionTirage = std::function<QVector<int>(int n, int a, int b, float graine)>;

// The permutation P (1-based, 45 entries) of a seed byte.
QVector<int> PermutationDmk(uint8_t graine, const FonctionTirage& tirage = TirageDmk);

enum class ErreurDmk {
    Aucune,
    TropLong,      // coder: more than LongueurMaxDmk bytes
    Longueur,      // decoder: the decoded length differs from the stored one
    Lecture,       // LitDmk: the file could not be read
};

// Codes a text: right-trimmed (blanks), as UTF-8. `ale` gives the random bytes.
// None (with the reason) when the text is too long.
std::optional<QByteArray> CodeDmk(const QString& texte, std::mt19937& ale,
                                  ErreurDmk* erreur = nullptr,
                                  const FonctionTirage& tirage = TirageDmk);
// Decodes a coded file. None (ErreurDmk::Longueur) when the result's length
// differs from the stored length, the only integrity test of a coded file.
// The bytes decode as UTF-8 when valid, otherwise as Windows-1252.
std::optional<QString> DecodeDmk(const QByteArray& octets, ErreurDmk* erreur = nullptr,
                                 const FonctionTirage& tirage = TirageDmk);
// Reads and decodes a coded file (for inclusion and external commands). None
// on a read error (the system's text in `erreurSysteme`) or a length error
// (`erreur`).
std::optional<QString> LitDmk(const QString& chemin, ErreurDmk* erreur = nullptr,
                              QString* erreurSysteme = nullptr);
