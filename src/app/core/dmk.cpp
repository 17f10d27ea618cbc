// The coded command files `.dmk`.
#include "app/core/dmk.h"

#include "app/core/encodage.h"

#include <QStringDecoder>

#include <algorithm>
#include <cstring>

const std::array<uint8_t, 46> TableDmk = {
    0x00, // unused: the table is 1-based
    0x9C, 0xD2, 0xC6, 0x57, 0x43, 0xD0, 0x27, 0x5E, 0xB8, 0xC2, 0xDE, 0x5F, 0x56, 0x05, 0x3C,
    0xB4, 0xAE, 0x4E, 0xE7, 0x99, 0x20, 0xDE, 0x0D, 0x69, 0x5C, 0xC0, 0x4D, 0xAF, 0x9B, 0x16,
    0x2F, 0x20, 0x08, 0x34, 0x54, 0x01, 0x3D, 0x4D, 0x4E, 0xD4, 0x6B, 0x67, 0x36, 0xD2, 0xFA,
};

namespace {

constexpr int TailleBloc = 45;
constexpr int PositionGraine = 147; // 1-based
constexpr int DebutCorps = 153;     // 1-based
constexpr int LongueurEntete = 100;

} // namespace

float GenerateurRnd::Rnd(float x) {
    if (x < 0) {
        uint32_t bits = 0;
        std::memcpy(&bits, &x, sizeof bits);
        etat_ = (bits + (bits >> 24)) & 0xFFFFFFu;
    }
    if (x != 0) etat_ = (etat_ * 0x43FD43FDu + 0xC39EC3u) & 0xFFFFFFu;
    return float(etat_) / 16777216.0f;
}

QVector<int> TirageDmk(int n, int a, int b, float graine) {
    const int taille = b - a + 1;
    if (n > taille || n < 0) return {};
    // 2. The array of the range; the generator seeded by the seed.
    QVector<int> reste(taille);
    for (int i = 0; i < taille; ++i) reste[i] = a + i;
    GenerateurRnd g;
    g.Rnd(graine);
    // 3. A position in the part not yet used; its value goes to the result and
    // the last value of the remaining part takes its place.
    QVector<int> r(n + 1, 0);
    int restants = taille;
    for (int k = 1; k <= n; ++k) {
        int pos = int(double(restants) * double(g.Rnd()));
        pos = std::clamp(pos, 0, restants - 1);
        r[k] = reste[pos];
        reste[pos] = reste[restants - 1];
        --restants;
    }
    return r;
}

QVector<int> PermutationDmk(uint8_t graine, const FonctionTirage& tirage) {
    return tirage(TailleBloc, 1, TailleBloc, -float(graine));
}

std::optional<QByteArray> CodeDmk(const QString& texte, std::mt19937& ale, ErreurDmk* erreur,
                                  const FonctionTirage& tirage) {
    if (erreur) *erreur = ErreurDmk::Aucune;
    // The text right-trimmed; n its length; 90 blanks appended.
    QString t = texte;
    while (!t.isEmpty() && t.back() == u' ') t.chop(1);
    QByteArray source = t.toUtf8();
    const int n = int(source.size());
    if (n > LongueurMaxDmk) {
        if (erreur) *erreur = ErreurDmk::TropLong;
        return std::nullopt;
    }
    source.append(2 * TailleBloc, ' ');

    // Header, padded to 98 characters, then CR LF.
    QByteArray sortie = EnteteDmk.toLatin1().leftJustified(98, ' ', true);
    sortie += "\r\n";
    // 52 random bytes of codes 32 to 253: 32 plus 222 times a random fraction.
    std::uniform_real_distribution<double> fraction(0.0, 1.0);
    for (int i = 0; i < 52; ++i) sortie += char(32 + int(222.0 * fraction(ale)));
    auto octet = [&](int pos1) -> char& { return sortie[pos1 - 1]; };
    const uint8_t graine = uint8_t(octet(PositionGraine));
    const QVector<int> P = PermutationDmk(graine, tirage);
    octet(LongueurEntete + P[1]) = char(32 + n / 200);
    octet(LongueurEntete + P[2]) = char(32 + n % 200);

    // Body: for k = 1 to n + 45, p = P(k mod 45 + 1); the source byte at
    // 45 * ((k - 1) div 45) + p, XOR table entry p.
    sortie.reserve(sortie.size() + n + TailleBloc);
    for (int k = 1; k <= n + TailleBloc; ++k) {
        const int p = P[k % TailleBloc + 1];
        const int pos = TailleBloc * ((k - 1) / TailleBloc) + p;
        sortie += char(uint8_t(source[pos - 1]) ^ TableDmk[p]);
    }
    return sortie;
}

std::optional<QString> DecodeDmk(const QByteArray& octets, ErreurDmk* erreur,
                                 const FonctionTirage& tirage) {
    if (erreur) *erreur = ErreurDmk::Aucune;
    auto echec = [&]() -> std::optional<QString> {
        if (erreur) *erreur = ErreurDmk::Longueur;
        return std::nullopt;
    };
    if (octets.size() < DebutCorps - 1) return echec();
    auto octet = [&](int pos1) { return uint8_t(octets[pos1 - 1]); };
    const QVector<int> P = PermutationDmk(octet(PositionGraine), tirage);
    if (P.size() != TailleBloc + 1) return echec();
    const int longueur = (octet(LongueurEntete + P[1]) - 32) * 200 + (octet(LongueurEntete + P[2]) - 32);

    // Blocks of 45 blanks: the byte at offset i of the block goes to position
    // P(i mod 45 + 1) after XOR with that table entry. The body's last block
    // may be partial; what it lacks stays blank.
    QByteArray r;
    r.reserve(octets.size());
    for (qsizetype debut = DebutCorps; debut <= octets.size(); debut += TailleBloc) {
        QByteArray bloc(TailleBloc, ' ');
        for (int i = 1; i <= TailleBloc && debut + i - 1 <= octets.size(); ++i) {
            const int p = P[i % TailleBloc + 1];
            bloc[p - 1] = char(uint8_t(octets[debut + i - 2]) ^ TableDmk[p]);
        }
        r += bloc;
    }
    while (!r.isEmpty() && r.back() == ' ') r.chop(1);
    if (r.size() != longueur) return echec();
    // UTF-8 when valid (a leading U+FEFF of the text is kept), else Windows-1252.
    QStringDecoder utf8(QStringDecoder::Utf8, QStringDecoder::Flag::ConvertInitialBom);
    QString texte = utf8.decode(r);
    if (utf8.hasError()) texte = DecodeWindows1252(r);
    return texte;
}

std::optional<QString> LitDmk(const QString& chemin, ErreurDmk* erreur, QString* erreurSysteme) {
    const auto octets = LitOctets(chemin, erreurSysteme);
    if (!octets) {
        if (erreur) *erreur = ErreurDmk::Lecture;
        return std::nullopt;
    }
    return DecodeDmk(*octets, erreur);
}
