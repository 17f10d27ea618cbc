// Part 1.7: run-time input and output commands.
#include "outils.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

namespace {

QString Ecrit(const QTemporaryDir& d, const QString& nom, const QByteArray& contenu) {
    const QString chemin = d.filePath(nom);
    QFile f(chemin);
    f.open(QIODevice::WriteOnly);
    f.write(contenu);
    return chemin;
}

QString Lit(const QString& chemin) {
    QFile f(chemin);
    f.open(QIODevice::ReadOnly);
    return QString::fromUtf8(f.readAll());
}

std::unique_ptr<Session> LanceDans(const QTemporaryDir& d, const QString& lignes) {
    auto s = std::make_unique<Session>(Programme(lignes));
    s->etat.FichierPrincipal = d.filePath("main.dat");
    s->Execute();
    return s;
}

} // namespace

TEST(Es, LVarAfterTheLastLine) {
    QTemporaryDir d;
    Ecrit(d, "data.txt", "' header\r\nfirst\r\nsecond\r\n");
    auto s = LanceDans(d, "Open = data.txt\nLVar = %L\n%E1 = %EOF\nLVar = %L\n%E2 = %EOF\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(Variable(*s, "%E1"), QStringLiteral("0"));
    EXPECT_EQ(Variable(*s, "%L"), QStringLiteral("second"));
    EXPECT_EQ(Variable(*s, "%E2"), QStringLiteral("1"));
}

TEST(Es, DataFileWithOnlyComments) {
    QTemporaryDir d;
    Ecrit(d, "c.txt", "' one\r\n' two\r\n");
    auto s = LanceDans(d, "Open = c.txt\nLVar = %L\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty());
    EXPECT_EQ(Variable(*s, "%L"), QString());
    EXPECT_EQ(s->etat.PileFic[1].NbVar, 1);
}

TEST(Es, OpenWithoutParameterCloses) {
    QTemporaryDir d;
    Ecrit(d, "data.txt", "a\r\nb\r\n");
    auto s = LanceDans(d, "Open = data.txt\n%E1 = %EOF\nOpen\n%E2 = %EOF\n");
    EXPECT_EQ(Variable(*s, "%E1"), QStringLiteral("0"));
    EXPECT_EQ(Variable(*s, "%E2"), QStringLiteral("1"));
}

TEST(Es, OpenOfAMissingFileNamesItInTheBox) {
    QTemporaryDir d;
    auto s = LanceDans(d, "Open = absent.txt\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_TRUE(Messages(*s)[0].contains(d.filePath("absent.txt") +
                                         QStringLiteral(" : fichier non trouvé [File not found]\r\n\r\n")));
}

TEST(Es, LVarContinuationsMarksAndSkip) {
    QTemporaryDir d;
    Ecrit(d, "m.txt", "skip me\r\n[start]\r\nx\r\na, _\r\nb\r\n' [end]\r\nz\r\n");
    auto s = LanceDans(d, "Open = m.txt\nLVar = %L, 1, [start], [end]\n");
    EXPECT_EQ(Variable(*s, "%L"), QStringLiteral("a,b"));
}

TEST(Es, PrintAOfOneCharacterWritesNothing) {
    QTemporaryDir d;
    auto s = LanceDans(d, "OpenA = one.txt\nPrintA = y\nPrintA = ab\n");
    s->etat.FicPrintA.reset();
    EXPECT_EQ(Lit(d.filePath("one.txt")), QStringLiteral("ab"));
}

TEST(Es, PrintAEvaluatesAndContinuesOnOneLine) {
    QTemporaryDir d;
    auto s = LanceDans(d, "OpenA = out.txt\nPrintA = #1+1#\nPrintA = x\nPrintA = %CR\nPrintA = yz\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    s->etat.FicPrintA.reset();
    EXPECT_EQ(Lit(d.filePath("out.txt")), QStringLiteral("2\r\nyz"));
}

TEST(Es, OpenAKillDeletesAndNothingIsWritten) {
    QTemporaryDir d;
    QDir::setCurrent(d.path());
    Ecrit(d, "a.txt", "old");
    auto s = LanceDans(d, "OpenA = a.txt,,Kill\nPrintA = new\n");
    EXPECT_FALSE(QFile::exists(d.filePath("a.txt")));
}

TEST(Es, OptionsMaxVarWordIsCaseSensitive) {
    auto s = Lance("Options#$ = Var,100,,OptMaxVar\n");
    EXPECT_EQ(s->etat.PileFic[1].MaxVar, 64);
    auto t = Lance("Options#$ = Var,100,,OptMaxvar\n");
    EXPECT_EQ(t->etat.PileFic[1].MaxVar, 33);
    auto u = Lance("Options#$ = MaxIf,7,,OptMaxIf\n");
    EXPECT_EQ(u->etat.PileFic[1].MaxSi, 4);
    auto p = Lance("Options#$ = Plot,2000,,OptMaxPlot\n");
    EXPECT_EQ(p->etat.PileFic[1].MaxPlot, 2000000);
}

TEST(Es, InputTakesTheAnswerOrTheDefault) {
    Session s(Programme("Input = Rayon?§12, %R\nInput =< Nom, %N\n"));
    s.hote.Saisies = QStringList{QStringLiteral("25")};
    s.Execute();
    EXPECT_EQ(Variable(s, "%R"), QStringLiteral("25"));
    EXPECT_EQ(Variable(s, "%N"), QString());
    Session t(Programme("Input = Rayon?§12, %R\n"));
    t.Execute();
    EXPECT_EQ(Variable(t, "%R"), QStringLiteral("12"));
}

TEST(Es, InputWithABadNameFails) {
    auto s = Lance("Input = Rayon?, R\n");
    ASSERT_EQ(s->hote.Messages().size(), 1);
}

TEST(Es, ListeVarCancelEndsTheLevel) {
    auto s = Lance("%A = 1\nListeVar = note\nCT = 1, 1\n", {"cancel"});
    ASSERT_EQ(s->hote.Messages().size(), 1);
    EXPECT_EQ(s->hote.Messages()[0].titre, QStringLiteral("Mirel        ListeVar (n=1  L=2)  \r\n note"));
    EXPECT_TRUE(Lignes(*s).isEmpty());
    auto t = Lance("ListeVar\nCT = 1, 1\n");
    EXPECT_EQ(Lignes(*t).size(), 2);
}

// Part 1.7, common part of Open and OpenA: OpenA also sets the level's data
// name, comment character "'" and number.
TEST(Es, OpenATakesTheCommonPartWithOpen) {
    QTemporaryDir d;
    Ecrit(d, "d.txt", "'q\r\nlast\r\n");
    auto s = LanceDans(d, "OpenA = o.txt\n%E = %EOF\nOpenA\nOpen = d.txt, 35\nOpenA = o.txt\nLVar = %L\n");
    EXPECT_TRUE(s->hote.Messages().isEmpty()) << Messages(*s).join("|").toStdString();
    EXPECT_EQ(Variable(*s, "%E"), "0");
    EXPECT_EQ(Variable(*s, "%L"), "last"); // "'" is the comment character again
}

// Open in an included file: the included file's folder when the name is
// found neither as given nor beside the main file (no main file here).
TEST(Es, OpenInAnIncludedFileLooksInItsFolder) {
    QTemporaryDir d;
    QDir(d.path()).mkdir("sub");
    Ecrit(d, "sub/d.txt", "x\r\n");
    Ecrit(d, "sub/inc.dat", "Open = d.txt\r\nLVar = %t\r\n%IRE$-1v = %t\r\n");
    Session s(Programme("Fichier = " + d.filePath("sub/inc.dat") + "\n"));
    s.Execute();
    EXPECT_TRUE(s.hote.Messages().isEmpty()) << Messages(s).join("|").toStdString();
    EXPECT_EQ(Variable(s, "%v"), "x");
}

// Options#$: the right word with a value below 1 changes nothing; a wrong
// word puts the start value back.
TEST(Es, OptionsBelowOneChangesNothing) {
    auto s = Lance("Options#$ = Var,40,,OptMaxVar\nOptions#$ = Var,0,,OptMaxVar\n"
                   "Options#$ = MaxIf,3,,OptMaxIf\nOptions#$ = MaxIf,0,,OptMaxIf\n");
    EXPECT_EQ(s->etat.PileFic[1].MaxVar, 40);
    EXPECT_EQ(s->etat.PileFic[1].MaxSi, 3);
    auto t = Lance("Options#$ = Var,40,,OptMaxVar\nOptions#$ = Var,40,,Faux\n");
    EXPECT_EQ(t->etat.PileFic[1].MaxVar, 33);
}

// Part 1.1: events run at OpenA; Part 1.7: a waiting Shell#$ pumps events
// until its process has ended.
TEST(Es, OpenAAndAWaitingShellLetEventsRun) {
    QTemporaryDir d;
    auto base = LanceDans(d, "CT = 1, 1\n");
    auto o = LanceDans(d, "CT = 1, 1\nOpenA = p.txt\n");
    EXPECT_GT(o->hote.Pompages, base->hote.Pompages);
    auto sh = LanceDans(d, "CT = 1, 1\nShell#$ = sleep, JPG#, 1, 0.2\n");
    EXPECT_GT(sh->hote.Pompages, base->hote.Pompages + 3);
}
