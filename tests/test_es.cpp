// Run-time input and output: data files, PrintA, Input, ListeVar, Options#$.
#include "outils.h"

#include <QDir>
#include <QFile>
#include <QTemporaryDir>

#include <optional>

namespace {

std::unique_ptr<Session> LanceDans(const QTemporaryDir& d, const QString& lignes) {
    auto s = std::make_unique<Session>(Programme(lignes));
    s->etat.FichierPrincipal = d.filePath("main.dat");
    s->Execute();
    return s;
}

} // namespace

// Data files beside the main file ("<D>" is their folder): the variables read ("%a=1;%b=x"),
// the box if any, and the file PrintA wrote (none: it must not exist).
TEST(Es, DataFilesReadAndWritten) {
    struct Cas {
        const char* quoi;
        std::vector<std::pair<QString, QString>> fichiers;
        QString programme, attendus, message = {}, sortie = {};
        std::optional<QString> contenu = {};
    };
    const std::vector<Cas> cas = {
        {"LVar after the last line sets %EOF; the name's case does not matter", {{"data.txt", "' header\r\nfirst\r\nsecond\r\n"}},
         "Open = Data.TXT\nLVar = %L\n%E1 = %EOF\nLVar = %L\n%E2 = %EOF\n", "%E1=0;%L=second;%E2=1"},
        {"a data file of comments only gives an empty variable", {{"c.txt", "' one\r\n' two\r\n"}},
         "Open = c.txt\nLVar = %L\n%r = [%L\n", "%r=["},
        {"Open without a name closes", {{"data.txt", "a\r\nb\r\n"}}, "Open = data.txt\n%E1 = %EOF\nOpen\n%E2 = %EOF\n",
         "%E1=0;%E2=1"},
        {"LVar skips to the start mark, joins continued lines and stops at the end mark",
         {{"m.txt", "skip me\r\n[start]\r\nx\r\na, _\r\nb\r\n' [end]\r\nz\r\n"}},
         "Open = m.txt\nLVar = %L, 1, [start], [end]\n", "%L=a,b"},
        {"OpenA sets the data name, comment character and number as Open does", {{"d.txt", "'q\r\nlast\r\n"}},
         "OpenA = o.txt\n%E = %EOF\nOpenA\nOpen = d.txt, 35\nOpenA = o.txt\nLVar = %L\n", "%E=0;%L=last"},
        {"Open in a called file looks in the called file's folder",
         {{"sub/d.txt", "x\r\n"}, {"sub/inc.dat", "Open = d.txt\r\nLVar = %t\r\n%IRE$-1v = %t\r\n"}},
         "Fichier = <D>/sub/inc.dat\n", "%v=x"},
        {"PrintA evaluates, joins its texts until %CR, and writes no one-character text", {},
         "OpenA = out.txt\nPrintA = #1+1#\nPrintA = x\nPrintA = %CR\nPrintA = yz\n", "", "", "out.txt", "2\r\nyz"},
        {"OpenA with Kill deletes the file and opens none", {{"a.txt", "old"}}, "OpenA = a.txt,,Kill\nPrintA = new\n",
         "", "", "a.txt", std::nullopt},
        {"Open of a missing file names it", {}, "Open = absent.txt\n", "",
         "<D>/absent.txt : fichier non trouvé [File not found]\r\n\r\n"},
        {"Open of a name that exists but cannot be read fails without saying not found", {{"lib/x.txt", ""}},
         "Open = lib\n", "", "Open = lib\r\n\r\n%iRec"},
    };
    for (const Cas& c : cas) {
        SCOPED_TRACE(c.quoi);
        QTemporaryDir d;
        for (const auto& [nom, texte] : c.fichiers) {
            QDir().mkpath(QFileInfo(d.filePath(nom)).path());
            QFile f(d.filePath(nom));
            ASSERT_TRUE(f.open(QIODevice::WriteOnly));
            f.write(texte.toUtf8());
        }
        auto s = LanceDans(d, QString(c.programme).replace("<D>", d.path()));
        s->etat.FicPrintA.reset(); // closes the file
        const QStringList m = Messages(*s);
        EXPECT_EQ(m.size(), c.message.isEmpty() ? 0 : 1) << m.join("|").toStdString();
        if (!m.isEmpty()) EXPECT_TRUE(m[0].contains(QString(c.message).replace("<D>", d.path()))) << m[0].toStdString();
        for (const QString& paire : c.attendus.split(u';', Qt::SkipEmptyParts))
            EXPECT_EQ(Variable(*s, paire.section(u'=', 0, 0)), paire.section(u'=', 1)) << paire.toStdString();
        if (c.sortie.isEmpty()) continue;
        QFile f(d.filePath(c.sortie));
        EXPECT_EQ(f.exists(), c.contenu.has_value());
        if (c.contenu && f.open(QIODevice::ReadOnly)) EXPECT_EQ(QString::fromUtf8(f.readAll()), *c.contenu);
    }
}

// Input takes the answer, else the default after "§"; a bad variable name fails. Cancel in
// ListeVar's box ends the level.
TEST(Es, InputAndListeVar) {
    Session s(Programme("Input = Rayon?§12, %R\nInput =< Nom, %N\n"));
    s.hote.Saisies = QStringList{"25"};
    s.Execute();
    EXPECT_EQ(Variable(s, "%R") + "|" + Variable(s, "%N"), "25|");
    EXPECT_EQ(Variable(*Lance("Input = Rayon?§12, %R\n"), "%R"), "12");
    EXPECT_EQ(Variable(*Lance("Input =< Nom§  Jean , %N\n"), "%N"), "  Jean "); // "<" keeps the blanks
    EXPECT_EQ(Lance("Input = Rayon?, R\n")->hote.Messages().size(), 1);
    auto l = Lance("%A = 1\nListeVar = note\nCT = 1, 1\n", {"cancel"});
    ASSERT_EQ(l->hote.Messages().size(), 1);
    EXPECT_EQ(l->hote.Messages()[0].titre, "Mirel        ListeVar (n=1  L=2)  \r\n note");
    EXPECT_TRUE(Lignes(*l).isEmpty());
    EXPECT_EQ(Lignes(*Lance("ListeVar\nCT = 1, 1\n")).size(), 2);
}

// The word must be exact (case too), else the start value is back; a value below 1 changes nothing; Var <= 64.
// The options line is read with ",,," added, whatever the separator.
TEST(Es, OptionsSetTheLimitsOfTheLevel) {
    const std::tuple<QString, int CtxFic::*, int> cas[] = {
        {"Var,100,,OptMaxVar", &CtxFic::MaxVar, 64},
        {"Var,100,,OptMaxvar", &CtxFic::MaxVar, 33},
        {"Var,40,,OptMaxVar\nOptions#$ = Var,0,,OptMaxVar", &CtxFic::MaxVar, 40},
        {"Var,40,,OptMaxVar\nOptions#$ = Var,40,,Faux", &CtxFic::MaxVar, 33},
        {"MaxIf,7,,OptMaxIf", &CtxFic::MaxSi, 4},
        {"MaxIf,3,,OptMaxIf\nOptions#$ = MaxIf,0,,OptMaxIf", &CtxFic::MaxSi, 3},
        {"Plot,2000,,OptMaxPlot", &CtxFic::MaxPlot, 2000000},
        {"Var,1e12,,OptMaxVar", &CtxFic::MaxVar, 64},
        {"Plot,3e6,,OptMaxPlot", &CtxFic::MaxPlot, 50100}, // beyond a 32-bit count: the line fails
        // ",,," is added whatever the separator: under ";" the word must end the line with ";".
        {"Var,40,,OptMaxVar\nSeparateur = ;\nOptions#$ = Var;50;;OptMaxVar", &CtxFic::MaxVar, 33},
        {"Var,40,,OptMaxVar\nSeparateur = ;\nOptions#$ = Var;50;;OptMaxVar;", &CtxFic::MaxVar, 50},
    };
    for (const auto& [options, limite, attendu] : cas)
        EXPECT_EQ(Lance("Options#$ = " + options + "\n")->etat.PileFic[1].*limite, attendu) << options.toStdString();
    EXPECT_EQ(Lance("Options#$ = Plot,3e6,,OptMaxPlot\n")->hote.Messages().size(), 1);
}

// Events run at OpenA, and a waiting Shell#$ lets them run until its process ends.
TEST(Es, OpenAAndAWaitingShellLetEventsRun) {
    QTemporaryDir d;
    const int base = LanceDans(d, "CT = 1, 1\n")->hote.Pompages;
    EXPECT_GT(LanceDans(d, "CT = 1, 1\nOpenA = p.txt\n")->hote.Pompages, base);
    EXPECT_GT(LanceDans(d, "CT = 1, 1\nShell#$ = sleep, JPG#, 1, 0.2\n")->hote.Pompages, base + 3);
}
