#include "app/core/session.h"

#include "drawing/repere.h"
#include "language/interprete.h"


namespace {

std::unique_ptr<Surface> SurfaceDe(GenreSurface genre, QSizeF mm, double dpi) {
    return std::make_unique<SurfaceEnregistree>(genre, mm.width() / 25.4 * dpi,
                                                mm.height() / 25.4 * dpi, 25.4 / dpi);
}

} // namespace

QSizeF TaillePage(const QString& nom) {
    const QString n = nom.trimmed().toUpper();
    if (n == QLatin1String("A4")) return {210, 297};
    if (n == QLatin1String("A3")) return {297, 420};
    if (n == QLatin1String("LETTER")) return {215.9, 279.4};
    const QStringList wh = n.split(u'X');
    if (wh.size() == 2) {
        bool a = false, b = false;
        const double w = wh[0].toDouble(&a), h = wh[1].toDouble(&b);
        if (a && b && w > 0 && h > 0) return {w, h};
    }
    return {};
}

Session::Session(const QString& texte, QSizeF paneMm, QSizeF pageMm) : hote(texte) {
    pane = SurfaceDe(GenreSurface::Ecran, paneMm, DpiEcran);
    imprimante = SurfaceDe(GenreSurface::Imprimante, pageMm, DpiImprimante);
    pane->SetJournal(&journal);
    imprimante->SetJournal(&journal);
    etat.Regl = &regl;
    etat.Host = &hote;
    MesureImprimante(etat, *imprimante);
    AttachePane(etat, pane.get());
}

void Session::Execute(float zoom) {
    journal.clear();
    if (zoom == 1.0f) {
        Visualiser(etat);
        return;
    }
    FermeFichiers(etat);
    etat.Repere.ZoomE = zoom;
    LanceExecution(etat);
}

void Session::ExecuteImprimante() {
    journal.clear();
    FermeFichiers(etat);
    etat.Repere.ZoomI = 1.0f;
    LanceExecution(etat, imprimante.get());
}
