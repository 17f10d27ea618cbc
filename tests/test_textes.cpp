// Part 1.5: text and list functions.
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/hote.h"
#include "language/textes.h"

#include <QLocale>
#include <QSet>

#include <gtest/gtest.h>

namespace {

// A run state at level 1 with the given variables.
struct EtatTextes {
    Etat e;
    EtatTextes() { e.NiveauCourant = 1; }
    void Variable(int niveau, const QString& nom, const QString& valeur) {
        CtxFic& c = e.PileFic[niveau];
        ++c.NbVar;
        c.NomVar[c.NbVar] = nom;
        c.ValVar[c.NbVar] = valeur;
    }
};

std::string FT(const QString& texte) {
    Etat e;
    e.NiveauCourant = 1;
    QString t = texte;
    FonctionsTexte(e, t);
    return t.toStdString();
}

std::string Comptage(const QString& texte) {
    Etat e;
    e.NiveauCourant = 1;
    QString t = texte;
    FonctionsComptage(e, t);
    return t.toStdString();
}

std::string Format(const QString& texte) {
    Etat e;
    QString t = texte;
    FormatTexte(e, t);
    return t.toStdString();
}

std::string Diese(const QString& texte) {
    Etat e;
    e.NiveauCourant = 1;
    QString t = texte;
    EvalDiese(e, t);
    return t.toStdString();
}

// Pins the default locale for one test.
struct LocaleFixee {
    explicit LocaleFixee(const QLocale& l) { QLocale::setDefault(l); }
    ~LocaleFixee() { QLocale::setDefault(QLocale::c()); }
};

// A host that records the message boxes.
struct HoteTest : Hote {
    QStringList messages;
    Reponse Message(const QString&, const QString& texte, Boutons) override {
        messages << texte;
        return Reponse::Ok;
    }
    std::optional<QString> Saisie(const QString&, const QString&, const QString&) override { return {}; }
    QString TexteEditeur() const override { return {}; }
    void RemplaceTexteEditeur(int, int, const QString&) override {}
    int MarqueErreur(int, int) override { return 0; }
    int LigneDe(int) const override { return 0; }
    QString PressePapier() const override { return {}; }
    void EcritPressePapier(const QString&) override {}
    bool Lance(const QString&, bool) override { return false; }
};

} // namespace

// ---- Edge cases worth testing (Part 1.5)

TEST(FonctionsTexte, Lef3OfAbcdefIsAbc) { EXPECT_EQ(FT("LEF3(\"abcdef\")"), "abc"); }
TEST(FonctionsTexte, Lef0MeansTen) {
    EXPECT_EQ(FT("LEF0(\"abc\")"), "abc");
    EXPECT_EQ(FT("LEF0(\"abcdefghijkl\")"), "abcdefghij");
}
TEST(FonctionsTexte, Lef3OfShorterTextIsAll) { EXPECT_EQ(FT("LEF3(\"ab\")"), "ab"); }

TEST(FonctionsTexte, Rig2OfAbcdIsCd) { EXPECT_EQ(FT("RIG2(\"abcd\")"), "cd"); }

TEST(FonctionsTexte, RigrWithoutRigFails) {
    Etat e;
    e.NiveauCourant = 1;
    QString t = "RIGR(\"abcd\")";
    EXPECT_THROW(FonctionsTexte(e, t), ErreurProvoquee);
}

TEST(FonctionsTexte, UcasHandlesAccents) { EXPECT_EQ(QString::fromStdString(FT(u8"UCAS(\"aé\")")), u"AÉ"); }

TEST(FonctionsTexte, ReplReplacesEach) { EXPECT_EQ(FT("REPL(\"aXa\",\"a\",\"b\")"), "bXb"); }

TEST(FonctionsComptage, InsCapitalSUpperCasesTheText) {
    EXPECT_EQ(Comptage("INS(\"abc\",\"B\")"), "2");
    EXPECT_EQ(Comptage("Ins(\"abc\",\"B\")"), "0");
}

TEST(FonctionsComptage, NbpCountsSeparatorsInsideParentheses) {
    EXPECT_EQ(Comptage("NBP(1,2,(3,4))"), "4");
}

TEST(FormatTexte, Arr2InTheSystemFormat) {
    EXPECT_EQ(Format("ARR2(3.14159)"), "3.14");
    LocaleFixee fr(QLocale(QLocale::French, QLocale::France));
    EXPECT_EQ(Format("ARR2(3.14159)"), "3,14");
}

TEST(FormatTexte, Arr0OfTwoAndAHalfAsThePlatformRounds) {
    const std::string r = Format("ARR0(2.5)");
    EXPECT_TRUE(r == "2" || r == "3") << r;
}

TEST(FormatTexte, TxtWithDecimalComma) {
    LocaleFixee fr(QLocale(QLocale::French, QLocale::France));
    EXPECT_EQ(Format("TXT(1.5)"), "1,5");
}

TEST(EvalDiese, ExpressionBetweenHashes) { EXPECT_EQ(Diese("#1+2# mm"), "3 mm"); }
TEST(EvalDiese, DoubleHashIsOneHash) { EXPECT_EQ(Diese("##"), "#"); }

// ---- FonctionsTexte, further

TEST(FonctionsTexte, FormInsideText) {
    EXPECT_EQ(FT("x LEF3(\"abcdef\") y"), "x abc y");
    EXPECT_EQ(FT("lef2(\"abc\")"), "ab"); // the name in any case
}

TEST(FonctionsTexte, LeflReadsLef) {
    EtatTextes s;
    s.Variable(1, "%Lef", "2");
    QString t = "LEFL(\"abcd\")";
    FonctionsTexte(s.e, t);
    EXPECT_EQ(t.toStdString(), "ab");

    Etat e;
    e.NiveauCourant = 1;
    QString u = "LEFL(\"abcd\")";
    EXPECT_THROW(FonctionsTexte(e, u), ErreurProvoquee);
}

TEST(FonctionsTexte, RigrReadsRig) {
    EtatTextes s;
    s.Variable(1, "%Rig", "3");
    QString t = "RIGR(\"abcd\")";
    FonctionsTexte(s.e, t);
    EXPECT_EQ(t.toStdString(), "bcd");
}

TEST(FonctionsTexte, ReplIsCaseSensitive) {
    EXPECT_EQ(FT("REPL(\"aAa\",\"a\",\"b\")"), "bAb");
    EXPECT_EQ(FT("REPL(\"a,b\",\",\",\";\")"), "a;b");
}

TEST(FonctionsTexte, FormThatDoesNotFitStays) {
    EXPECT_EQ(FT("LEF3(abcdef)"), "LEF3(abcdef)");
    EXPECT_EQ(FT("REPL(\"a\",\"b\")"), "REPL(\"a\",\"b\")");
    EXPECT_EQ(FT("LEFX(\"abc\")"), "LEFX(\"abc\")");
    EXPECT_EQ(FT("UCAS(\"abc"), "UCAS(\"abc");
}

TEST(FonctionsTexte, NestedFormsInnerFirst) {
    EXPECT_EQ(FT("UCAS(\"LEF3(\"abcdef\")\")"), "ABC");
    EXPECT_EQ(FT("LEF2(\"x\") RIG1(\"yz\")"), "x z");
}

TEST(FonctionsTexte, ParenthesisBeforePositionFiveEndsTheScan) {
    // The "(" at 4 ends the scan before the form on its left is reached.
    EXPECT_EQ(FT("EF3(\"abc\")"), "EF3(\"abc\")");
    EXPECT_EQ(FT("(LEF3(\"abcd\"))"), "(abc)");
}

// ---- Counting forms, further

TEST(FonctionsComptage, InsGivesZeroWhenAbsentAndOnlyTheFirst) {
    EXPECT_EQ(Comptage("INS(\"abc\",\"x\")"), "0");
    EXPECT_EQ(Comptage("INS(\"ab\",\"B\")+INS(\"ab\",\"A\")"), "2+INS(\"ab\",\"A\")");
    EXPECT_EQ(Comptage("iNs(\"abc\",\"c\")"), "3"); // small s: exact search
    // The first form decides, even when it doesn't fit.
    EXPECT_EQ(Comptage("INS(x)+INS(\"ab\",\"B\")"), "INS(x)+INS(\"ab\",\"B\")");
}

TEST(FonctionsComptage, NbpFromTheLastToTheFirst) {
    EXPECT_EQ(Comptage("NBP(a)"), "1");
    EXPECT_EQ(Comptage("NBP()"), "0");
    EXPECT_EQ(Comptage("NBP(a,b)+NBP(c)"), "2+1");
    EXPECT_EQ(Comptage("NBP(NBP(1,2),3)"), "2");
    EXPECT_EQ(Comptage("NBP(a,b"), "NBP(a,b"); // left open: stays
}

TEST(FonctionsComptage, NbSubParameters) { EXPECT_EQ(Comptage(QStringLiteral("NB§(a§b§c)")), "3"); }

TEST(FonctionsComptage, NbcrCountsCarriageReturnsOfTheFirstForm) {
    EXPECT_EQ(Comptage("NBCR(a\rb\rc)"), "2");
    EXPECT_EQ(Comptage("NBCR(a)+NBCR(\r)"), "0+NBCR(\r)");
}

TEST(FonctionsComptage, LenAfterSubstitution) {
    EXPECT_EQ(Comptage("LEN(\"abc\")"), "3");
    EXPECT_EQ(Comptage("LEN(\"\")"), "0");
    EXPECT_EQ(Comptage("LEN(\"ab\")+LEN(\"c\")"), "2+LEN(\"c\")");
    EXPECT_EQ(Comptage("LEN(x)+LEN(\"c\")"), "LEN(x)+LEN(\"c\")");
    EtatTextes s;
    s.Variable(1, "%A", "hello");
    QString t = "LEN(\"%A\")";
    FonctionsComptage(s.e, t);
    EXPECT_EQ(t.toStdString(), "5");
}

// ---- FormatTexte, further

TEST(FormatTexte, TxtTrimsAndKeepsPointInC) {
    EXPECT_EQ(Format("TXT( 1.5 )"), "1.5");
    EXPECT_EQ(Format("a TXT(2) b"), "a 2 b");
    LocaleFixee fr(QLocale(QLocale::French, QLocale::France));
    EXPECT_EQ(Format("TXT(TXT(1.25))"), "1,25");
    EXPECT_EQ(Format("txt((1.5))"), "(1,5)");
}

TEST(FormatTexte, ArrReadsCommasAsPoints) {
    EXPECT_EQ(Format("ARR2(3,14159)"), "3.14");
    EXPECT_EQ(Format("ARR1(2)"), "2.0");
    EXPECT_EQ(Format("ARR0(7.4) V"), "7 V");
    EXPECT_EQ(Format("ARR3(-1.5)"), "-1.500");
    LocaleFixee fr(QLocale(QLocale::French, QLocale::France));
    EXPECT_EQ(Format("ARR1(1234.56)"), "1234,6"); // no group separator
}

TEST(FormatTexte, ArrWithoutDigitAndParenthesisStays) {
    EXPECT_EQ(Format("ARRET"), "ARRET");
    EXPECT_EQ(Format("ARR(2)"), "ARR(2)");
    EXPECT_EQ(Format("ARR2 (2)"), "ARR2 (2)");
}

// ---- EvalDiese, further

TEST(EvalDiese, HashWithoutClosingStays) {
    EXPECT_EQ(Diese("a#b"), "a#b");
    EXPECT_EQ(Diese("###"), "##");
    EXPECT_EQ(Diese("#1#+#2#"), "1+2");
    EXPECT_EQ(Diese("# #"), "");
}

TEST(EvalDiese, SubstitutesThenEvaluates) {
    EtatTextes s;
    s.Variable(1, "%A", "4");
    QString t = "x=#%A*2#";
    EvalDiese(s.e, t);
    EXPECT_EQ(t.toStdString(), "x=8");
}

TEST(EvalDiese, MarkerOfSharedVariablesIsNoDelimiter) {
    EtatTextes s;
    s.e.NiveauCourant = 2;
    s.Variable(0, "%x", "5");
    QString t = "#%IRE$#0x*2# mm";
    EvalDiese(s.e, t);
    EXPECT_EQ(t.toStdString(), "10 mm");
}

TEST(EvalDiese, FailureOfTheExpressionFailsTheLine) {
    Etat e;
    e.NiveauCourant = 1;
    QString t = "#1/0#";
    EXPECT_THROW(EvalDiese(e, t), ErreurProvoquee);
}

// ---- Random draw without repetition

TEST(TirageSansRepetition, DifferentNumbersInTheRange) {
    Etat e;
    const QVector<int> t = TirageSansRepetition(e, 5, 1, 10, -3);
    ASSERT_EQ(t.size(), 5);
    QSet<int> vus;
    for (const int v : t) {
        EXPECT_GE(v, 1);
        EXPECT_LE(v, 10);
        vus.insert(v);
    }
    EXPECT_EQ(vus.size(), 5);
}

TEST(TirageSansRepetition, SameSeedSameDraw) {
    Etat a, b;
    Rnd(b); // a different state before the draw doesn't matter
    const QVector<int> ta = TirageSansRepetition(a, 45, 1, 45, -17);
    const QVector<int> tb = TirageSansRepetition(b, 45, 1, 45, -17);
    EXPECT_EQ(ta, tb);
    QVector<int> trie = ta;
    std::sort(trie.begin(), trie.end());
    for (int i = 0; i < 45; ++i) EXPECT_EQ(trie[i], i + 1);
    EXPECT_NE(ta, TirageSansRepetition(a, 45, 1, 45, -18));
}

TEST(TirageSansRepetition, TooManyShowsTheMessage) {
    Etat e;
    HoteTest h;
    e.Host = &h;
    EXPECT_TRUE(TirageSansRepetition(e, 5, 1, 3, -1).isEmpty());
    ASSERT_EQ(h.messages.size(), 1);
    EXPECT_EQ(h.messages[0].toStdString(),
              "Il est impossible de tirer 5 nombres dans la fourchette comprise entre 1 et 3 "
              "qui ne comprend que 3 nombres, VOYONS !!!");
}

// ---- Majuscules

TEST(Majuscules, KeepsPositions) {
    EXPECT_EQ(Majuscules(QStringLiteral("aéß§")).size(), 4);
    EXPECT_EQ(Majuscules(QStringLiteral("aé")), QStringLiteral("AÉ"));
    EXPECT_EQ(Majuscules(QStringLiteral("$£µ")), QStringLiteral("$£µ"));
}
