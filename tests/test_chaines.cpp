// The shipped string table (src/app/strings/), read as the program reads it.
#include "app/core/aide.h"
#include "language/chaines.h"

#include <QMap>
#include <QRegularExpression>
#include <QSet>

#include <gtest/gtest.h>

namespace {

const TableChaines& T() { return TableChaines::Standard(); }
const int kSections[] = {0, 400, 800, 1200}; // French, English, German, Spanish

// Row numbers (1 to 399) of the section that starts at `d`.
QSet<int> Rangs(int d) {
    QSet<int> r;
    for (int n : T().Numeros())
        if (n > d && n < d + 400) r.insert(n - d);
    return r;
}

// The parameter descriptions 301 to 370, but for 309, 318 and 342.
QSet<int> RangsDeDescription() {
    QSet<int> r;
    for (int n = 301; n <= 370; ++n) r.insert(n);
    return r - QSet<int>{309, 318, 342};
}

// The fields of a parameter description after its title: ";" ends a field,
// "$" splits it into rows, up to the comment line "@C" or the image line "@I".
QList<QStringList> Champs(const QString& description) {
    QList<QStringList> r;
    for (const QString& c : description.section("\n@", 0, 0).split(u';').mid(1)) r.append(c.split(u'$'));
    return r;
}

} // namespace

TEST(Chaines, SectionsHoldTheSameRows) {
    QSet<int> fr = Rangs(0);
    ASSERT_TRUE(fr.remove(3)); // the number of languages: first section only
    for (int d : {400, 800, 1200}) EXPECT_EQ(Rangs(d), fr) << d;
    for (int n = 201; n <= 264; ++n) EXPECT_TRUE(fr.contains(n)) << n;
    for (int n = 301; n <= 370; ++n) EXPECT_EQ(fr.contains(n), RangsDeDescription().contains(n)) << n;
    // Rows stay within a section; 371 on are the window's own texts, import and recovery messages.
    for (int n : fr) EXPECT_TRUE(n >= 5 && n < 400) << n;
}

TEST(Chaines, ExactTexts) {
    const QMap<int, QString> textes = {
        {3, "4"}, {10, "&Fichier"}, {24, "Supprimer          \tSuppr"}, {110, "Fichier"}, {115, "du fichier : "},
        {113, "Le nombre maximum d'imbrications d'appels de fichiers est de %1."}, {125, "Sélection"},
        {123, "Le nombre maximum d'imbrications d'appels de fichiers est de %1. "
              "Attention, lorsqu’un fichier s’appelle lui-même !"},
        {161, "     Ordre des commandes : \n          FormatI =\n          Centre{E;I;EI} =\n"
              "          Commandes de tracé"},
        {166, "Il faut indiquer les coordonnées X,Y d'un point comme \"0,0\" ou \"50,100\" ou \"0,0z\""},
        {181, "Le fichier t$ existe déjà et contient NbP points en NbT tracés."}, {172, "Annuler"}, {178, "OK"},
        {512, "No %1 font"}, {251, "Input ={;=;<}Sollicitation[§ValDefaut], %Variable"},
    };
    for (auto it = textes.begin(); it != textes.end(); ++it) EXPECT_EQ(LoadResString(it.key()), it.value()) << it.key();
    for (auto [d, nom, code] : {std::tuple{0, "Français", "fr"}, {400, "English", "en"}, {800, "Deutsch", "de"},
                                {1200, "Castellano", "es"}}) {
        EXPECT_EQ(LoadResString(d + 5) + "/" + LoadResString(d + 8), QString(nom) + "/" + code);
        for (int n : {6, 7, 9}) EXPECT_FALSE(LoadResString(d + n).trimmed().isEmpty()) << d + n;
    }
}

// A description: a title, fields of trimmed rows ("[x]" optional, "[...]" last, a blank alone: no parameter),
// an "@C xy" comment, an "@I n,x,y,w,h" image; the same fields and rows in every section.
TEST(Chaines, DescriptionsFollowTheFormsGrammarAlikeInEverySection) {
    static const QRegularExpression forme(R"(^[^@;$\n]*\S[^@;$\n]*;[^@]*)"
                                          R"((\n@C [LRC]\p{L}(\n[^@]*)?)?(\n@I \d+(,(\d*\.)?\d+){4})?$)");
    for (int n : RangsDeDescription()) {
        const QList<QStringList> fr = Champs(LoadResString(n));
        for (int s : kSections) {
            const QList<QStringList> champs = Champs(LoadResString(s + n));
            EXPECT_TRUE(forme.match(LoadResString(s + n)).hasMatch()) << s + n;
            ASSERT_EQ(champs.size(), fr.size()) << s + n;
            for (int i = 0; i < champs.size(); ++i) {
                ASSERT_EQ(champs[i].size(), fr[i].size()) << s + n;
                for (int j = 0; j < champs[i].size(); ++j) {
                    const QString& a = champs[i][j];
                    EXPECT_TRUE(a == " " ? champs.size() == 1
                                         : a == "[...]" ? i == champs.size() - 1
                                                        : !a.isEmpty() && a == a.trimmed() && !a.contains(u'\n') &&
                                                              !a.contains(u'\r') && a.startsWith(u'[') == a.endsWith(u']'))
                        << s + n << " '" << a.toStdString() << "'";
                    EXPECT_EQ(a.startsWith(u'['), fr[i][j].startsWith(u'[')) << s + n;
                }
            }
        }
    }
}

// A syntax row starts with its command's keyword, as a whole word, on one line.
TEST(Chaines, SyntaxRowsStartWithTheirKeyword) {
    QSet<int> syntaxes, descriptions;
    for (const RangeeSyntaxe& r : RangeesSyntaxe()) {
        syntaxes.insert(r.Syntaxe);
        descriptions.insert(r.Description);
        if (r.Description <= 362) EXPECT_EQ(r.Description, r.Syntaxe + 100) << r.Syntaxe;
        const QString mot = r.Syntaxe == 201   ? QString("'")
                            : r.Syntaxe == 202 ? QString("Suite")
                                               : QString::fromLatin1(r.Mots).section(u' ', 0, 0);
        for (int s : kSections) {
            const QString t = LoadResString(s + r.Syntaxe);
            EXPECT_FALSE(t.contains(u'\n')) << s + r.Syntaxe;
            EXPECT_TRUE(t.startsWith(mot, Qt::CaseInsensitive)) << s + r.Syntaxe << ": " << t.toStdString();
            if (mot[0].isLetter() && t.size() > mot.size())
                EXPECT_FALSE(t[mot.size()].isLetterOrNumber() || t[mot.size()] == u'_') << t.toStdString();
        }
    }
    // Every row but 241, the unknown command's, has its syntax; the list of
    // commands, the oriented values and the external command have none.
    for (int n = 201; n <= 264; ++n) EXPECT_EQ(syntaxes.contains(n), n != 241) << n;
    EXPECT_EQ(descriptions | QSet<int>({341, 357, 358, 359}), RangsDeDescription());
}

// A translation keeps placeholders (whole tokens; "%Var" may begin a name), tabs, messages' line breaks,
// a trailing blank and a menu's one access letter; Alt-C, Alt-P and Alt-L stay.
TEST(Chaines, TranslationsKeepPlaceholdersLayoutAndAccessLetters) {
    for (const QString j : {"%1", "t$", "NbP", "NbT", "Fic_Dess", "%CR", "%Var", "Plot{;P;S}",
                            "Centre{E;I;EI}", "If[T]", "RefCur"}) {
        const QRegularExpression re("(?<!\\w)" + QRegularExpression::escape(j) + (j == "%Var" ? "" : "(?!\\w)"));
        for (int n : Rangs(0))
            if (const qsizetype k = LoadResString(n).count(re))
                for (int s : kSections) EXPECT_EQ(LoadResString(s + n).count(re), k) << s + n << " " << j.toStdString();
    }
    int traduites = 0;
    for (int n : Rangs(0) - QSet<int>{3}) {
        const QString fr = LoadResString(n);
        for (int s : kSections) {
            const QString t = LoadResString(s + n);
            EXPECT_EQ(t.count(u'\t'), fr.count(u'\t')) << s + n;
            if (n < 200) EXPECT_EQ(t.count(u'\n'), fr.count(u'\n')) << s + n;
            EXPECT_EQ(t.endsWith(u' '), fr.endsWith(u' ')) << s + n;
            if (n >= 10 && n <= 88) EXPECT_EQ(t.count(u'&'), fr.contains(u'&') ? 1 : 0) << s + n;
            traduites += s == 400 && n > 200 && t != fr;
        }
    }
    EXPECT_GT(traduites, 100); // the syntax and description rows are translated
    for (auto [n, lettre] : {std::pair{75, u'c'}, {40, u'p'}, {83, u'l'}})
        for (int s : kSections) {
            const QString t = LoadResString(s + n);
            EXPECT_EQ(t.mid(t.indexOf(u'&') + 1, 1).toLower(), QString(QChar(lettre))) << s + n;
        }
}
