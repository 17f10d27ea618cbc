// Printing on paper: a QPrinter writing PDF, or a real cups-pdf queue of a private CUPS daemon, so that
// what reaches the printer can be measured.
#include "outils_fenetre.h"

#include "app/impression.h"

#include <QPrinter>
#include <QRegularExpression>
#include <QThread>

#include <dlfcn.h>
#include <pwd.h>
#include <sys/stat.h>
#include <unistd.h>

namespace {

std::unique_ptr<QPrinter> PdfImprimante(const QString& fichier) {
    auto p = std::make_unique<QPrinter>(QPrinter::HighResolution);
    p->setOutputFormat(QPrinter::PdfFormat);
    p->setOutputFileName(fichier);
    p->setPageSize(QPageSize(QPageSize::A4));
    return p;
}

struct InfoPdf { double largeurMm = 0, hauteurMm = 0; int pages = 0; QString titre; };

InfoPdf Info(const QString& pdf) {
    const QString t = Execute("pdfinfo", {pdf}).out;
    const auto taille = QRegularExpression(R"(Page size:\s+([0-9.]+) x ([0-9.]+) pts)").match(t);
    return {taille.captured(1).toDouble() / 72 * 25.4, taille.captured(2).toDouble() / 72 * 25.4,
            QRegularExpression(R"(Pages:\s+(\d+))").match(t).captured(1).toInt(),
            QRegularExpression(R"(Title:\s+([^\n]*)\n)").match(t).captured(1)};
}

QString TextePdf(const QString& pdf, int page = 1) {
    const QString n = QString::number(page);
    return QString::fromUtf8(Execute("pdftotext", {"-f", n, "-l", n, pdf, "-"}).out);
}

// Expects the centres of the ink left and right of `milieu` mm, on the first page drawn at 10 pixels a mm,
// `ecart` mm apart on one level; gives the left one, in mm from the top left corner.
QPointF EncreEcartee(const QString& pdf, const QTemporaryDir& d, double ecart, double milieu = 105) {
    const QString base = d.filePath("page");
    Execute("pdftoppm", {"-r", "254", "-png", "-singlefile", "-f", "1", "-l", "1", pdf, base});
    const QImage im(base + ".png");
    QPointF somme[2];
    double poids[2] = {0, 0};
    for (int y = 0; y < im.height(); ++y)
        for (int x = 0; x < im.width(); ++x) {
            const double w = (255 - qGray(im.pixel(x, y))) / 255.0;
            const int c = x < milieu * 10 ? 0 : 1;
            if (w >= 0.02) { somme[c] += QPointF(x + 0.5, y + 0.5) * w; poids[c] += w; }
        }
    const QPointF gauche = somme[0] / poids[0] / 10.0, droite = somme[1] / poids[1] / 10.0;
    EXPECT_NEAR(droite.x() - gauche.x(), ecart, 0.1);
    EXPECT_NEAR(droite.y() - gauche.y(), 0, 0.1);
    return gauche;
}

// Two crosses 100 mm apart, 1 mm pen, about the printer's centre at 50, 150.
const char* const DeuxCroix = "CentreI = 50, 150, N\nEpaisT = 1mm\nCT = 0, 0\nCT = 100, 0\n";

// The print and font dialogs, answered by the test; unset answers cancel, and so does a listing's dialog
// that does not offer the selection.
struct DialoguesTest : DialoguesImpression {
    std::function<void(QPrinter&)> choix, code;
    std::optional<QFont> police;
    bool ChoixImprimante(QWidget*, QPrinter& p) override { return choix && (choix(p), true); }
    bool ImpressionCode(QWidget*, QPrinter& p, bool selection) override { return selection && code && (code(p), true); }
    std::optional<QFont> Police(QWidget*, const QFont&, bool) override { return police; }
};

DialoguesTest& Dialogues(Form1& f) {
    f.DialoguesImp = std::make_unique<DialoguesTest>();
    return static_cast<DialoguesTest&>(*f.DialoguesImp);
}

void Ecrit(const QString& fichier, const QString& texte) {
    QFile f(fichier);
    if (f.open(QIODevice::WriteOnly | QIODevice::Truncate)) f.write(texte.toUtf8());
}

// A private CUPS daemon with one cups-pdf queue, its configuration, spool and socket in a folder of its
// own. This process and the mirel processes it starts print to it; `erreur` says why it could not start.
struct CupsPrive {
    static constexpr const char* File = "MirelPdf";
    QTemporaryDir d;
    QProcess cupsd;
    QString erreur;
    CupsPrive() {
        const QString r = d.path(), socket = r + "/cups.sock";
        // The filters run as the lp user: they must reach the spool and write in tmp.
        for (const char* sous : {"spool", "cache", "state", "log", "tmp"}) QDir(r).mkdir(sous);
        chmod(qPrintable(r), 0755), chmod(qPrintable(r + "/tmp"), 01777);
        Ecrit(r + "/cupsd.conf", "Listen " + socket + "\nBrowsing No\nDefaultAuthType None\n<Location />\nOrder "
              "allow,deny\nAllow all\n</Location>\n<Policy default>\n<Limit All>\nOrder deny,allow\n</Limit>\n</Policy>\n");
        Ecrit(r + "/cups-files.conf", QString("ServerRoot %1\nRequestRoot %1/spool\nCacheDir %1/cache\nStateDir "
              "%1/state\nTempDir %1/tmp\nErrorLog %1/log/error_log\n").arg(r));
        cupsd.start("/usr/sbin/cupsd", {"-f", "-c", r + "/cupsd.conf", "-s", r + "/cups-files.conf"});
        for (int i = 0; i < 200 && !QFile::exists(socket) && cupsd.waitForStarted(); ++i) QThread::msleep(50);
        if (!QFile::exists(socket)) {
            erreur = "cupsd did not start (bash scripts/setup.sh installs cups): " + cupsd.errorString() + cupsd.readAllStandardError();
            return;
        }
        // Rendered by cairo on its way to PostScript, the job keeps its text readable.
        const SortieProcessus a = Execute("lpadmin", {"-h", socket, "-p", File, "-E", "-v", "cups-pdf:/", "-P",
            "/usr/share/ppd/cups-pdf/CUPS-PDF_opt.ppd", "-o", "pdftops-renderer-default=pdftocairo"});
        if (a.code != 0) erreur = "lpadmin cannot add a cups-pdf queue (printer-driver-cups-pdf): " + a.err;
        qputenv("CUPS_SERVER", socket.toLocal8Bit());
        Serveur(qPrintable(socket)); // this process's print support may know a server already
    }
    ~CupsPrive() {
        Serveur(nullptr), qunsetenv("CUPS_SERVER");
        cupsd.terminate();
        if (!cupsd.waitForFinished(5000)) cupsd.kill();
    }
    static void Serveur(const char* s) {
        if (void* lib = dlopen("libcups.so.2", RTLD_NOW))
            if (auto f = reinterpret_cast<void (*)(const char*)>(dlsym(lib, "cupsSetServer"))) f(s);
    }
    // The PDF that cups-pdf wrote for the job titled `titre` (in the user's PDF folder), taken once it stops
    // growing; empty after 20 s.
    static QString Sortie(const QString& titre) {
        const QDir dossier(QString::fromLocal8Bit(getpwuid(getuid())->pw_dir) + "/PDF");
        qint64 taille = -1;
        for (int i = 0; i < 100; ++i, QThread::msleep(200))
            for (const QFileInfo& f : dossier.entryInfoList({titre + "*.pdf"}, QDir::Files)) {
                if (f.size() > 0 && f.size() == taille) return f.filePath();
                taille = f.size();
            }
        return {};
    }
};

} // namespace

// The job holds the sheet at its true size (FormatI turns it), named after the file, with the two crosses
// 100 mm apart at their place; each NPage is one more sheet (two in a row leave a blank one), but none
// after the last drawing; a failing line shows its box, the job closed.
TEST(Impression, PdfJobAtTrueSize) {
    QTemporaryDir d;
    const QString pdf = d.filePath("job.pdf");
    struct Cas { QString programme, fichier; int statut, pages; double w, h; QString titre; };
    for (const Cas& c : {Cas{DeuxCroix, d.filePath("cadran bleu.dat"), 0, 1, 210, 297, "cadran bleu"},
                         Cas{QString(DeuxCroix) + "NPage\nCT = 10, 10\nNPage\nCT = 20, 20\n", "a.dat", 0, 3, 210, 297, "a"},
                         Cas{"FormatI = Paysage\nCT = 10, 10\n", "", 0, 1, 297, 210, "Mirel"},
                         Cas{"CT = 10, 10\nNPage\nNPage\nCT = 20, 20\nNPage\n", "", 0, 3, 210, 297, "Mirel"},
                         Cas{"CT = 10, 10\nMotInconnu = 3\n", "", 1, 1, 210, 297, "Mirel"}}) {
        SCOPED_TRACE(c.programme.toStdString());
        const ResultatImpression r = ImprimeProgramme(Programme(c.programme), c.fichier, *PdfImprimante(pdf), Reglages());
        ASSERT_EQ(r.statut, c.statut) << r.erreur.toStdString();
        EXPECT_EQ(r.messages.size(), c.statut);
        const InfoPdf i = Info(pdf);
        EXPECT_TRUE(std::abs(i.largeurMm - c.w) < 0.1 && std::abs(i.hauteurMm - c.h) < 0.1) << i.largeurMm << " x " << i.hauteurMm;
        EXPECT_EQ(std::pair(i.pages, i.titre), std::pair(c.pages, c.titre));
        if (!c.programme.startsWith(DeuxCroix)) continue;
        EXPECT_NEAR(EncreEcartee(pdf, d, 100).x(), 50, 0.2);
    }
}

// The window's print: Esc stops a print that does not end, the job is closed with what was drawn, the
// view's pan comes back and the screen's run that follows (stopped by Esc too) still comes. An Esc
// pressed while the page is being turned, before the job opens, ends the print with no job.
TEST(Impression, WindowPrintStopsAtEscAndRedraws) {
    Banc b;
    Form1& f = b.Demarre("Arc = 30, 150, 60\n", "boucle.dat");
    f.RTB1->setPlainText("Arc = 30, 150, 60\nE1:\nGoto E1\n");
    struct Cas { int premierEsc; bool imprime; };
    for (const Cas& c : {Cas{3000, true}, Cas{100, false}}) {
        SCOPED_TRACE(c.premierEsc);
        std::tie(f.e.Repere.DecalageVueX, f.e.Repere.DecalageVueY) = std::pair(12.0, -7.0);
        const int avant = f.NombreExecutions;
        QTimer esc;
        QObject::connect(&esc, &QTimer::timeout, [&f, &esc] {
            QTest::keyClick(&f, Qt::Key_Escape);
            esc.setInterval(200);
        });
        esc.start(c.premierEsc);
        const QString pdf = b.travail.filePath(QString("boucle%1.pdf").arg(c.premierEsc));
        b.boites.vues.clear();
        EXPECT_EQ(f.Imprimer(PdfImprimante(pdf).get()), c.imprime);
        esc.stop();
        EXPECT_TRUE(f.NombreExecutions == avant + 2 && f.Mnu_Visualiser->isEnabled());
        EXPECT_EQ(std::pair(f.e.Repere.DecalageVueX, f.e.Repere.DecalageVueY), std::pair(12.0, -7.0));
        EXPECT_EQ(b.boites.vues.size(), 0u);
        EXPECT_EQ(QFileInfo::exists(pdf), c.imprime);
        if (!c.imprime) continue;
        const InfoPdf i = Info(pdf);
        EXPECT_EQ(std::pair(i.pages, i.titre), std::pair(1, QString("boucle")));
    }
    // A close asked while the page is being turned: no job, no redraw, and the window closes.
    f.Mnu_EnregistrerS_Click();
    const int avant = f.NombreExecutions;
    QTimer::singleShot(100, &f, [&f] { f.close(); });
    EXPECT_FALSE(f.Imprimer(PdfImprimante(b.travail.filePath("fermeture.pdf")).get()));
    EXPECT_EQ(f.NombreExecutions, avant + 1);
    EXPECT_TRUE(Attend([&] { return !f.isVisible(); }));
}

// A printer that cannot open the job fails the first line that draws, with its own box and no marked
// line; the run goes on on the pane, so the caller of a failed file draws on without a second box, and the
// window shows no refusal box after it but redraws the screen.
TEST(Impression, PrinterFailureFailsTheLine) {
    Banc b;
    Ecrit(b.travail.filePath("inc.dat"), "CT = 0, 0\nCT = 5, 5\n");
    const QString panne = b.travail.filePath("absent/job.pdf"), boite = "\r\nErreur d'imprimante [Printer error]\r\n";
    for (const QString& programme : {QString("CT = 10, 10\nCT = 20, 20\n"), QString("Fichier = inc.dat\nCT = 20, 20\n")}) {
        Reglages regl;
        regl.DossierFichier = b.travail.path() + "/";
        const ResultatImpression r = ImprimeProgramme(Programme(programme), b.travail.filePath("a.dat"), *PdfImprimante(panne), regl);
        EXPECT_EQ(r.statut, 2) << programme.toStdString();
        EXPECT_EQ(r.messages, QStringList{"Mirel\n" + boite}) << programme.toStdString();
    }
    // Sent back to the pane, a run that draws without end still stops at the limit of operations.
    Reglages regl;
    regl.DossierFichier = b.travail.path() + "/";
    const ResultatImpression boucle = ImprimeProgramme(Programme("Fichier = inc.dat\nArc = 40, 140, 60\nE1:\nGrad = 30000, 2\nGoto E1\n"),
                                                       b.travail.filePath("a.dat"), *PdfImprimante(panne), regl);
    EXPECT_TRUE(boucle.statut == 2 && boucle.arret.contains("drawing operations")) << boucle.arret.toStdString();
    Form1& f = b.Demarre("CT = 10, 10\nCT = 20, 20\n", "a.dat");
    const int avant = f.NombreExecutions;
    b.boites.vues.clear();
    EXPECT_FALSE(f.Imprimer(PdfImprimante(panne).get()));
    ASSERT_EQ(b.boites.Nombre("message"), 1);
    EXPECT_EQ(b.boites.vues[0].texte, boite);
    EXPECT_EQ(f.NombreExecutions, avant + 2);
}

// Without a configured printer the print entries are off and say why; the PDF export stays.
TEST(Impression, NoPrinterLeavesPrintOff) {
    Banc b;
    b.imprimante.clear();
    Form1& f = b.Demarre("CT = 0, 0\n");
    for (QAction* a : {f.Mnu_Imprimante, f.Mnu_Imprimer, f.Mnu_ImprimerZoom, f.Mnu_ImprimerCode})
        EXPECT_TRUE(!a->isEnabled() && a->text().count("(aucune imprimante installée)") == 1) << a->text().toStdString();
    EXPECT_TRUE(f.Mnu_ExportPdf->isEnabled());
}

// `mirel print`: into a PDF file, an error box, an unknown queue, bad options.
TEST(Impression, CommandLineExitStatus) {
    QTemporaryDir d;
    const QString bon = d.filePath("bon.dat"), faux = d.filePath("faux.dat"), boucle = d.filePath("boucle.dat");
    Ecrit(bon, Programme(DeuxCroix)), Ecrit(faux, Programme("MotInconnu = 3\n"));
    Ecrit(boucle, Programme("E1:\nCT = 1, 1\nGoto E1\n"));
    // A file that calls itself: the nesting box, answered Cancel, ends the run without stopping it short.
    const QString soi = d.filePath("soi.dat");
    Ecrit(soi, Programme("Fichier = soi.dat\n"));
    QDir(d.path()).mkdir("dossier.pdf");
    struct Cas { QStringList args; int code; QString err; };
    for (const Cas& c : {Cas{{bon, "-o", d.filePath("o.pdf"), "--copies", "2"}, 0, ""},
                         Cas{{faux, "-o", d.filePath("f.pdf")}, 1, ""},
                         Cas{{bon, "-o", d.filePath("absent/b.pdf")}, 2,
                             "cannot write " + d.filePath("absent/b.pdf") + ": No such file or directory"},
                         Cas{{bon, "-o", d.filePath("dossier.pdf")}, 2, "cannot write " + d.filePath("dossier.pdf") + ": "},
                         Cas{{bon, "-o", d.filePath("b.png")}, 2, "print -o writes a PDF file: " + d.filePath("b.png")},
                         Cas{{bon, "--printer", "file_d_attente_absente"}, 2, "no such printer: file_d_attente_absente"},
                         Cas{{bon, "--copies", "0"}, 2, "bad number of copies: 0 (1 to 999)"},
                         Cas{{bon, "--copies", "1000"}, 2, "bad number of copies: 1000 (1 to 999)"},
                         Cas{{bon, "--zoom", "0"}, 2, "bad zoom: 0"},
                         Cas{{boucle, "-o", d.filePath("l.pdf"), "--timeout", "1"}, 3, "the run was stopped after 1 s"},
                         Cas{{soi, "-o", d.filePath("s.pdf"), "--answer", "cancel"}, 1, ""}}) {
        const SortieProcessus s = Execute(MIREL_BINARY, QStringList{"print"} + c.args);
        EXPECT_TRUE(s.code == c.code && QString::fromUtf8(s.err).contains(c.err))
            << c.args.join(' ').toStdString() << ": " << s.code << " " << s.err.toStdString();
    }
    EXPECT_EQ(Info(d.filePath("o.pdf")).titre, "bon");
    // A failed print leaves no file of its own behind.
    EXPECT_EQ(QDir(d.path()).entryList(QDir::Files | QDir::Hidden).filter(".pdf"), QStringList({"f.pdf", "l.pdf", "o.pdf", "s.pdf"}));
}

// `mirel print` runs the program once with its side effects (the trial that turns the sheet writes nothing),
// at the text's own printer zoom, with the answers given on the command line.
TEST(Impression, CommandLinePrintRunsOnceWithTheTextsZoomAndTheAnswers) {
    QTemporaryDir d;
    const QString dat = d.filePath("z.dat"), pdf = d.filePath("z.pdf"), journal = d.filePath("journal.txt");
    Ecrit(dat, Programme("OpenA = " + journal + "\nPrintA = ab\nZoomIniI = 2\nInput = Valeur§7, %V\nTexte = 10, 30, , ,v=%V/z=%Zoom\n"));
    const SortieProcessus s = Execute(MIREL_BINARY, {"print", dat, "-o", pdf, "--input", "42"});
    ASSERT_EQ(s.code, 0) << s.err.toStdString();
    EXPECT_TRUE(TextePdf(pdf).contains("v=42/z=2")) << TextePdf(pdf).toStdString();
    QFile f(journal);
    EXPECT_TRUE(f.open(QIODevice::ReadOnly) && f.readAll() == "ab");
}

// Ctrl-Shift-P: the zoom asked for, offered again next time; a text that is no number is refused with its
// box, an empty answer prints nothing, 0 or less prints at 1.
TEST(Impression, PrintWithZoomAsksTheZoom) {
    Banc b;
    Form1& f = b.Demarre(DeuxCroix, "zoom.dat");
    const QString pdf = b.travail.filePath("zoom.pdf");
    struct Cas { QString reponse, offre; double ecart; QString message; };
    for (const Cas& c : {Cas{"0,5", "1", 50, ""}, Cas{"abc", "0.5", 0, "Valeur non valide\nNo valid value"},
                         Cas{"", "0.5", 0, ""}, Cas{"-2", "0.5", 100, ""}}) {
        SCOPED_TRACE(c.reponse.toStdString());
        QFile::remove(pdf);
        f.ImprimanteChoisie = PdfImprimante(pdf);
        b.boites.vues.clear();
        b.boites.reponses = {c.reponse};
        f.Mnu_ImprimerZoom->trigger();
        EXPECT_EQ(b.boites.vues.front().texte, "Facteur d'échelles :|" + c.offre);
        EXPECT_EQ(b.boites.Messages().join(""), c.message);
        ASSERT_EQ(QFile::exists(pdf), c.ecart > 0);
        if (c.ecart > 0) EncreEcartee(pdf, b.travail, c.ecart, c.ecart);
    }
}

// Alt-P: the chosen font's name replaces the selection, as one undo level; Cancel inserts nothing.
TEST(Impression, FontListInsertsTheName) {
    Banc b;
    Form1& f = b.Demarre("Police = Arial\n");
    DialoguesTest& d = Dialogues(f);
    QTextCursor c(f.RTB1->document());
    c.setPosition(9), c.setPosition(11, QTextCursor::KeepAnchor);
    f.RTB1->setTextCursor(c);
    f.Mnu_Polices->trigger();
    d.police = QFont("Liberation Serif");
    f.Mnu_Polices->trigger();
    EXPECT_EQ(Ligne(*f.RTB1, 0), "Police = Liberation Serifial");
    f.Mnu_Defaire->trigger();
    EXPECT_EQ(Ligne(*f.RTB1, 0), "Police = Arial");
}

// The listing: 64 lines a sheet, the header and its empty line counted on the first; a final line break
// makes no line; each sheet has its footer.
TEST(Impression, ListingHoldsSixtyFourLinesASheet) {
    QTemporaryDir d;
    const QString dat = d.filePath("code.dat"), pdf = d.filePath("code.pdf");
    auto nom = [](int i) { return QString("L%1").arg(i, 3, 10, QChar('0')); };
    for (auto [lignes, fin, pages] : {std::tuple{62, "\r\n", 1}, {63, "", 2}, {190, "\r\n", 3}}) {
        SCOPED_TRACE(lignes);
        QStringList l;
        for (int i = 1; i <= lignes; ++i) l << nom(i);
        Ecrit(dat, l.join("\r\n") + fin);
        ASSERT_EQ(Execute(MIREL_BINARY, {"print", "--listing", dat, "-o", pdf}).code, 0);
        ASSERT_EQ(Info(pdf).pages, pages);
        EXPECT_TRUE(TextePdf(pdf).startsWith("Mirel: " + dat));
        for (int p = 1; p <= pages; ++p) {
            const QString t = TextePdf(pdf, p);
            EXPECT_TRUE(t.contains(QString("- %1/%2 -").arg(p).arg(pages)) && t.contains(nom(std::max(1, 64 * p - 65))));
            EXPECT_FALSE(t.contains(nom(64 * p - 1)));
        }
    }
}

// Through a real queue: the printer choice with patch 2 prints at once on the chosen sheet, crosses 100 mm
// apart, the text of the second sheet present; `mirel print` to the same queue at zoom 0.5 puts them 50 mm
// apart; a selection of 3 lines prints one sheet under the "Sélection" header, its footer, only those lines.
TEST(ImpressionCups, DrawingAndSelectionListing) {
    const CupsPrive cups;
    ASSERT_TRUE(cups.erreur.isEmpty()) << cups.erreur.toStdString();
    Banc b;
    const QString titre = QString("dessin_%1").arg(getpid());
    Form1& f = b.Demarre(QString(DeuxCroix) + "NPage\nTexte = 20, 20, , 14,Cadran\n", titre + ".dat");
    f.regl.Patchs = 2;
    DialoguesTest& d = Dialogues(f);
    d.choix = [](QPrinter& p) { p.setPrinterName(CupsPrive::File); p.setPageSize(QPageSize(QPageSize::Letter)); };
    f.Mnu_Imprimante->trigger();
    QString pdf = CupsPrive::Sortie(titre);
    ASSERT_FALSE(pdf.isEmpty()) << "no output from the cups-pdf queue";
    const InfoPdf i = Info(pdf);
    EXPECT_TRUE(std::abs(i.largeurMm - 215.9) < 0.1 && std::abs(i.hauteurMm - 279.4) < 0.1 && i.pages == 2);
    EXPECT_TRUE(TextePdf(pdf, 2).contains("Cadran"));
    EncreEcartee(pdf, b.travail, 100);
    QFile::remove(pdf);
    const SortieProcessus s = Execute(MIREL_BINARY, {"print", f.FichierCourant, "--printer", CupsPrive::File, "--zoom", "0.5"});
    ASSERT_EQ(s.code, 0) << s.err.toStdString();
    ASSERT_FALSE((pdf = CupsPrive::Sortie(titre)).isEmpty());
    EncreEcartee(pdf, b.travail, 50, 50);
    QFile::remove(pdf);

    f.RTB1->setPlainText("CT = 1, 1\nCT = 2, 2\nCT = 3, 3\nCT = 4, 4\nCT = 5, 5\n");
    QTextCursor c(f.RTB1->document()->findBlockByNumber(1));
    c.setPosition(f.RTB1->document()->findBlockByNumber(3).position() + 9, QTextCursor::KeepAnchor);
    f.RTB1->setTextCursor(c);
    d.code = [](QPrinter& p) { p.setPrinterName(CupsPrive::File); p.setPrintRange(QPrinter::Selection); };
    f.Mnu_ImprimerCode->trigger();
    ASSERT_FALSE((pdf = CupsPrive::Sortie(titre)).isEmpty()) << "no listing from the cups-pdf queue";
    EXPECT_EQ(Info(pdf).pages, 1);
    const QString t = TextePdf(pdf);
    for (const char* vu : {" (Sélection) ", "CT = 2, 2", "CT = 4, 4", "- 1/1 -"}) EXPECT_TRUE(t.contains(vu)) << vu;
    for (const char* absent : {"CT = 1, 1", "CT = 5, 5"}) EXPECT_FALSE(t.contains(absent)) << absent;
    QFile::remove(pdf);
}
