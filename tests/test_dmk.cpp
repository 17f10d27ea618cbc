// The coded command files ".dmk": coder, decoder and their random draws.
#include "app/core/dmk.h"
#include "app/core/encodage.h"

#include <QRegularExpression>
#include <QSet>
#include <QTemporaryDir>

#include <gtest/gtest.h>

#include <algorithm>

namespace {

// A random command text of printable characters, accents, tabs and CR LF.
QString TexteAleatoire(std::mt19937& g, int longueur) {
    const QString alphabet = QStringLiteral(
        "abcdefghijklmnopqrstuvwxyzABCDEFGHIJKLMNOPQRSTUVWXYZ0123456789 ,.;:=+-*/%'\"()[]#!?§°µéèàçÉ€\t");
    std::uniform_int_distribution<int> car(0, int(alphabet.size()) - 1), fin(0, 30);
    QString t;
    while (t.size() < longueur) t += fin(g) == 0 ? QStringLiteral("\r\n") : QString(alphabet[car(g)]);
    return t;
}

} // namespace

// The permutation of each seed byte comes from the draw without repetition.
TEST(Dmk, EverySeedGivesAPermutationOf1To45) {
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
    EXPECT_EQ(PermutationDmk(77), PermutationDmk(77));
    EXPECT_TRUE(TirageDmk(17, 5, 20, -7.0f).isEmpty()); // more than the range holds
}

// 100 bytes of header, 52 random bytes of codes 32..253 (seed and length among them), the scrambled body.
TEST(Dmk, LayoutOfACodedFile) {
    std::mt19937 ale(1);
    const QString texte = QStringLiteral("' Commande\r\nArc = 30, 150, 60\r\n'# Fin\r\n");
    const QByteArray c = CodeDmk(texte, ale).value_or("");
    const int n = int(texte.toUtf8().size());
    ASSERT_EQ(c.size(), 152 + n + 45);
    EXPECT_EQ(c.left(100), EnteteDmk.toLatin1().leftJustified(98, ' ') + "\r\n");
    for (int i = 100; i < 152; ++i) EXPECT_TRUE(uint8_t(c[i]) >= 32 && uint8_t(c[i]) <= 253) << i;
    EXPECT_FALSE(c.contains("Arc = 30"));
}

// Random texts, trailing blanks (not coded), more than 32767 characters, every Windows-1252 character, the longest.
TEST(Dmk, TextsRoundTrip) {
    std::mt19937 g(20240611);
    std::uniform_int_distribution<int> longueur(0, 3000);
    std::vector<std::pair<QString, QString>> cas = {{"Arc = 1\r\n   ", "Arc = 1\r\n"}, {"    ", ""}};
    for (int i = 0; i < 300; ++i) {
        const QString t = TexteAleatoire(g, i < 50 ? i : longueur(g));
        cas.emplace_back(t, QString(t).remove(QRegularExpression(" +\\z")));
    }
    QString long_, windows1252;
    while (long_.size() < 40000) long_ += QStringLiteral("Trait = 1, 2, 3, 4 ' ligne %1\r\n").arg(long_.size());
    for (int b = 1; b < 256; ++b) windows1252 += CarWindows1252(uint8_t(b));
    cas.insert(cas.end(), {{long_, long_}, {windows1252 + "x", windows1252 + "x"},
                           {QString(LongueurMaxDmk, u'x'), QString(LongueurMaxDmk, u'x')}});
    for (const auto& [texte, attendu] : cas) {
        ErreurDmk err = ErreurDmk::Longueur, err2 = ErreurDmk::Longueur;
        const auto code = CodeDmk(texte, g, &err);
        ASSERT_TRUE(code);
        EXPECT_EQ(DecodeDmk(*code, &err2).value_or("?"), attendu) << texte.left(20).toStdString();
        EXPECT_EQ(std::pair(err, err2), std::pair(ErreurDmk::Aucune, ErreurDmk::Aucune));
    }
    ErreurDmk err = ErreurDmk::Aucune;
    EXPECT_FALSE(CodeDmk(QString(LongueurMaxDmk + 1, u'x'), g, &err)); // beyond the length bytes
    EXPECT_EQ(err, ErreurDmk::TropLong);
}

// The stored length is the only integrity test: a damaged file fails it.
TEST(Dmk, DamagedOrMissingFileGivesAnError) {
    std::mt19937 g(5);
    const QByteArray code = *CodeDmk(TexteAleatoire(g, 500), g);
    const QVector<int> P = PermutationDmk(uint8_t(code[146]));
    QByteArray longueur = code, graine = code;
    longueur[100 + P[2] - 1] = char(uint8_t(longueur[100 + P[2] - 1]) + 1);
    graine[146] = char(uint8_t(graine[146]) ^ 1); // another permutation
    for (const QByteArray& abime : {code.left(code.size() - 100), longueur, graine, code.left(120), QByteArray(),
                                    QByteArray(400, 'a')}) {
        ErreurDmk err = ErreurDmk::Aucune;
        EXPECT_FALSE(DecodeDmk(abime, &err));
        EXPECT_EQ(err, ErreurDmk::Longueur);
    }
    ErreurDmk err = ErreurDmk::Aucune;
    QString systeme;
    EXPECT_FALSE(LitDmk(QTemporaryDir().filePath("missing.dmk"), &err, &systeme));
    EXPECT_EQ(err, ErreurDmk::Lecture);
    EXPECT_FALSE(systeme.isEmpty());
}
