// The command line: `mirel dump` and `mirel render` end to end (design.md §1, §6).
#include "outils.h"

#include <QFile>
#include <QImage>
#include <QJsonArray>
#include <QJsonDocument>
#include <QJsonObject>
#include <QProcess>
#include <QTemporaryDir>

namespace {

struct Sortie {
    int code = -1;
    QByteArray out, err;
};

Sortie Mirel(const QStringList& args) {
    QProcess p;
    p.start(QStringLiteral(MIREL_BINARY), args);
    p.waitForFinished(60000);
    return {p.exitCode(), p.readAllStandardOutput(), p.readAllStandardError()};
}

QString Fichier(const QTemporaryDir& d, const QString& nom, const QString& texte) {
    QFile f(d.filePath(nom));
    f.open(QIODevice::WriteOnly);
    f.write(texte.toUtf8());
    return f.fileName();
}

// The extent of dark pixels of an image, in pixels.
QRect Encre(const QImage& im) {
    int x0 = im.width(), y0 = im.height(), x1 = -1, y1 = -1;
    for (int y = 0; y < im.height(); ++y)
        for (int x = 0; x < im.width(); ++x)
            if (qGray(im.pixel(x, y)) < 128) {
                x0 = std::min(x0, x); x1 = std::max(x1, x);
                y0 = std::min(y0, y); y1 = std::max(y1, y);
            }
    return x1 < 0 ? QRect() : QRect(QPoint(x0, y0), QPoint(x1, y1));
}

} // namespace

TEST(Cli, HelpAndVersion) {
    EXPECT_EQ(Mirel({"--help"}).code, 0);
    const Sortie v = Mirel({"--version"});
    EXPECT_EQ(v.code, 0);
    EXPECT_TRUE(v.out.startsWith("Mirel "));
}

TEST(Cli, UsageErrorsExitWith2) {
    EXPECT_EQ(Mirel({"dump"}).code, 2);
    EXPECT_EQ(Mirel({"dump", "/nonexistent/x.dat"}).code, 2);
    EXPECT_EQ(Mirel({"render", "x.dat"}).code, 2);
    EXPECT_EQ(Mirel({"dump", "x.dat", "--bogus"}).code, 2);
}

TEST(Cli, DumpGivesTheJsonOfTheRun) {
    QTemporaryDir d;
    const QString f = Fichier(d, "p.dat", "CentreE = 50, 40\r\n%A = 5\r\nCT = %A, 0, ROUGE\r\n");
    const Sortie s = Mirel({"dump", f});
    ASSERT_EQ(s.code, 0) << s.err.toStdString();
    const QJsonObject o = QJsonDocument::fromJson(s.out).object();
    const QJsonArray ops = o["ops"].toArray();
    ASSERT_GE(ops.size(), 4);
    QJsonObject derniere = ops.last().toObject();
    EXPECT_EQ(derniere["op"].toString(), QStringLiteral("line"));
    EXPECT_EQ(derniere["color"].toString(), QStringLiteral("#ff0000"));
    EXPECT_NEAR(derniere["x1"].toDouble(), 55, 0.001);
    EXPECT_NEAR(derniere["y1"].toDouble(), 39, 0.001);
    EXPECT_EQ(derniere["width"].toInt(), 1);
    EXPECT_EQ(o["variables"].toObject()["%A"].toString(), QStringLiteral("5"));
    EXPECT_TRUE(o["messages"].toArray().isEmpty());
    EXPECT_EQ(o["point"].toArray()[0].toDouble(), 0);
    EXPECT_FALSE(o["editor_changed"].toBool());
}

TEST(Cli, DumpOfAFailingProgramExitsWith1AndRecordsTheBox) {
    QTemporaryDir d;
    const QString f = Fichier(d, "p.dat", "Inconnu = 1\r\n");
    const Sortie s = Mirel({"dump", f, "--lang", "en"});
    EXPECT_EQ(s.code, 1);
    const QJsonObject o = QJsonDocument::fromJson(s.out).object();
    const QJsonObject m = o["messages"].toArray()[0].toObject();
    EXPECT_EQ(m["buttons"].toString(), QStringLiteral("ok"));
    EXPECT_EQ(m["text"].toString(), QStringLiteral("Command error in line: 1: Inconnu = 1\r\n"));
    const Sortie de = Mirel({"dump", f, "--lang", "de"});
    EXPECT_TRUE(QJsonDocument::fromJson(de.out).object()["messages"].toArray()[0].toObject()["text"]
                    .toString().startsWith(QStringLiteral("Befehlsfehler in Zeile: 1: ")));
}

TEST(Cli, DumpPrinterAndZoomOptions) {
    QTemporaryDir d;
    const QString f = Fichier(d, "p.dat", "CentreEI = 10, 10\r\n");
    const Sortie p = Mirel({"dump", f, "--printer"});
    ASSERT_EQ(p.code, 0);
    const QJsonArray ops = QJsonDocument::fromJson(p.out).object()["ops"].toArray();
    EXPECT_NEAR(ops.last().toObject()["width_mm"].toDouble(), 25.4 / 600, 1e-9);
    const Sortie z = Mirel({"dump", f, "--zoom", "2", "--pane", "100x100"});
    ASSERT_EQ(z.code, 0);
}

TEST(Cli, DumpAnswersAndInputs) {
    QTemporaryDir d;
    const QString f = Fichier(d, "p.dat", "Input = R?, %R\r\nListeVar = x\r\nCT = 1, 1\r\n");
    const Sortie s = Mirel({"dump", f, "--input", "7", "--answer", "cancel"});
    const QJsonObject o = QJsonDocument::fromJson(s.out).object();
    EXPECT_EQ(o["variables"].toObject()["%R"].toString(), QStringLiteral("7"));
    EXPECT_EQ(o["messages"].toArray()[0].toObject()["answer"].toString(), QStringLiteral("cancel"));
    EXPECT_EQ(o["messages"].toArray()[0].toObject()["buttons"].toString(), QStringLiteral("okcancel"));
}

TEST(Cli, RenderWritesPdfSvgAndPngAtTrueSize) {
    QTemporaryDir d;
    // Two crosses 100 mm apart, drawn 1 mm thick.
    const QString f = Fichier(d, "p.dat", "CentreI = 50, 150, N\r\nEpaisT = 1mm\r\nCT = 0, 0\r\nCT = 100, 0\r\n");
    const Sortie pdf = Mirel({"render", f, "-o", d.filePath("o.pdf")});
    ASSERT_EQ(pdf.code, 0) << pdf.err.toStdString();
    const Sortie svg = Mirel({"render", f, "-o", d.filePath("o.svg")});
    ASSERT_EQ(svg.code, 0);
    const Sortie png = Mirel({"render", f, "-o", d.filePath("o.png"), "--dpi", "254"});
    ASSERT_EQ(png.code, 0);
    // PNG at 254 dpi: 10 pixels a millimetre. The crosses span 49..151 mm in x.
    QImage im(d.filePath("o.png"));
    ASSERT_EQ(im.width(), 2100);
    const QRect r = Encre(im);
    EXPECT_NEAR(r.width() / 10.0, 102 + 1, 0.3); // 100 mm apart, 2 mm crosses, 1 mm pen
    // The PDF, rasterised by poppler at 254 dpi, measures the same.
    QProcess::execute("pdftoppm", {"-r", "254", "-png", "-singlefile", d.filePath("o.pdf"), d.filePath("pdf")});
    QImage pim(d.filePath("pdf.png"));
    ASSERT_FALSE(pim.isNull());
    EXPECT_EQ(pim.width(), 2100);
    const QRect pr = Encre(pim);
    EXPECT_NEAR(pr.width() / 10.0, 103, 0.3);
    EXPECT_NEAR(pr.center().x(), r.center().x(), 3);
    EXPECT_NEAR(pr.center().y(), r.center().y(), 3);
    QFile s(d.filePath("o.svg"));
    ASSERT_TRUE(s.open(QIODevice::ReadOnly));
    EXPECT_TRUE(s.readAll().contains("width=\"210mm\""));
}

TEST(Cli, RenderPrintsBoxesOnStderrAndExitsWith1) {
    QTemporaryDir d;
    const QString f = Fichier(d, "p.dat", "CT = 1, 1\r\nInconnu\r\n");
    const Sortie s = Mirel({"render", f, "-o", d.filePath("o.png")});
    EXPECT_EQ(s.code, 1);
    EXPECT_TRUE(s.err.contains("Erreur de commande dans la ligne : 2: Inconnu"));
    EXPECT_TRUE(QFile::exists(d.filePath("o.png"))); // what was drawn stays drawn
}

TEST(Cli, RenderToAnUnwritablePlaceExitsWith2) {
    QTemporaryDir d;
    const QString f = Fichier(d, "p.dat", "CT = 1, 1\r\n");
    EXPECT_EQ(Mirel({"render", f, "-o", "/nonexistent/dir/o.png"}).code, 2);
    EXPECT_EQ(Mirel({"render", f, "-o", d.filePath("o.txt")}).code, 2);
}

TEST(Cli, RenderLandscapeFromFormatI) {
    QTemporaryDir d;
    const QString f = Fichier(d, "p.dat", "FormatI = Paysage\r\nCentreI = 10, 10\r\n");
    ASSERT_EQ(Mirel({"render", f, "-o", d.filePath("l.png"), "--dpi", "50"}).code, 0);
    QImage im(d.filePath("l.png"));
    EXPECT_GT(im.width(), im.height());
}
