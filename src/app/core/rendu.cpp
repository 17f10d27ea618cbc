#include "app/core/rendu.h"

#include "app/core/encodage.h"
#include "app/core/hote_memoire.h"
#include "app/core/session.h"
#include "drawing/repere.h"
#include "drawing/surface_peinte.h"
#include "language/etat.h"
#include "language/interprete.h"

#include <QBuffer>
#include <QFileInfo>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#include <QSvgGenerator>

#include <cmath>
#include <memory>
#include <vector>

namespace {

enum class Format { Pdf, Svg, Png, Inconnu };

Format FormatDe(const QString& sortie) {
    const QString ext = QFileInfo(sortie).suffix().toLower();
    if (ext == QLatin1String("pdf")) return Format::Pdf;
    if (ext == QLatin1String("svg")) return Format::Svg;
    if (ext == QLatin1String("png")) return Format::Png;
    return Format::Inconnu;
}

// OUT.ext for page 1, OUT-N.ext for the others.
QString NomPage(const QString& sortie, int page) {
    if (page == 1) return sortie;
    const QFileInfo f(sortie);
    return f.path() + u'/' + f.completeBaseName() + u'-' + QString::number(page) + u'.' + f.suffix();
}

// Qt writes the page box in whole points (100 mm becomes 283 pt, 99.84 mm).
// The box is rewritten to the exact size, keeping its top edge where the
// page's content is placed from, and the offsets of the cross-reference table
// behind each rewritten box move by the bytes it gained.
QByteArray PageExacte(QByteArray pdf, QSizeF mm) {
    // Cut, not rounded, to the 4 decimals written: a reader that rounds the
    // page up to whole pixels gets the page's pixels, not one more.
    auto points = [](double v) { return std::floor(v / 25.4 * 72 * 1e4) / 1e4; };
    const double w = points(mm.width()), h = points(mm.height());
    struct Deplacement { qsizetype position, octets; };
    std::vector<Deplacement> deplacements; // positions in the bytes as Qt wrote them
    qsizetype decalage = 0;
    for (qsizetype p = pdf.indexOf("/MediaBox ["); p >= 0; p = pdf.indexOf("/MediaBox [", p)) {
        const qsizetype fin = pdf.indexOf(']', p);
        if (fin < 0) break;
        const QList<QByteArray> v = pdf.mid(p + 11, fin - p - 11).simplified().split(' ');
        if (v.size() != 4) break;
        const double haut = v[3].toDouble();
        const QByteArray boite = "/MediaBox [0 " + QByteArray::number(haut - h, 'f', 4) + ' ' +
                                 QByteArray::number(w, 'f', 4) + ' ' + v[3] + ']';
        const qsizetype ancien = fin + 1 - p;
        pdf.replace(p, ancien, boite);
        deplacements.push_back({p - decalage, boite.size() - ancien});
        decalage += boite.size() - ancien;
        p += boite.size();
    }
    auto nouvelle = [&](qsizetype o) {
        for (const Deplacement& d : deplacements)
            if (d.position < o) o += d.octets;
        return o;
    };
    const qsizetype xref = pdf.lastIndexOf("\nxref\n");
    if (xref < 0 || deplacements.empty()) return pdf;
    // Entries of 20 bytes, "oooooooooo ggggg n \n", after the subsection line.
    qsizetype ligne = pdf.indexOf('\n', xref + 6) + 1;
    const QList<QByteArray> tete = pdf.mid(xref + 6, ligne - xref - 7).split(' ');
    const int n = tete.size() == 2 ? tete[1].toInt() : 0;
    for (int i = 0; i < n; ++i, ligne += 20) {
        if (pdf.at(ligne + 17) != 'n') continue;
        const qsizetype o = nouvelle(pdf.mid(ligne, 10).toLongLong());
        pdf.replace(ligne, 10, QByteArray::number(o).rightJustified(10, '0'));
    }
    const qsizetype sx = pdf.lastIndexOf("startxref\n");
    if (sx >= 0) {
        const qsizetype debut = sx + 10, fin = pdf.indexOf('\n', debut);
        pdf.replace(debut, fin - debut, QByteArray::number(xref + 1));
    }
    return pdf;
}

// The devices of the pages of one output, drawn in memory and written to
// their files at the end.
struct Pages {
    Format format = Format::Pdf;
    QString sortie;
    QSizeF mm;      // page size in millimetres, final orientation
    double dpi = 0; // PNG resolution
    QString titre;  // the PDF's and the SVG's title: the program's name
    QBuffer pdfOctets;
    std::unique_ptr<QPdfWriter> pdf;
    std::vector<std::unique_ptr<QBuffer>> svgOctets;
    std::vector<std::unique_ptr<QSvgGenerator>> svg;
    std::vector<std::unique_ptr<QImage>> png;
    QStringList fichiers;

    QPaintDevice* Page(int n) {
        const QString nom = NomPage(sortie, n);
        const QSize px(qRound(mm.width() / 25.4 * DpiImprimante), qRound(mm.height() / 25.4 * DpiImprimante));
        switch (format) {
        case Format::Pdf:
            if (!pdf) {
                pdfOctets.open(QIODevice::WriteOnly);
                pdf = std::make_unique<QPdfWriter>(&pdfOctets);
                pdf->setResolution(int(DpiImprimante));
                pdf->setPageLayout(QPageLayout(QPageSize(mm, QPageSize::Millimeter), QPageLayout::Portrait,
                                               QMarginsF(0, 0, 0, 0)));
                pdf->setCreator(QStringLiteral("Mirel"));
                pdf->setTitle(titre);
                fichiers << sortie;
            }
            return pdf.get();
        case Format::Svg: {
            svgOctets.push_back(std::make_unique<QBuffer>());
            svgOctets.back()->open(QIODevice::WriteOnly);
            auto g = std::make_unique<QSvgGenerator>();
            g->setOutputDevice(svgOctets.back().get());
            g->setResolution(int(DpiImprimante));
            g->setSize(px);
            g->setViewBox(QRectF(0, 0, mm.width() / 25.4 * DpiImprimante, mm.height() / 25.4 * DpiImprimante));
            g->setTitle(titre);
            svg.push_back(std::move(g));
            fichiers << nom;
            return svg.back().get();
        }
        case Format::Png: {
            const QSize ipx(qRound(mm.width() / 25.4 * dpi), qRound(mm.height() / 25.4 * dpi));
            auto im = std::make_unique<QImage>(ipx, QImage::Format_RGB32);
            const int dpm = qRound(dpi / 0.0254);
            im->setDotsPerMeterX(dpm);
            im->setDotsPerMeterY(dpm);
            im->fill(Qt::white);
            png.push_back(std::move(im));
            fichiers << nom;
            return png.back().get();
        }
        case Format::Inconnu:
            break;
        }
        return nullptr;
    }

    // The bytes of each file, then each file written whole.
    bool Ecrit(QString& erreur) {
        QList<QByteArray> octets;
        if (format == Format::Pdf && !fichiers.isEmpty()) octets << PageExacte(pdfOctets.data(), mm);
        for (const auto& b : svgOctets) {
            // QSvgGenerator rounds the size to whole dots: the header gets the
            // page's exact millimetres, so that the drawing is at true size.
            QByteArray t = b->data();
            const qsizetype fin = t.indexOf("viewBox");
            const qsizetype debut = t.indexOf("<svg width=");
            if (debut >= 0 && fin >= 0)
                t.replace(debut, fin - debut,
                          "<svg width=\"" + QByteArray::number(mm.width(), 'g', 10) + "mm\" height=\"" +
                              QByteArray::number(mm.height(), 'g', 10) + "mm\"\n ");
            octets << t;
        }
        for (const auto& im : png) {
            QBuffer b;
            b.open(QIODevice::WriteOnly);
            im->save(&b, "PNG");
            octets << b.data();
        }
        QList<std::pair<QString, QByteArray>> aEcrire;
        for (int i = 0; i < fichiers.size(); ++i) aEcrire.append({fichiers[i], octets.value(i)});
        QString raison, enFaute;
        if (EcritFichiers(aEcrire, &raison, &enFaute)) return true;
        erreur = TexteNonEcrit(enFaute, raison);
        return false;
    }
};

// The stderr warning of a drawing that runs off its page, with where it
// reaches, in millimetres from the page's lower left corner, y upward, as a
// program measures (the ink is known in device pixels, y downward).
QString HorsPage(const SurfacePeinte& s) {
    const QRectF encre = s.Encre();
    const QRectF page(0, 0, s.LargeurPx(), s.HauteurPx());
    // Half a pixel of antialiasing is no overflow.
    if (encre.isNull() || page.adjusted(-1, -1, 1, 1).contains(encre)) return {};
    const double k = s.MmParPixel();
    auto mm = [](double v) { return QString::number(v, 'f', 1); };
    const QString quoi = page.intersects(encre) ? QStringLiteral("runs off the page and is cut")
                                                : QStringLiteral("lies wholly off the page");
    return QStringLiteral("warning: the drawing %1: it reaches %2 to %3 mm across and %4 to %5 mm up from "
                          "the lower left corner of a page of %6 x %7 mm")
        .arg(quoi, mm(encre.left() * k), mm(encre.right() * k), mm((page.height() - encre.bottom()) * k),
             mm((page.height() - encre.top()) * k), mm(page.width() * k), mm(page.height() * k));
}

void Prepare(Etat& e, Reglages& r, HoteMemoire& h, const QString& chemin) {
    e.Regl = &r;
    e.Host = &h;
    e.FichierPrincipal = chemin;
}

// The largest PNG page drawn, in pixels: 2.4 GB of memory.
constexpr double MaxPixelsPng = 600'000'000;

} // namespace

ResultatRendu RendProgramme(const QString& texte, const QString& chemin, const QString& sortie,
                            const OptionsRendu& options, const Reglages& reglages) {
    ResultatRendu res;
    const Format format = FormatDe(sortie);
    if (format == Format::Inconnu) {
        res.statut = 2;
        res.erreur = QStringLiteral("unknown output format: %1 (use .pdf, .svg or .png)").arg(sortie);
        return res;
    }
    QSizeF papier = options.page;
    bool paysageDemande = options.paysage;
    PapierEtOrientation(papier, paysageDemande);
    // A PNG page is drawn whole in memory: one too large for it is refused
    // before the program runs.
    const double pouces2 = papier.width() / 25.4 * papier.height() / 25.4;
    if (format == Format::Png && pouces2 * options.dpi * options.dpi > MaxPixelsPng) {
        res.statut = 2;
        res.erreur = QStringLiteral("the page is too large to draw at %1 dpi: at most %2 dpi for a page of %3 x %4 mm")
                         .arg(options.dpi)
                         .arg(std::floor(std::sqrt(MaxPixelsPng / pouces2)))
                         .arg(papier.width())
                         .arg(papier.height());
        return res;
    }
    const int orientationDefaut = paysageDemande ? 2 : 1;
    // The trial run answers as the drawing run will. The time limit holds for
    // both: the trial takes at most half of it, so that the drawing run, which
    // stops where the trial was stopped, fits in the rest.
    const QDeadlineTimer fin = EcheanceDe(options.delai);
    Session essai(texte, QSizeF(297, 210), papier);
    essai.regl = reglages;
    essai.delai = options.delai / 2;
    essai.etat.FichierPrincipal = chemin;
    essai.hote.Gardees = options.gardees;
    essai.hote.Reponses = options.reponses;
    essai.hote.Saisies = options.saisies;
    const bool paysage = essai.FiniPaysage(orientationDefaut);

    Pages pages;
    pages.format = format;
    pages.sortie = sortie;
    pages.mm = paysage ? papier.transposed() : papier;
    pages.dpi = options.dpi;
    pages.titre = chemin.isEmpty() ? QStringLiteral("Mirel") : QFileInfo(chemin).completeBaseName();
    Reglages regl = reglages;
    HoteMemoire hote(texte);
    hote.Gardees = options.gardees;
    hote.Reponses = options.reponses;
    hote.Saisies = options.saisies;
    Etat e;
    Prepare(e, regl, hote, chemin);
    // The drawing run stops where the first one was stopped, so that it draws
    // the same, and within the time limit itself.
    hote.Arret = &e.ArretDemande;
    hote.Echeance = fin;
    if (essai.hote.Expire) hote.ArretAuPompage = essai.hote.PompageArret;
    const double echelle = format == Format::Png ? options.dpi / DpiImprimante : 1.0;
    SurfacePeinte imprimante(GenreSurface::Imprimante, papier.width() / 25.4 * DpiImprimante,
                             papier.height() / 25.4 * DpiImprimante, 25.4 / DpiImprimante,
                             [&pages](int n) { return pages.Page(n); }, echelle, true);
    imprimante.TexteEnContours(options.texteEnContours && format == Format::Svg);
    SurfaceEnregistree pane(GenreSurface::Ecran, 297 / 25.4 * DpiEcran, 210 / 25.4 * DpiEcran, 25.4 / DpiEcran);
    for (Surface* s : {static_cast<Surface*>(&imprimante), static_cast<Surface*>(&pane)})
        s->LimiteOperations(MaxOperationsRun, [&e] { e.ArretDemande = true; });
    MesureImprimante(e, imprimante);
    AttachePane(e, &pane);
    e.Repere.OrientationImprimante = orientationDefaut;
    LanceExecution(e, &imprimante);
    imprimante.EndDoc();
    pages.pdf.reset();
    pages.svg.clear();
    for (const MessageEnregistre& m : hote.Messages()) res.messages << m.titre + u'\n' + m.texte;
    if (imprimante.PageRefusee()) {
        res.statut = 2;
        res.erreur = format == Format::Png
                         ? QStringLiteral("the page is too large to draw at %1 dpi").arg(options.dpi)
                         : QStringLiteral("cannot draw the page");
        return res;
    }
    if (!pages.Ecrit(res.erreur)) {
        res.statut = 2;
        return res;
    }
    res.fichiers = pages.fichiers;
    res.arret = RaisonArret(hote.Expire || essai.hote.Expire,
                            imprimante.LimiteAtteinte() || pane.LimiteAtteinte(), options.delai);
    res.avertissement = HorsPage(imprimante);
    res.statut = !res.arret.isEmpty() ? 3 : e.ErreursAffichees > 0 ? 1 : 0;
    return res;
}
