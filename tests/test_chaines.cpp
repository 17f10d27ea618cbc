// Tests of the string table of Part 4.11 (data files in src/app/strings/).
//
// The table is read through TableChaines::Standard(), the compiled-in
// resources, so these tests check the shipped files themselves.
#include "language/chaines.h"

#include <QMap>
#include <QRegularExpression>
#include <QSet>
#include <QStringList>

#include <gtest/gtest.h>

namespace {

const TableChaines& T() { return TableChaines::Standard(); }

// Offsets of the four offered sections (Part 4.5) and their names and codes.
struct Section {
    int decalage;
    const char* nom;
    const char* code;
};
const Section kSections[] = {
    {0, "fr", "fr"}, {400, "en", "en"}, {800, "de", "de"}, {1200, "es", "es"}};

// Row numbers (1 to 399) present in the section that starts at `decalage`.
QSet<int> RangsDeSection(int decalage) {
    QSet<int> r;
    for (int n : T().Numeros())
        if (n > decalage && n < decalage + 400) r.insert(n - decalage);
    return r;
}

// ---------------------------------------------------------------------------
// The description grammar of Part 4.4, as a checker.
//
//  - ";" ends a field; field 0 is the title, each further field a parameter;
//  - "$" inside a field separates alternatives, the sub-parameters, one row each;
//  - a row whose label begins with "[" and ends with "]", holding no CR or LF,
//    is optional;
//  - "[...]" as the last field: any number of further parameters;
//  - a line "@C xy" (x in L, R, C; y a letter) begins the comment area, which
//    runs to the image tag;
//  - a line "@I n,x,y,w,h" places an image and ends the text.
// A field that is one blank stands for a command without parameter (row 354).
struct Description {
    QString titre;
    QList<QStringList> champs;  // parameter fields, each split on "$"
    bool suite = false;         // last field is "[...]"
    QString commentaire;
    QString erreur;             // empty when the text follows the grammar
    // The form's rows in order, 1-based as Part 4.4 counts them (RepAVLV).
    QStringList Lignes() const {
        QStringList l;
        for (const QStringList& c : champs) l += c;
        return l;
    }
};

Description Analyse(const QString& texte) {
    Description d;
    QString corps = texte;
    const qsizetype posI = corps.indexOf(QStringLiteral("\n@I "));
    if (posI >= 0) {
        static const QRegularExpression image(
            QStringLiteral(R"(^\d+(,(\d*\.)?\d+){4}$)"));
        const QString tag = corps.mid(posI + 4);
        if (!image.match(tag).hasMatch()) {
            d.erreur = QStringLiteral("bad @I tag: ") + tag;
            return d;
        }
        corps.truncate(posI);
    }
    const qsizetype posC = corps.indexOf(QStringLiteral("\n@C "));
    if (posC >= 0) {
        const QString reste = corps.mid(posC + 4);
        if (reste.size() < 2 || !QStringLiteral("LRC").contains(reste[0]) ||
            !reste[1].isLetter() || (reste.size() > 2 && reste[2] != u'\n')) {
            d.erreur = QStringLiteral("bad @C tag");
            return d;
        }
        d.commentaire = reste.mid(3);
        corps.truncate(posC);
    }
    if (corps.contains(QStringLiteral("@C ")) || corps.contains(QStringLiteral("@I "))) {
        d.erreur = QStringLiteral("tag not at a line start, or repeated");
        return d;
    }
    const QStringList champs = corps.split(u';');
    d.titre = champs[0];
    if (d.titre.trimmed().isEmpty() || d.titre.contains(u'$') || d.titre.contains(u'\n')) {
        d.erreur = QStringLiteral("bad title");
        return d;
    }
    if (champs.size() < 2) {
        d.erreur = QStringLiteral("no parameter field");
        return d;
    }
    for (int i = 1; i < champs.size(); ++i) {
        const QString& champ = champs[i];
        if (champ == QStringLiteral("[...]")) {
            if (i != champs.size() - 1) {
                d.erreur = QStringLiteral("[...] is not the last field");
                return d;
            }
            d.suite = true;
            continue;
        }
        if (champ.trimmed().isEmpty()) {
            if (champs.size() != 2 || champ != QStringLiteral(" ")) {
                d.erreur = QStringLiteral("empty field %1").arg(i);
                return d;
            }
            d.champs.append(QStringList{champ});
            continue;
        }
        const QStringList alternatives = champ.split(u'$');
        for (const QString& a : alternatives) {
            if (a.trimmed().isEmpty() || a != a.trimmed() || a.contains(u'\n') ||
                a.contains(u'\r')) {
                d.erreur = QStringLiteral("bad row label '%1' in field %2").arg(a).arg(i);
                return d;
            }
            if (a.startsWith(u'[') != a.endsWith(u']')) {
                d.erreur = QStringLiteral("unbalanced optional row '%1'").arg(a);
                return d;
            }
        }
        d.champs.append(alternatives);
    }
    return d;
}

// ---------------------------------------------------------------------------
// Rows 201 to 264 and the keywords they describe. Rows 201 and 202 are the
// comment and the continuation; every command whose parameter row of Part 4.4
// is 3xx with xx up to 62 has its syntax at 2xx. OpenA and PrintA take 263 and
// 264, as Part 1.7 says; the commands with parameter rows 363 to 368 take, in
// that order, the rows that no parameter row claims: 209, 218, 242, 257, 258,
// 259. Row 241, partner of the list form 341, is the row of the unknown
// command (Part 1.2). ValR, ValD and Val1R, Val1D share the rows of Val and Val1.
const QMap<int, QString>& MotsDeSyntaxe() {
    static const QMap<int, QString> m = {
        {201, "'"},          {202, "Suite"},     {203, "Arc"},       {204, "Cadre"},
        {205, "CadreA"},     {206, "CentreE"},   {207, "CentreI"},   {208, "Cercle"},
        {209, "RefCur"},     {210, "Couleur"},   {211, "CT"},        {212, "Decal"},
        {213, "DemiLune"},   {214, "Droite"},    {215, "DroiteV"},   {216, "EpaisT"},
        {217, "Exposant"},   {218, "Bezier"},    {219, "Fichier"},   {220, "Fleche"},
        {221, "FormatI"},    {222, "Grad"},      {223, "Grad1"},     {224, "Inversion"},
        {225, "Percer"},     {226, "Plus"},      {227, "Police"},    {228, "Poly"},
        {229, "Sect"},       {230, "Separateur"}, {231, "Stop"},     {232, "TailleP"},
        {233, "Texte"},      {234, "TexteC"},    {235, "Trait"},     {236, "Val"},
        {237, "Val1"},       {238, "Voyant"},    {239, "X"},         {240, "?"},
        {241, ""},           {242, "Bezier_aGr"}, {243, "QA"},       {244, "Image"},
        {245, "ZoomIni"},    {246, "PalCoul"},   {247, "If"},        {248, "%"},
        {249, "Goto"},       {250, "ListeVar"},  {251, "Input"},     {252, "Open"},
        {253, "LVar"},       {254, "NPage"},     {255, "Chain"},     {256, "Plot"},
        {257, "AngRot"},     {258, "PolyR"},     {259, "Cote"},      {260, "IfT"},
        {261, "Else"},       {262, "EndIf"},     {263, "OpenA"},     {264, "PrintA"},
    };
    return m;
}

// The parameter rows of Part 4.4 ("Masque"), first row of each keyword group.
const QMap<QString, int>& RangsDeMasque() {
    static const QMap<QString, int> m = {
        {"'", 301},         {"Suite", 302},      {"Arc", 303},       {"Cadre", 304},
        {"CadreA", 305},    {"CentreE", 306},    {"CentreI", 307},   {"Cercle", 308},
        {"Couleur", 310},   {"CT", 311},         {"Decal", 312},     {"DemiLune", 313},
        {"Droite", 314},    {"DroiteV", 315},    {"EpaisT", 316},    {"Exposant", 317},
        {"Fichier", 319},   {"Fleche", 320},     {"FormatI", 321},   {"Grad", 322},
        {"Grad1", 323},     {"Inversion", 324},  {"Percer", 325},    {"Plus", 326},
        {"Police", 327},    {"Poly", 328},       {"Sect", 329},      {"Separateur", 330},
        {"Stop", 331},      {"TailleP", 332},    {"Texte", 333},     {"TexteC", 334},
        {"Trait", 335},     {"Val", 336},        {"Val1", 337},      {"Voyant", 338},
        {"X", 339},         {"?", 340},          {"QA", 343},        {"Image", 344},
        {"ZoomIni", 345},   {"PalCoul", 346},    {"If", 347},        {"%", 348},
        {"Goto", 349},      {"ListeVar", 350},   {"Input", 351},     {"Open", 352},
        {"LVar", 353},      {"NPage", 354},      {"Chain", 355},     {"Plot", 356},
        {"IfT", 360},       {"Else", 361},       {"EndIf", 362},     {"RefCur", 363},
        {"Bezier", 364},    {"Bezier_aGr", 365}, {"AngRot", 366},    {"PolyR", 367},
        {"Cote", 368},      {"OpenA", 369},      {"PrintA", 370},
    };
    return m;
}

// Rows of the description range that exist: all of 301 to 370 but 309, 318
// and 342, which no Part uses.
QSet<int> RangsDeDescription() {
    QSet<int> r;
    for (int n = 301; n <= 370; ++n)
        if (n != 309 && n != 318 && n != 342) r.insert(n);
    return r;
}

}  // namespace

// --- Shape of the table ----------------------------------------------------

TEST(Chaines, SectionsHaveTheSameRows) {
    QSet<int> fr = RangsDeSection(0);
    ASSERT_TRUE(fr.contains(3));
    fr.remove(3);  // "first section only" (Part 4.11)
    for (const Section& s : kSections) {
        if (s.decalage == 0) continue;
        QSet<int> autre = RangsDeSection(s.decalage);
        EXPECT_EQ(autre, fr) << s.nom;
        EXPECT_FALSE(T().Existe(s.decalage + 3)) << s.nom;
    }
}

TEST(Chaines, RussianStubHoldsRows1605To1609) {
    QList<int> ru;
    for (int n : T().Numeros())
        if (n >= 1600) ru.append(n);
    EXPECT_EQ(ru, (QList<int>{1605, 1606, 1607, 1608, 1609}));
    EXPECT_EQ(T().Texte(1608), QStringLiteral("ru"));
}

TEST(Chaines, RowsOfEachPartOfASection) {
    const QSet<int> fr = RangsDeSection(0);
    for (int n : {5, 6, 7, 8, 9}) EXPECT_TRUE(fr.contains(n)) << n;
    for (int n = 201; n <= 264; ++n) EXPECT_TRUE(fr.contains(n)) << n;
    for (int n = 301; n <= 370; ++n)
        EXPECT_EQ(fr.contains(n), RangsDeDescription().contains(n)) << n;
    // The rows that the Parts quote or use outside the table of Part 4.11.
    for (int n : {103, 172, 341, 359}) EXPECT_TRUE(fr.contains(n)) << n;
    for (int n : fr) EXPECT_TRUE(n == 3 || (n >= 5 && n <= 370)) << n;
}

// Part 4.11 says 967 rows. Four offered sections with the same rows, row 3 in
// the first only, and the 5 rows of the Russian stub make 4 E + 6 rows, which
// can't be 967 for any E; the table has every row that a Part names or uses.
TEST(Chaines, TotalRowCount) {
    const int commun = int(RangsDeSection(400).size());
    EXPECT_EQ(T().Taille(), 4 * commun + 1 + 5);
    EXPECT_EQ(commun, 251);
    EXPECT_EQ(T().Taille(), 1010);
}

// --- Texts quoted by the specification --------------------------------------

TEST(Chaines, FrenchRowsQuotedInTheSpec) {
    const QMap<int, QString> cites = {
        {3, "4"},
        {10, "&Fichier"},
        {24, "Supprimer          \tSuppr"},
        {37, "&Visualiser"},
        {87, "Aide Mirel &V2.6"},
        {110, "Fichier"},
        {112, "Pas de police %1"},
        {113, "Le nombre maximum d'imbrications d'appels de fichiers est de %1."},
        {114, "Erreur dans la ligne : "},
        {115, "du fichier : "},
        {119, "Erreur dans l'ordre des commandes ligne : "},
        {123, "Le nombre maximum d'imbrications d'appels de fichiers est de %1. "
              "Attention, lorsqu\u2019un fichier s\u2019appelle lui-m\u00eame !"},
        {124, "Erreur de commande dans la ligne : "},
        {125, "S\u00e9lection"},
        {126, "Erreur fichier"},
        {127, "Erreur : If[T] sans Endif"},
        {161, "     Ordre des commandes : \n          FormatI =\n          Centre{E;I;EI} =\n"
              "          Commandes de trac\u00e9"},
        {166, "Il faut indiquer les coordonn\u00e9es X,Y d'un point comme \"0,0\" ou "
              "\"50,100\" ou \"0,0z\""},
        {172, "Annuler"},
        {178, "OK"},
        {181, "Le fichier t$ existe d\u00e9j\u00e0 et contient NbP points en NbT trac\u00e9s."},
        {240, "? = [%Nom_Variable_X], [%Nom_Variable_Y][\u00a7AngleRotation]"},
        {250, "ListeVar [= Commentaire]"},
        {251, "Input ={;=;<}Sollicitation[\u00a7ValDefaut], %Variable"},
        {252, "Open = NomFichierDonn\u00e9es[, code du caract\u00e8re de commentaire]"},
        {253, "LVar = %NomVariable[, lignes \u00e0 sauter, marque de d\u00e9but, marque de fin]"},
        {263, "OpenA = NomFichier[,,Kill]"},
        {264, "PrintA = Texte"},
        {349, "Effectue un saut \u00e0 Etiquette;Etiquette\n@C CB\nUne \u00e9tiquette se "
              "d\u00e9finie en d\u00e9but de ligne par un nom suivi de \":\".\nExemple : E1:"},
        {354, "G\u00e9n\u00e8re une nouvelle page \u00e0 l'impression et efface l'\u00e9cran; "
              "\n@C CB\nPas de param\u00e8tre."},
        {366, "Valeur par d\u00e9faut pour l'angle de rotation;Angle anti-horaire de rotation "
              "autour de 0,0;[Nombre de niveaux de passation de l'angle (4)]\n@C CB\nAngle "
              "anti-horaire de rotation autour de 0,0, par d\u00e9faut, pour les commandes "
              "suivantes.\n@I 1,.03,.02,.15,.15"},
    };
    for (auto it = cites.begin(); it != cites.end(); ++it)
        EXPECT_EQ(LoadResString(it.key()), it.value()) << it.key();
}

TEST(Chaines, EnglishRowsQuotedInTheSpec) {
    EXPECT_EQ(LoadResString(512), QStringLiteral("No %1 font"));  // Part 3.3
    EXPECT_FALSE(LoadResString(560).isEmpty());                   // Part 4.1, step 1
}

TEST(Chaines, LanguageNamesAndCodes) {
    const char* const noms[] = {"Fran\u00e7ais", "English", "Deutsch", "Castellano"};
    for (int i = 0; i < 4; ++i) {
        EXPECT_EQ(LoadResString(kSections[i].decalage + 5), QString::fromUtf8(noms[i]));
        EXPECT_EQ(LoadResString(kSections[i].decalage + 8), QLatin1String(kSections[i].code));
        for (int n : {6, 7, 9})
            EXPECT_FALSE(LoadResString(kSections[i].decalage + n).trimmed().isEmpty());
    }
}

// --- Rows 301 to 370: the grammar of Part 4.4 -------------------------------

TEST(Chaines, DescriptionCheckerRejectsBadTexts) {
    EXPECT_TRUE(Analyse(QStringLiteral("Titre;a$[b];[...]")).erreur.isEmpty());
    EXPECT_FALSE(Analyse(QStringLiteral("Titre")).erreur.isEmpty());
    EXPECT_FALSE(Analyse(QStringLiteral("Titre;[a")).erreur.isEmpty());
    EXPECT_FALSE(Analyse(QStringLiteral("Titre;[...];a")).erreur.isEmpty());
    EXPECT_FALSE(Analyse(QStringLiteral("Titre;a;;b")).erreur.isEmpty());
    EXPECT_FALSE(Analyse(QStringLiteral("Titre;a\n@C XB\nx")).erreur.isEmpty());
    EXPECT_FALSE(Analyse(QStringLiteral("Titre;a\n@I 1,2,3")).erreur.isEmpty());
    EXPECT_FALSE(Analyse(QStringLiteral("Titre;a\n@I 1,.1,.1,.1,.1\nmore")).erreur.isEmpty());
    const Description d = Analyse(QStringLiteral("T;a$[b];c\n@C LB\nnote\n@I 1,.03,.02,.15,.15"));
    EXPECT_TRUE(d.erreur.isEmpty()) << d.erreur.toStdString();
    EXPECT_EQ(d.Lignes(), (QStringList{"a", "[b]", "c"}));
    EXPECT_EQ(d.commentaire, QStringLiteral("note"));
}

TEST(Chaines, EveryDescriptionRowParses) {
    for (const Section& s : kSections)
        for (int n : RangsDeDescription()) {
            const Description d = Analyse(LoadResString(s.decalage + n));
            EXPECT_TRUE(d.erreur.isEmpty())
                << s.nom << " " << n << ": " << d.erreur.toStdString();
        }
}

TEST(Chaines, DescriptionsHaveTheSameShapeInEverySection) {
    for (int n : RangsDeDescription()) {
        const Description fr = Analyse(LoadResString(n));
        for (const Section& s : kSections) {
            const Description d = Analyse(LoadResString(s.decalage + n));
            ASSERT_EQ(d.champs.size(), fr.champs.size()) << s.nom << " " << n;
            EXPECT_EQ(d.suite, fr.suite) << s.nom << " " << n;
            for (int i = 0; i < fr.champs.size(); ++i) {
                ASSERT_EQ(d.champs[i].size(), fr.champs[i].size()) << s.nom << " " << n;
                for (int j = 0; j < fr.champs[i].size(); ++j)
                    EXPECT_EQ(d.champs[i][j].startsWith(u'['), fr.champs[i][j].startsWith(u'['))
                        << s.nom << " " << n << " field " << i;
            }
        }
    }
}

// RepAVLV works on rows 11 and 15 of Bezier and BezierP, 17 and 21 of
// Bezier_aGr: the angle of a direction, the point it starts from standing in
// the two rows ahead, its length in the row behind (Part 4.4).
TEST(Chaines, BezierDirectionRowsAreWhereTheMaskLooks) {
    for (const Section& s : kSections) {
        const QStringList bez = Analyse(LoadResString(s.decalage + 364)).Lignes();
        const QStringList agr = Analyse(LoadResString(s.decalage + 365)).Lignes();
        ASSERT_GE(bez.size(), 16) << s.nom;
        ASSERT_GE(agr.size(), 22) << s.nom;
        for (int n : {11, 15}) {
            EXPECT_TRUE(bez[n - 1].contains(u'\u00b0')) << s.nom << " 364 row " << n;
            EXPECT_FALSE(bez[n].contains(u'\u00b0')) << s.nom << " 364 row " << n + 1;
        }
        for (int n : {17, 21}) {
            EXPECT_TRUE(agr[n - 1].contains(u'\u00b0')) << s.nom << " 365 row " << n;
            EXPECT_FALSE(agr[n].contains(u'\u00b0')) << s.nom << " 365 row " << n + 1;
        }
        EXPECT_TRUE(LoadResString(s.decalage + 364).contains(u'\u00b0'));
    }
}

// Part 4.4: a Cadre line's fifth parameter, colour and final colour, is two rows.
TEST(Chaines, CadreColourFieldHasTwoRows) {
    for (const Section& s : kSections)
        for (int n : {304, 305}) {
            const Description d = Analyse(LoadResString(s.decalage + n));
            ASSERT_GE(d.champs.size(), n == 304 ? 5 : 6) << s.nom;
            EXPECT_EQ(d.champs[n == 304 ? 4 : 5].size(), 2) << s.nom << " " << n;
        }
}

// --- Rows 201 to 264: one-line syntax ---------------------------------------

TEST(Chaines, SyntaxRowsStartWithTheirKeyword) {
    for (const Section& s : kSections)
        for (auto it = MotsDeSyntaxe().begin(); it != MotsDeSyntaxe().end(); ++it) {
            const QString texte = LoadResString(s.decalage + it.key());
            ASSERT_FALSE(texte.isEmpty()) << s.nom << " " << it.key();
            EXPECT_FALSE(texte.contains(u'\n')) << s.nom << " " << it.key();
            const QString& mot = it.value();
            if (mot.isEmpty()) continue;  // the unknown command
            EXPECT_TRUE(texte.startsWith(mot, Qt::CaseInsensitive))
                << s.nom << " " << it.key() << ": " << texte.toStdString();
            if (mot[0].isLetter() && texte.size() > mot.size()) {
                const QChar apres = texte[mot.size()];
                EXPECT_FALSE(apres.isLetterOrNumber() || apres == u'_')
                    << s.nom << " " << it.key() << ": " << texte.toStdString();
            }
        }
}

TEST(Chaines, SyntaxRowsFollowTheParameterRows) {
    QSet<int> vus;
    for (auto it = MotsDeSyntaxe().begin(); it != MotsDeSyntaxe().end(); ++it) {
        if (it.value().isEmpty()) continue;
        ASSERT_TRUE(RangsDeMasque().contains(it.value())) << it.value().toStdString();
        const int masque = RangsDeMasque().value(it.value());
        if (masque <= 362) EXPECT_EQ(it.key(), masque - 100) << it.value().toStdString();
        vus.insert(masque);
    }
    // Every keyword group of Part 4.4 has its syntax row.
    for (int m : RangsDeMasque()) EXPECT_TRUE(vus.contains(m)) << m;
    EXPECT_EQ(MotsDeSyntaxe().size(), 64);
}

// --- Translation ---------------------------------------------------------------

TEST(Chaines, PlaceholdersSurviveTranslation) {
    // Whole tokens: not glued to a letter, a digit or "_" on either side
    // ("t$" is not the end of "départ$"); "%Var" may begin a longer name.
    const QStringList jetons = {"%1", "t$", "NbP", "NbT", "Fic_Dess", "%CR", "%Var",
                                "Plot{;P;S}", "Centre{E;I;EI}", "If[T]", "RefCur"};
    for (const QString& j : jetons) {
        const QString apres = j == QStringLiteral("%Var") ? QString() : QStringLiteral(R"((?![\w]))");
        const QRegularExpression re(QStringLiteral(R"((?<![\w]))") +
                                    QRegularExpression::escape(j) + apres);
        for (int n : RangsDeSection(0)) {
            const QString fr = LoadResString(n);
            if (!re.match(fr).hasMatch()) continue;
            for (const Section& s : kSections)
                EXPECT_EQ(LoadResString(s.decalage + n).count(re), fr.count(re))
                    << s.nom << " " << n << " and " << j.toStdString();
        }
    }
}

TEST(Chaines, LineBreaksAndTabsSurviveTranslation) {
    for (int n : RangsDeSection(0)) {
        if (n == 3) continue;
        const QString fr = LoadResString(n);
        for (const Section& s : kSections) {
            const QString t = LoadResString(s.decalage + n);
            EXPECT_EQ(t.count(u'\t'), fr.count(u'\t')) << s.nom << " " << n;
            if (n < 200) EXPECT_EQ(t.count(u'\n'), fr.count(u'\n')) << s.nom << " " << n;
            EXPECT_EQ(t.endsWith(u' '), fr.endsWith(u' ')) << s.nom << " " << n;
        }
    }
}

TEST(Chaines, MenuCaptionsKeepAnAccessLetter) {
    for (int n : RangsDeSection(0)) {
        if (n < 10 || n > 88) continue;
        const bool acces = LoadResString(n).contains(u'&');
        for (const Section& s : kSections)
            EXPECT_EQ(LoadResString(s.decalage + n).count(u'&'), acces ? 1 : 0)
                << s.nom << " " << n;
    }
}

// Part 4.1: the captions give Alt-C for the colour dialog, Alt-P for the font
// list and Alt-L for the file list, which the mask's descriptions cite.
TEST(Chaines, ColourFontAndFileMenusKeepTheirLetters) {
    const QMap<int, QChar> lettres = {{75, u'c'}, {40, u'p'}, {83, u'l'}};
    for (const Section& s : kSections)
        for (auto it = lettres.begin(); it != lettres.end(); ++it) {
            const QString t = LoadResString(s.decalage + it.key());
            const qsizetype et = t.indexOf(u'&');
            ASSERT_GE(et, 0) << s.nom << " " << it.key();
            EXPECT_EQ(t[et + 1].toLower(), it.value()) << s.nom << " " << it.key();
        }
}

TEST(Chaines, ParameterRowsAreTranslated) {
    int differents = 0;
    for (int n = 201; n <= 370; ++n) {
        if (!T().Existe(n)) continue;
        if (LoadResString(n) != LoadResString(400 + n)) ++differents;
    }
    EXPECT_GT(differents, 100);
}
