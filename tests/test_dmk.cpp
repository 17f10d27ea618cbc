// Part 4.2: the coded command files `.dmk`.
#include "app/core/dmk.h"
#include "app/core/encodage.h"

#include <QFile>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

namespace {

// A random command text: lines of printable characters, accents, "§", "°",
// "µ", tabs, quotes, and CR LF line ends.
QString TexteAleatoire(std::mt19937& g, int longueur) {
    const QString alphabet = QStringLiteral(
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 ,.;:=+-*/%'\"()[]#!?§°µéèàçÉ€\t");
    std::uniform_int_distribution<int> car(0, int(alphabet.size()) - 1);
    std::uniform_int_distribution<int> fin(0, 30);
    QString t;
    while (t.size() < longueur) t += fin(g) == 0 ? QStringLiteral("\r\n") : QString(alphabet[car(g)]);
    return t;
}

QString RTrimBlancs(QString t) {
    while (!t.isEmpty() && t.back() == u' ') t.chop(1);
    return t;
}

} // namespace

TEST(Dmk, GeneratorIsTheOriginalsRnd) {
    GenerateurRnd g;
    EXPECT_FLOAT_EQ(g.Rnd(), 0.7055475f); // the first Rnd of a fresh generator
    GenerateurRnd h;
    EXPECT_FLOAT_EQ(h.Rnd(-1.0f), 0.2240070f); // Rnd(-1)
    const float a = h.Rnd();
    GenerateurRnd k;
    k.Rnd(-1.0f);
    EXPECT_FLOAT_EQ(k.Rnd(), a); // a negative seed resets the sequence
}

TEST(Dmk, DrawingRoutineGivesDistinctNumbersOfTheRange) {
    const QVector<int> r = TirageDmk(10, 5, 20, -7.0f);
    ASSERT_EQ(r.size(), 11);
    QSet<int> vus;
    for (int i = 1; i <= 10; ++i) {
        EXPECT_GE(r[i], 5);
        EXPECT_LE(r[i], 20);
        vus.insert(r[i]);
    }
    EXPECT_EQ(vus.size(), 10);
    EXPECT_EQ(TirageDmk(10, 5, 20, -7.0f), r); // same seed, same draw
    EXPECT_TRUE(TirageDmk(17, 5, 20, -7.0f).isEmpty()); // more than the range holds
}

TEST(Dmk, PermutationOfEverySeedIsAPermutationOf1To45) {
    QSet<QVector<int>> differentes;
    for (int graine = 32; graine <= 253; ++graine) {
        const QVector<int> p = PermutationDmk(uint8_t(graine));
        ASSERT_EQ(p.size(), 46);
        QVector<int> tri = p.mid(1);
        std::sort(tri.begin(), tri.end());
        for (int i = 0; i < 45; ++i) ASSERT_EQ(tri[i], i + 1) << graine;
        differentes.insert(p);
    }
    EXPECT_GT(differentes.size(), 200);
}

TEST(Dmk, LayoutHeaderRandomBytesAndLength) {
    std::mt19937 ale(1);
    const QString texte = QStringLiteral("' Commande\r\nArc = 30, 150, 60\r\n'# Fin\r\n");
    const auto code = CodeDmk(texte, ale);
    ASSERT_TRUE(code);
    const QByteArray& c = *code;
    const int n = int(texte.toUtf8().size());
    ASSERT_EQ(c.size(), 152 + n + 45);
    EXPECT_EQ(c.left(100), EnteteDmk.toLatin1().leftJustified(98, ' ') + "\r\n");
    EXPECT_EQ(EnteteDmk, "' Fichier de commande externe de Mirel/ Mirel external cmd file.");
    const QVector<int> P = PermutationDmk(uint8_t(c[146]));
    for (int pos = 101; pos <= 152; ++pos) {
        const int code8 = uint8_t(c[pos - 1]);
        if (pos == 100 + P[1] || pos == 100 + P[2]) continue;
        EXPECT_GE(code8, 32);
        EXPECT_LE(code8, 253);
    }
    EXPECT_EQ(uint8_t(c[100 + P[1] - 1]), 32 + n / 200);
    EXPECT_EQ(uint8_t(c[100 + P[2] - 1]), 32 + n % 200);
    // The body is not the text in clear.
    EXPECT_FALSE(c.contains("Arc = 30"));
}

TEST(Dmk, RoundTripOfRandomCommandTexts) {
    std::mt19937 g(20240611);
    std::uniform_int_distribution<int> longueur(0, 3000);
    for (int i = 0; i < 300; ++i) {
        const QString t = TexteAleatoire(g, i < 50 ? i : longueur(g));
        ErreurDmk err = ErreurDmk::Longueur;
        const auto code = CodeDmk(t, g, &err);
        ASSERT_TRUE(code);
        EXPECT_EQ(err, ErreurDmk::Aucune);
        const auto retour = DecodeDmk(*code, &err);
        ASSERT_TRUE(retour) << i;
        EXPECT_EQ(err, ErreurDmk::Aucune);
        EXPECT_EQ(*retour, RTrimBlancs(t)) << i;
    }
}

TEST(Dmk, TrailingBlanksAreTrimmed) {
    std::mt19937 g(3);
    const auto code = CodeDmk(QStringLiteral("Arc = 1\r\n   "), g);
    ASSERT_TRUE(code);
    EXPECT_EQ(DecodeDmk(*code).value_or("?"), "Arc = 1\r\n");
    const auto vide = CodeDmk(QStringLiteral("    "), g);
    ASSERT_TRUE(vide);
    EXPECT_EQ(DecodeDmk(*vide).value_or("?"), "");
}

TEST(Dmk, DamagedFileGivesLengthError) {
    std::mt19937 g(5);
    const QString t = TexteAleatoire(g, 500);
    const QByteArray code = *CodeDmk(t, g);
    ErreurDmk err = ErreurDmk::Aucune;
    // Truncated.
    EXPECT_FALSE(DecodeDmk(code.left(code.size() - 100), &err));
    EXPECT_EQ(err, ErreurDmk::Longueur);
    // A length byte changed.
    QByteArray abime = code;
    const QVector<int> P = PermutationDmk(uint8_t(code[146]));
    abime[100 + P[2] - 1] = char(uint8_t(abime[100 + P[2] - 1]) + 1);
    err = ErreurDmk::Aucune;
    EXPECT_FALSE(DecodeDmk(abime, &err));
    EXPECT_EQ(err, ErreurDmk::Longueur);
    // The seed byte changed: another permutation.
    abime = code;
    abime[146] = char(uint8_t(abime[146]) ^ 1);
    EXPECT_FALSE(DecodeDmk(abime, &err));
    // Shorter than the header and the random part.
    EXPECT_FALSE(DecodeDmk(code.left(120), &err));
    EXPECT_EQ(err, ErreurDmk::Longueur);
    EXPECT_FALSE(DecodeDmk(QByteArray(), &err));
    // A plain text file is no coded file.
    EXPECT_FALSE(DecodeDmk(QByteArray(400, 'a'), &err));
}

TEST(Dmk, TextLargerThan32767CharactersRoundTrips) {
    std::mt19937 g(7);
    QString t;
    while (t.size() < 40000) t += QStringLiteral("Trait = 1, 2, 3, 4, rouge ' ligne %1\r\n").arg(t.size());
    ASSERT_GT(t.size(), 32767);
    const auto code = CodeDmk(t, g);
    ASSERT_TRUE(code);
    EXPECT_EQ(DecodeDmk(*code).value_or("?"), t);
}

TEST(Dmk, TextTooLongForTheLengthBytesIsRefused) {
    std::mt19937 g(8);
    ErreurDmk err = ErreurDmk::Aucune;
    EXPECT_TRUE(CodeDmk(QString(LongueurMaxDmk, u'x'), g, &err));
    EXPECT_FALSE(CodeDmk(QString(LongueurMaxDmk + 1, u'x'), g, &err));
    EXPECT_EQ(err, ErreurDmk::TropLong);
}

TEST(Dmk, EveryWindows1252CharacterRoundTrips) {
    QString t;
    for (int b = 1; b < 256; ++b) t += CarWindows1252(uint8_t(b));
    t += QStringLiteral("x");
    std::mt19937 g(9);
    const auto code = CodeDmk(t, g);
    ASSERT_TRUE(code);
    EXPECT_EQ(DecodeDmk(*code).value_or("?"), t);
}

TEST(Dmk, CoderAndDecoderAgreeOnAnotherDrawingRoutine) {
    // The permutation could come from the run's TirageSansRepetition later:
    // any routine of that shape works when both sides use it.
    const FonctionTirage inverse = [](int n, int, int b, float) {
        QVector<int> r(n + 1, 0);
        for (int i = 1; i <= n; ++i) r[i] = b - (i - 1);
        return r;
    };
    std::mt19937 g(10);
    const QString t = QStringLiteral("Cercle = 0, 0, 10\r\n'# Fin\r\n");
    const auto code = CodeDmk(t, g, nullptr, inverse);
    ASSERT_TRUE(code);
    EXPECT_EQ(DecodeDmk(*code, nullptr, inverse).value_or("?"), t);
    EXPECT_NE(DecodeDmk(*code).value_or("?"), t);
}

TEST(Dmk, XorTableHas45Entries) {
    EXPECT_EQ(TableDmk.size(), 46u);
    int nonNuls = 0;
    for (size_t i = 1; i < TableDmk.size(); ++i) nonNuls += TableDmk[i] != 0;
    EXPECT_EQ(nonNuls, 45);
}

TEST(Dmk, LitDmkReadsACodedFile) {
    QTemporaryDir d;
    std::mt19937 g(11);
    const QString t = QStringLiteral("' MCE_Test\r\n'# Fin\r\nPlus = 0, 0\r\n");
    {
        QFile f(d.path() + "/MCE_Test.dmk");
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(*CodeDmk(t, g));
    }
    ErreurDmk err = ErreurDmk::Longueur;
    EXPECT_EQ(LitDmk(d.path() + "/MCE_Test.dmk", &err).value_or("?"), t);
    EXPECT_EQ(err, ErreurDmk::Aucune);
    QString systeme;
    EXPECT_FALSE(LitDmk(d.path() + "/missing.dmk", &err, &systeme));
    EXPECT_EQ(err, ErreurDmk::Lecture);
    EXPECT_FALSE(systeme.isEmpty());
}
