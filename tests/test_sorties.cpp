// The outputs of headless runs: stopping runs that do not end, pages, line
// widths, gradient bands, safe writes and the warnings of `render`.
#include "outils.h"
#include "outils_fenetre.h"

#include <QElapsedTimer>
#include <QImage>
#include <QJsonDocument>
#include <QProcess>
#include <QProcessEnvironment>
#include <QRegularExpression>

namespace {


QString Ecrit(const QTemporaryDir& d, const QString& nom, const QString& lignes) {
    QFile f(d.filePath(nom));
    f.open(QIODevice::WriteOnly);
    f.write(Programme(lignes).toUtf8());
    return f.fileName();
}

// The page of a PDF drawn by poppler.
QImage Rasterise(const QString& pdf, int dpi, const QTemporaryDir& d) {
    const QString base = d.filePath(QStringLiteral("poppler"));
    Execute(QStringLiteral("pdftoppm"), {"-r", QString::number(dpi), "-png", "-singlefile", pdf, base});
    return QImage(base + QStringLiteral(".png"));
}

bool ARouge(const QImage& im) {
    for (int y = 0; y < im.height(); ++y)
        for (int x = 0; x < im.width(); ++x)
            if (const QColor c = im.pixelColor(x, y); c.red() > 200 && c.green() < 80 && c.blue() < 80) return true;
    return false;
}

// The largest rise of grey down the middle column of the non-white part of
// an image, inside the outline: a light-to-dark gradient only falls, a seam
// between two bands shows as a rise.
int RemonteeGradient(const QImage& im) {
    QRect r;
    for (int y = 0; y < im.height(); ++y)
        for (int x = 0; x < im.width(); ++x)
            if (qGray(im.pixel(x, y)) < 250) r |= QRect(x, y, 1, 1);
    const int x = r.center().x();
    int pire = 0;
    for (int y = r.top() + 4; y < r.bottom() - 5; ++y)
        pire = std::max(pire, qGray(im.pixel(x, y + 1)) - qGray(im.pixel(x, y)));
    return pire;
}

} // namespace

// A program that loops is stopped by the time limit as Esc stops it: status 3,
// the reason on stderr, and what it drew before is still in the output.
TEST(Sorties, TimeLimitStopsALoopAndKeepsTheDrawing) {
    QTemporaryDir d;
    const QString boucle = Ecrit(d, "boucle.dat", "CercleP = 20, 20, 10,,,ROUGE\nE1:\nGoto E1\n");
    const SortieProcessus dump = Mirel({"dump", boucle, "--timeout", "1"});
    EXPECT_EQ(dump.code, 3);
    EXPECT_TRUE(dump.err.contains("--timeout")) << dump.err.constData();
    EXPECT_FALSE(QJsonDocument::fromJson(dump.out).isNull());
    // The limit holds for the whole command, though render and print run the program twice.
    for (const QStringList& commande : {QStringList{"render", boucle, "-o", d.filePath("b.png"), "--dpi", "50"},
                                        QStringList{"print", boucle, "-o", d.filePath("b.pdf")}}) {
        QElapsedTimer montre;
        montre.start();
        const SortieProcessus r = Mirel(commande + QStringList{"--timeout", "2"});
        EXPECT_LT(montre.elapsed(), 3500) << commande[0].toStdString();
        EXPECT_EQ(r.code, 3);
        EXPECT_TRUE(r.err.contains("--timeout")) << r.err.constData();
    }
    EXPECT_TRUE(ARouge(QImage(d.filePath("b.png"))));
    EXPECT_EQ(Mirel({"dump", boucle, "--timeout", "x"}).code, 2);
}

// A single command that draws for long (a chart of 27 million patches) is
// stopped inside by the time limit, without a box, and the run ends there.
TEST(Sorties, TimeLimitStopsALongCommand) {
    Session s(Programme("PalCoul2 = 300\nCercle = 1, 1, 1\n"));
    s.delai = 0.2;
    s.Execute();
    EXPECT_TRUE(s.Arret().contains(QStringLiteral("--timeout")));
    EXPECT_GT(s.journal.size(), 0);
    EXPECT_LT(s.journal.size(), MaxOperationsRun);
    EXPECT_EQ(s.journal.back().genre, OpSurface::Polygone); // the circle after it is not drawn
    EXPECT_TRUE(s.hote.Messages().isEmpty());
}

// A drawing loop stops at the limit of operations with the journal bounded;
// the next run starts with a fresh count.
TEST(Sorties, DrawingLoopStopsAtTheLimitOfOperations) {
    auto s = Lance("E1:\nArc = 40, 140, 60\nGrad = 30000, 2\nGoto E1\n");
    EXPECT_EQ(s->journal.size(), MaxOperationsRun);
    EXPECT_TRUE(s->Arret().contains(QStringLiteral("drawing operations")));
    s->hote.SetTexte(Programme("Arc = 40, 140, 60\n"));
    s->Execute();
    EXPECT_TRUE(s->Arret().isEmpty());
}

// PDF pages are the size asked to 0.01 mm (--landscape turns them); PDF and
// SVG files are titled after the program, whatever their own names.
TEST(Sorties, PagesLandscapeAndExact) {
    QTemporaryDir d;
    const QString cercle = Ecrit(d, "cercle rouge.dat", "CercleP = 20, 20, 10,,,ROUGE\n");
    const QRegularExpression taille(QStringLiteral("Page size:\\s+([0-9.]+) x ([0-9.]+) pts"));
    struct Cas { QStringList page; double w, h; };
    for (const Cas& c : {Cas{{"--page", "280x130"}, 280, 130}, Cas{{"--page", "150x60"}, 150, 60},
                         Cas{{"--page", "130x280", "--landscape"}, 280, 130}, Cas{{"--page", "A4"}, 210, 297}}) {
        SCOPED_TRACE(c.page.join(' ').toStdString());
        const QString pdf = d.filePath("p.pdf");
        ASSERT_EQ(Mirel(QStringList{"render", cercle, "-o", pdf} + c.page).code, 0);
        const QString info = QString::fromUtf8(Execute("pdfinfo", {pdf}).out);
        const QRegularExpressionMatch m = taille.match(info);
        ASSERT_TRUE(m.hasMatch()) << info.toStdString();
        EXPECT_NEAR(m.captured(1).toDouble() / 72 * 25.4, c.w, 0.01);
        EXPECT_NEAR(m.captured(2).toDouble() / 72 * 25.4, c.h, 0.01);
        EXPECT_TRUE(info.contains(QRegularExpression(QStringLiteral("Title:\\s+cercle rouge\\n"))));
        EXPECT_TRUE(ARouge(Rasterise(pdf, 30, d)));
    }
    ASSERT_EQ(Mirel({"render", cercle, "-o", d.filePath("gravure.svg")}).code, 0);
    QFile svg(d.filePath("gravure.svg"));
    EXPECT_TRUE(svg.open(QIODevice::ReadOnly) && svg.readAll().contains("<title>cercle rouge</title>"));
}

// The thinnest line is dark at 150 dpi, not a light grey; the bands of a
// gradient join without a lighter seam, in PNG and in PDF, at two resolutions.
TEST(Sorties, ThinLinesAndGradientBands) {
    QTemporaryDir d;
    ASSERT_EQ(Mirel({"render", Ecrit(d, "arc.dat", "Arc = 30, 150, 60\n"), "-o", d.filePath("arc.png"),
                     "--dpi", "150"}).code, 0);
    const QImage arc(d.filePath("arc.png"));
    int plusSombre = 255;
    for (int y = 0; y < arc.height(); ++y)
        for (int x = 0; x < arc.width(); ++x) plusSombre = std::min(plusSombre, qGray(arc.pixel(x, y)));
    EXPECT_LT(plusSombre, 60);

    const QString cadre = Ecrit(d, "degrade.dat", "CadreAP = 10, 50, 50, 90, 20, VERT§NOIR\n");
    ASSERT_EQ(Mirel({"render", cadre, "-o", d.filePath("g.pdf")}).code, 0);
    for (int dpi : {150, 97}) {
        ASSERT_EQ(Mirel({"render", cadre, "-o", d.filePath("g.png"), "--dpi", QString::number(dpi)}).code, 0);
        EXPECT_LE(RemonteeGradient(QImage(d.filePath("g.png"))), 2) << "png " << dpi;
        EXPECT_LE(RemonteeGradient(Rasterise(d.filePath("g.pdf"), dpi, d)), 2) << "pdf " << dpi;
    }
}

// An output that cannot be written, or a page too large to draw: status 2,
// the file and the reason on stderr, no file. Drawing off the page is a
// warning; the status stays 0.
TEST(Sorties, FailedWritesAndOffPageDrawingAreReported) {
    QTemporaryDir d;
    const QString cercle = Ecrit(d, "c.dat", "CercleP = 20, 20, 10,,,ROUGE\n");
    QDir(d.path()).mkdir("dossier.pdf");
    QDir(d.path()).mkdir("dossier.svg");
    for (const QString& sortie : {d.filePath("dossier.pdf"), d.filePath("dossier.svg"), d.filePath("absent/c.png")}) {
        const SortieProcessus r = Mirel({"render", cercle, "-o", sortie});
        const QString err = QString::fromUtf8(r.err);
        EXPECT_EQ(r.code, 2) << sortie.toStdString();
        EXPECT_TRUE(err.contains("cannot write " + sortie + ": ")) << err.toStdString();
        EXPECT_GT(err.section(sortie + ": ", 1).trimmed().size(), 3) << err.toStdString();
    }
    // Pages are written all or none: a third page that cannot be written leaves no first two.
    QDir(d.path()).mkdir("m-3.png");
    const QString pages = Ecrit(d, "m.dat", "CercleP = 20, 20, 10\nNPage\nCercleP = 20, 20, 10\nNPage\nCercleP = 20, 20, 10\n");
    const SortieProcessus m = Mirel({"render", pages, "-o", d.filePath("m.png"), "--dpi", "30"});
    EXPECT_TRUE(m.code == 2 && m.err.contains(("cannot write " + d.filePath("m-3.png") + ": ").toUtf8())) << m.err.constData();
    EXPECT_FALSE(QFile::exists(d.filePath("m.png")) || QFile::exists(d.filePath("m-2.png")));
    // A page too large for memory is refused before the program runs, with the dpi that fits it.
    const SortieProcessus g = Mirel({"render", cercle, "-o", d.filePath("g.png"), "--page", "A3", "--dpi", "2400"});
    EXPECT_TRUE(g.code == 2 && g.err.contains("mirel: the page is too large to draw at 2400 dpi: at most 1761 dpi") &&
                !QFile::exists(d.filePath("g.png"))) << g.err.constData();
    // Bad values name what is taken; an option of another command is refused, not ignored.
    const QString v = d.filePath("v.png");
    for (const auto& [args, attendu] :
         {std::pair{QStringList{"render", cercle, "-o", v, "--dpi", "5000"}, "bad dpi: 5000 (10 to 2400)"},
          std::pair{QStringList{"render", cercle, "-o", v, "--page", "A9"}, "bad size: A9 (A4, A3, A5, Letter, Legal or WxH in mm, each from 1 to 10000)"},
          std::pair{QStringList{"render", cercle, "-o", v, "--page", "0.001x0.001"}, "bad size: 0.001x0.001"},
          std::pair{QStringList{"dump", cercle, "--pane", "1e9x1"}, "bad size: 1e9x1"},
          std::pair{QStringList{"render", cercle, "-o", v, "--zoom", "2"}, "--zoom does not apply to render"},
          std::pair{QStringList{"dump", cercle, "-o", v}, "-o does not apply to dump"},
          std::pair{QStringList{"print", cercle, "--page", "A3"}, "--page does not apply to print"},
          std::pair{QStringList{"render", cercle, "-o", v, "--bof"}, "unknown option: --bof"}}) {
        const SortieProcessus r = Mirel(args);
        EXPECT_TRUE(r.code == 2 && r.err.contains(attendu)) << attendu << ": " << r.err.constData();
    }
    // Where the ink reaches is given as the program measures, y upward from the page's lower left corner.
    struct Cas { const char* programme; const char* avertissement; };
    for (const Cas& c : {Cas{"CercleP = 20, 20, 10,,,ROUGE\n", ""},
                         Cas{"CercleP = -5, 20, 10,,,ROUGE\n", "runs off the page and is cut: it reaches -15"},
                         Cas{"Texte = 150, 20, , , WWWWWWWWWWWWWWWWWWWWWWWWWWWWWW\n", "runs off the page and is cut"},
                         Cas{"CercleP = 20, 350, 10,,,ROUGE\n", "lies wholly off the page: it reaches 9"},
                         Cas{"CercleP = -5, 20, 10,,,BLANC\n", ""}, // white leaves no ink, nor the colour N
                         Cas{"Couleur = N\nCentreE = 0, 0, N\nArc = 30, 150, 20\n", ""}}) {
        const SortieProcessus r = Mirel({"render", Ecrit(d, "h.dat", c.programme), "-o", d.filePath("h.png"), "--dpi", "30"});
        EXPECT_EQ(r.code, 0) << c.programme;
        const QString err = QString::fromUtf8(r.err);
        EXPECT_EQ(err.contains("warning"), *c.avertissement != 0) << c.programme << r.err.constData();
        EXPECT_TRUE(err.contains(c.avertissement)) << c.programme << r.err.constData();
        if (*c.avertissement) EXPECT_TRUE(err.contains(" mm up from the lower left corner of a page of ")) << r.err.constData();
    }
}

// In the window, an export that cannot be written says so in a box.
TEST(Sorties, FailedExportShowsABox) {
    Banc b;
    Form1& f = b.Demarre(QStringLiteral("CercleP = 20, 20, 10,,,ROUGE"));
    const QString dossier = b.travail.path() + QStringLiteral("/dossier.pdf");
    QDir().mkdir(dossier);
    b.boites.reponses = {dossier};
    f.Exporte(QStringLiteral("pdf"));
    ASSERT_EQ(b.boites.Messages().size(), 1);
    EXPECT_TRUE(b.boites.Messages()[0].contains("cannot write " + dossier + ": "));
}

// Nobody at the window: a first start (no settings yet) with a failing program
// ends by itself with a screenshot, the boxes answered, and status 1.
TEST(Sorties, ScreenshotNeverWaitsOnAPerson) {
    QTemporaryDir d;
    QProcessEnvironment env = QProcessEnvironment::systemEnvironment();
    env.insert("QT_QPA_PLATFORM", "offscreen");
    env.insert("XDG_CONFIG_HOME", d.filePath("config"));
    env.insert("HOME", d.path());
    const QString faux = Ecrit(d, "faux.dat", "Input = Rayon?§12, %R\nPasUneCommande = 1\n");
    // Its exit status tells of the error box, as dump's does.
    EXPECT_EQ(Execute(MIREL_BINARY, {"--screenshot", d.filePath("s.png"), faux}, env).code, 1);
    EXPECT_TRUE(QFile::exists(d.filePath("s.png")));
    // A run cut by the time limit and a missing program say so in the status, as render does; a
    // mistyped command and a machine without a display are told, not met with a window or a crash.
    // The loop follows an error box: the stop is what the status tells.
    Ecrit(d, "faute.dat", "PasUneCommande = 1\n");
    const QString boucle = Ecrit(d, "boucle.dat", "Fichier = faute.dat\nE1:\nGoto E1\n");
    QProcessEnvironment sansEcran = env;
    for (const char* v : {"QT_QPA_PLATFORM", "DISPLAY", "WAYLAND_DISPLAY"}) sansEcran.remove(v);
    struct Cas { QStringList args; QProcessEnvironment env; int code; const char* message; };
    for (const Cas& c : {Cas{{"--screenshot", d.filePath("b.png"), "--timeout", "1", boucle}, env, 3, "--timeout"},
                         Cas{{"--screenshot", d.filePath("a.png"), d.filePath("absent.dat")}, env, 2, "absent.dat"},
                         Cas{{"rendre", boucle, "-o", d.filePath("r.pdf")}, env, 2, "unknown command: rendre"},
                         Cas{{"help"}, env, 0, ""},
                         Cas{{boucle}, sansEcran, 2, "no display"}}) {
        const SortieProcessus r = Execute(MIREL_BINARY, c.args, c.env);
        EXPECT_EQ(r.code, c.code) << c.args.join(' ').toStdString() << r.err.constData();
        EXPECT_TRUE(r.err.contains(c.message)) << r.err.constData();
        if (c.code == 0) EXPECT_TRUE(r.out.contains("Usage:"));
    }
}
