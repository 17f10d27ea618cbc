#include "app/core/rendu.h"

#include "app/core/hote_memoire.h"
#include "app/core/session.h"
#include "drawing/repere.h"
#include "drawing/surface_peinte.h"
#include "language/etat.h"
#include "language/interprete.h"

#include <QFile>
#include <QFileInfo>
#include <QImage>
#include <QPageLayout>
#include <QPageSize>
#include <QPdfWriter>
#include <QSvgGenerator>

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

// The devices of the pages of one output.
struct Pages {
    Format format;
    QString sortie;
    QSizeF mm;      // page size in millimetres, final orientation
    double dpi;     // PNG resolution
    std::unique_ptr<QPdfWriter> pdf;
    std::vector<std::unique_ptr<QSvgGenerator>> svg;
    std::vector<std::unique_ptr<QImage>> png;
    QStringList fichiers;

    QPaintDevice* Page(int n) {
        const QString nom = NomPage(sortie, n);
        const QSize px(qRound(mm.width() / 25.4 * DpiImprimante), qRound(mm.height() / 25.4 * DpiImprimante));
        switch (format) {
        case Format::Pdf:
            if (!pdf) {
                pdf = std::make_unique<QPdfWriter>(sortie);
                pdf->setResolution(int(DpiImprimante));
                pdf->setPageLayout(QPageLayout(QPageSize(mm, QPageSize::Millimeter), QPageLayout::Portrait,
                                               QMarginsF(0, 0, 0, 0)));
                pdf->setCreator(QStringLiteral("Mirel"));
                fichiers << sortie;
            }
            return pdf.get();
        case Format::Svg: {
            auto g = std::make_unique<QSvgGenerator>();
            g->setFileName(nom);
            g->setResolution(int(DpiImprimante));
            g->setSize(px);
            g->setViewBox(QRectF(0, 0, mm.width() / 25.4 * DpiImprimante, mm.height() / 25.4 * DpiImprimante));
            g->setTitle(QFileInfo(nom).completeBaseName());
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

    bool Ecrit(QString& erreur) {
        for (size_t i = 0; i < png.size(); ++i) {
            const QString nom = NomPage(sortie, int(i) + 1);
            if (!png[i]->save(nom, "PNG")) {
                erreur = QStringLiteral("cannot write %1").arg(nom);
                return false;
            }
        }
        // QSvgGenerator rounds the size to whole dots: the header gets the
        // page's exact millimetres, so that the drawing is at true size.
        for (int i = 0; format == Format::Svg && i < fichiers.size(); ++i) {
            QFile f(fichiers[i]);
            if (!f.open(QIODevice::ReadWrite)) continue;
            QByteArray t = f.readAll();
            const qsizetype fin = t.indexOf("viewBox");
            const qsizetype debut = t.indexOf("<svg width=");
            if (debut < 0 || fin < 0) continue;
            const QByteArray entete = "<svg width=\"" + QByteArray::number(mm.width(), 'g', 10) + "mm\" height=\"" +
                                      QByteArray::number(mm.height(), 'g', 10) + "mm\"\n ";
            t.replace(debut, fin - debut, entete);
            f.resize(0);
            f.seek(0);
            f.write(t);
        }
        for (const QString& f : fichiers) {
            if (!QFileInfo::exists(f)) {
                erreur = QStringLiteral("cannot write %1").arg(f);
                return false;
            }
        }
        return true;
    }
};

void Prepare(Etat& e, Reglages& r, HoteMemoire& h, const QString& chemin) {
    e.Regl = &r;
    e.Host = &h;
    e.FichierPrincipal = chemin;
}

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
    const int orientationDefaut = options.paysage ? 2 : 1;
    // A first run on a recording printer tells the final orientation of the
    // page (FormatI) before any device is made.
    Session essai(texte, QSizeF(297, 210), options.page);
    essai.regl = reglages;
    essai.etat.FichierPrincipal = chemin;
    essai.hote.Reponses = options.reponses;
    essai.hote.Saisies = options.saisies;
    essai.etat.Repere.OrientationImprimante = orientationDefaut;
    essai.ExecuteImprimante();
    const bool paysage = essai.imprimante->Orientation() == 2;

    Pages pages{format, sortie, paysage ? options.page.transposed() : options.page, options.dpi, {}, {}, {}, {}};
    Reglages regl = reglages;
    HoteMemoire hote(texte);
    hote.Reponses = options.reponses;
    hote.Saisies = options.saisies;
    Etat e;
    Prepare(e, regl, hote, chemin);
    const double echelle = format == Format::Png ? options.dpi / DpiImprimante : 1.0;
    SurfacePeinte imprimante(GenreSurface::Imprimante, options.page.width() / 25.4 * DpiImprimante,
                             options.page.height() / 25.4 * DpiImprimante, 25.4 / DpiImprimante,
                             [&pages](int n) { return pages.Page(n); }, echelle, true);
    SurfaceEnregistree pane(GenreSurface::Ecran, 297 / 25.4 * DpiEcran, 210 / 25.4 * DpiEcran, 25.4 / DpiEcran);
    MesureImprimante(e, imprimante);
    AttachePane(e, &pane);
    e.Repere.OrientationImprimante = orientationDefaut;
    LanceExecution(e, &imprimante);
    imprimante.EndDoc();
    pages.pdf.reset();
    pages.svg.clear();
    if (!pages.Ecrit(res.erreur)) {
        res.statut = 2;
        return res;
    }
    for (const MessageEnregistre& m : hote.Messages()) res.messages << m.titre + u'\n' + m.texte;
    res.fichiers = pages.fichiers;
    res.statut = e.ErreursAffichees > 0 ? 1 : 0;
    return res;
}
