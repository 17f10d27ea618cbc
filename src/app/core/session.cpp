#include "app/core/session.h"

#include "drawing/repere.h"
#include "language/interprete.h"

#include <QDeadlineTimer>


namespace {

std::unique_ptr<Surface> SurfaceDe(GenreSurface genre, QSizeF mm, double dpi) {
    return std::make_unique<SurfaceEnregistree>(genre, mm.width() / 25.4 * dpi,
                                                mm.height() / 25.4 * dpi, 25.4 / dpi);
}

} // namespace

namespace {

const struct {
    const char* nom;
    double largeur, hauteur;
} PagesNommees[] = {{"A4", 210, 297}, {"A3", 297, 420}, {"A5", 148, 210},
                    {"Letter", 215.9, 279.4}, {"Legal", 215.9, 355.6}};

} // namespace

QStringList NomsPages() {
    QStringList r;
    for (const auto& p : PagesNommees) r << QString::fromLatin1(p.nom);
    return r;
}

QSizeF TaillePage(const QString& nom) {
    const QString n = nom.trimmed().toUpper();
    for (const auto& p : PagesNommees)
        if (n == QString::fromLatin1(p.nom).toUpper()) return {p.largeur, p.hauteur};
    const QStringList wh = n.split(u'X');
    if (wh.size() == 2) {
        bool a = false, b = false;
        const double w = wh[0].toDouble(&a), h = wh[1].toDouble(&b);
        if (a && b && w >= PageMin && h >= PageMin && w <= PageMax && h <= PageMax) return {w, h};
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
    hote.Arret = &etat.ArretDemande;
    MesureImprimante(etat, *imprimante);
    AttachePane(etat, pane.get());
}

void PapierEtOrientation(QSizeF& page, bool& paysage) {
    if (page.width() <= page.height()) return;
    page.transpose();
    paysage = true;
}

QString RaisonArret(bool delaiPasse, bool limiteAtteinte, double delai) {
    if (limiteAtteinte)
        return QStringLiteral("the run was stopped after %1 drawing operations, more than any "
                              "drawing needs: the program loops; what was drawn is written")
            .arg(MaxOperationsRun);
    if (delaiPasse)
        return QStringLiteral("the run was stopped after %1 s (--timeout); what was drawn is written")
            .arg(delai);
    return {};
}

void Session::Prepare() {
    journal.clear();
    for (Surface* s : {pane.get(), imprimante.get()})
        s->LimiteOperations(MaxOperationsRun, [this] { etat.ArretDemande = true; });
    hote.Expire = false;
    hote.Echeance = EcheanceDe(delai);
}

QDeadlineTimer EcheanceDe(double delai) {
    return delai > 0 ? QDeadlineTimer(qint64(delai * 1000)) : QDeadlineTimer(QDeadlineTimer::Forever);
}

QString Session::Arret() const {
    return RaisonArret(hote.Expire, pane->LimiteAtteinte() || imprimante->LimiteAtteinte(), delai);
}

void Session::Execute(float zoom) {
    Prepare();
    if (zoom == 1.0f) {
        Visualiser(etat);
        return;
    }
    FermeFichiers(etat);
    etat.Repere.ZoomE = zoom;
    LanceExecution(etat);
}

void Session::ExecuteImprimante() {
    Prepare();
    FermeFichiers(etat);
    etat.Repere.ZoomI = 1.0f;
    LanceExecution(etat, imprimante.get());
}

bool Session::FiniPaysage(int orientation) {
    etat.Repere.OrientationImprimante = orientation;
    hote.SansEffets = true;
    ExecuteImprimante();
    hote.SansEffets = false;
    return imprimante->Orientation() == 2;
}
