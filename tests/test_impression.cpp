// Printing on paper: a QPrinter writing PDF stands in for a real queue, so
// what reaches the printer can be measured.
#include "outils.h"
#include "outils_fenetre.h"

#include "app/impression.h"

#include <QPrinter>
#include <QProcess>
#include <QRegularExpression>

namespace {


// A printer that writes its job to a PDF file.
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

// The centres of the ink left and right of the page's middle, in mm from
// the top left corner, read from the first page drawn at 10 pixels a mm.
std::pair<QPointF, QPointF> CentresEncre(const QString& pdf, const QTemporaryDir& d) {
    const QString base = d.filePath("page");
    Execute("pdftoppm", {"-r", "254", "-png", "-singlefile", "-f", "1", "-l", "1", pdf, base});
    const QImage im(base + ".png");
    QPointF somme[2];
    double poids[2] = {0, 0};
    for (int y = 0; y < im.height(); ++y)
        for (int x = 0; x < im.width(); ++x) {
            const double w = (255 - qGray(im.pixel(x, y))) / 255.0;
            const int c = x < im.width() / 2 ? 0 : 1;
            if (w >= 0.02) { somme[c] += QPointF(x + 0.5, y + 0.5) * w; poids[c] += w; }
        }
    return {somme[0] / poids[0] / 10.0, somme[1] / poids[1] / 10.0};
}

// Two crosses 100 mm apart, 1 mm pen, about the printer's centre at 50, 150.
const char* const DeuxCroix = "CentreI = 50, 150, N\nEpaisT = 1mm\nCT = 0, 0\nCT = 100, 0\n";

} // namespace

// The job holds the sheet at its true size (FormatI turns it), named after
// the file, with the two crosses 100 mm apart at their place; each NPage is
// one more sheet; a failing line shows its box and the job is still closed.
TEST(Impression, PdfJobAtTrueSize) {
    QTemporaryDir d;
    struct Cas { QString programme, fichier; int statut, pages; double w, h; QString titre; };
    for (const Cas& c : {Cas{DeuxCroix, d.filePath("cadran bleu.dat"), 0, 1, 210, 297, "cadran bleu"},
                         Cas{QString(DeuxCroix) + "NPage\nCT = 10, 10\nNPage\nCT = 20, 20\n", "a.dat", 0, 3, 210, 297, "a"},
                         Cas{"FormatI = Paysage\nCT = 10, 10\n", "", 0, 1, 297, 210, "Mirel"},
                         Cas{"CT = 10, 10\nMotInconnu = 3\n", "", 1, 1, 210, 297, "Mirel"}}) {
        SCOPED_TRACE(c.programme.toStdString());
        const QString pdf = d.filePath("job.pdf");
        auto p = PdfImprimante(pdf);
        const ResultatImpression r = ImprimeProgramme(Programme(c.programme), c.fichier, *p, Reglages());
        ASSERT_EQ(r.statut, c.statut) << r.erreur.toStdString();
        EXPECT_EQ(r.messages.size(), c.statut);
        const InfoPdf i = Info(pdf);
        EXPECT_NEAR(i.largeurMm, c.w, 0.1);
        EXPECT_NEAR(i.hauteurMm, c.h, 0.1);
        EXPECT_EQ(i.pages, c.pages);
        EXPECT_EQ(i.titre, c.titre);
        if (!c.programme.startsWith(DeuxCroix)) continue;
        const auto [gauche, droite] = CentresEncre(pdf, d);
        EXPECT_NEAR(droite.x() - gauche.x(), 100, 0.1);
        EXPECT_NEAR(droite.y() - gauche.y(), 0, 0.1);
        EXPECT_NEAR(gauche.x(), 50, 0.2);
    }
}

// The window's print: Esc stops a print that does not end, the job is
// closed with what was drawn, the view's pan comes back and the screen's run
// that follows (stopped by Esc too) still comes.
TEST(Impression, WindowPrintStopsAtEscAndRedraws) {
    Banc b;
    Form1& f = b.Demarre("Arc = 30, 150, 60\n", "boucle.dat");
    f.RTB1->setPlainText("Arc = 30, 150, 60\nE1:\nGoto E1\n");
    f.e.Repere.DecalageVueX = 12;
    f.e.Repere.DecalageVueY = -7;
    const int avant = f.NombreExecutions;
    QTimer esc;
    QObject::connect(&esc, &QTimer::timeout, [&f] { QTest::keyClick(&f, Qt::Key_Escape); });
    esc.start(200);
    const QString pdf = b.travail.filePath("boucle.pdf");
    auto p = PdfImprimante(pdf);
    ASSERT_TRUE(f.Imprimer(p.get()));
    esc.stop();
    EXPECT_EQ(f.NombreExecutions, avant + 2);
    EXPECT_TRUE(f.Mnu_Visualiser->isEnabled());
    EXPECT_EQ(std::pair(f.e.Repere.DecalageVueX, f.e.Repere.DecalageVueY), std::pair(12.0, -7.0));
    const InfoPdf i = Info(pdf);
    EXPECT_EQ(i.pages, 1);
    EXPECT_EQ(i.titre, "boucle");
}

// Without a configured printer the print entry is off.
TEST(Impression, NoPrinterLeavesPrintOff) {
    Banc b;
    b.imprimante.clear();
    Form1& f = b.Demarre("CT = 0, 0\n");
    EXPECT_TRUE(!f.Mnu_Imprimer->isEnabled() && f.Mnu_ExportPdf->isEnabled());
}

// `mirel print`: into a PDF file, an error box, an unknown queue.
TEST(Impression, CommandLineExitStatus) {
    QTemporaryDir d;
    const QString bon = d.filePath("bon.dat"), faux = d.filePath("faux.dat");
    for (const auto& [nom, lignes] : {std::pair{bon, DeuxCroix}, {faux, "MotInconnu = 3\n"}}) {
        QFile f(nom);
        ASSERT_TRUE(f.open(QIODevice::WriteOnly));
        f.write(Programme(lignes).toUtf8());
    }
    struct Cas { QStringList args; int code; QString err; };
    for (const Cas& c : {Cas{{bon, "-o", d.filePath("o.pdf"), "--copies", "2"}, 0, ""},
                         Cas{{faux, "-o", d.filePath("f.pdf")}, 1, ""},
                         Cas{{bon, "--printer", "file_d_attente_absente"}, 2,
                             "no such printer: file_d_attente_absente"},
                         Cas{{bon, "--copies", "0"}, 2, "bad number of copies: 0"}}) {
        const SortieProcessus s = Execute(MIREL_BINARY, QStringList{"print"} + c.args);
        EXPECT_EQ(s.code, c.code) << c.args.join(' ').toStdString() << s.err.toStdString();
        EXPECT_TRUE(QString::fromUtf8(s.err).contains(c.err)) << s.err.toStdString();
    }
    EXPECT_EQ(Info(d.filePath("o.pdf")).titre, "bon");
}
