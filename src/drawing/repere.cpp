// The drawing surface's coordinate frame: millimetres, y upward, the origin
// commands and the one line primitive.
#include "drawing/repere.h"

#include "drawing/echelle.h"
#include "drawing/styles.h"
#include "drawing/surface.h"
#include "language/commandes.h"
#include "language/constantes.h"
#include "language/erreur.h"
#include "language/etat.h"
#include "language/expr.h"
#include "language/hote.h"
#include "language/interprete.h"
#include "language/nombre.h"
#include "language/para.h"
#include "language/variables.h"
#include "language/vb.h"

#include <cmath>

using namespace vb;

namespace {

constexpr double DegRad = Litteraux::DegRad;

bool EstImprimante(const Etat& e) { return e.Surf && e.Surf->EstImprimante(); }

// The user window in millimetres scaled by the zoom factors, y upward; shared
// by the set-up of a run and by FormatI.
void EchelleUtilisateur(Surface& s, double fx, double fy, double& W, double& H) {
    s.SetScaleMode(6);
    W = s.ScaleWidth;
    H = s.ScaleHeight;
    s.ScaleWidth = W / fx;
    s.ScaleHeight = -(H / fy);
    s.ScaleLeft = 0;
    s.ScaleTop = H / fy;
}

// The default origin when the view is panned: the middle of the pane beside
// the editor, moved by the pan.
void OrigineParDefaut(Etat& e) {
    EtatRepere& r = e.Repere;
    if (r.DecalageVueX + r.DecalageVueY == 0 || !e.Surf) return;
    r.Dx = (e.Surf->ScaleWidth - r.LargeurEditeur) / 2 - r.DecalageVueX;
    r.Dy = -e.Surf->ScaleHeight / 2 - r.DecalageVueY;
}

// A rotation given in the sub-parameter of y: the text behind `Separateur2`.
bool AngleDonne(Etat& e, const QString& texte, double& angle) {
    const int p = InStr(texte, e.Separateur2);
    if (p == 0) return false;
    QString a = Trim(SousPara(e, texte, 2));
    if (a.isEmpty()) return false;
    angle = EvalExpr(e, a).value_or(0);
    return true;
}


QString FormatPointZeroDiese(double v) {
    // The number format ".0#": at least one decimal, at most two, no leading
    // zero.
    QString t = QString::number(std::round(v * 100) / 100, 'f', 2);
    if (t.endsWith(u'0')) t.chop(1);
    if (t.startsWith(QLatin1String("0."))) t = t.mid(1);
    else if (t.startsWith(QLatin1String("-0."))) t = u'-' + t.mid(2);
    return t;
}

void Centre(Etat& e, bool ecran, bool imprimante) {
    Surface* s = e.Surf;
    if (!s) return;
    if (s->EstImprimante() ? !imprimante : !ecran) return; // skipped, even as a second one
    CtxFic& c = e.Ctx();
    EtatRepere& r = e.Repere;
    const QString l = e.LigneCourante;
    const double x = ParaVal0(e, l, 1);
    const double y = ParaVal0(e, l, 2);
    if (e.NiveauCourant == 1) {
        if (e.EtatOrdre > 3) ErreurOrdre(e);
        e.EtatOrdre |= 4;
        if (s->EstImprimante()) {
            r.OrigineX = x;
            r.OrigineY = y;
        } else {
            r.CEx = x;
            r.CEy = y;
            if (r.DecalageVueX + r.DecalageVueY != 0) {
                OrigineParDefaut(e);
                r.Dx -= x;
                r.Dy -= y;
            }
            r.OrigineX = r.Dx + x;
            r.OrigineY = r.Dy + y;
        }
        c.CentreX = x;
        c.CentreY = y;
    } else if (c.Param.FicX == 999.99f && c.Param.FicY == 999.99f) {
        // In an included file, a position given by the caller wins (the call
        // leaves FicX, FicY at 999.99 when it gave none).
        r.OrigineX = (s->EstImprimante() ? 0 : r.Dx) + x;
        r.OrigineY = (s->EstImprimante() ? 0 : r.Dy) + y;
        c.CentreX = x;
        c.CentreY = y;
    }
    r.CTx = r.CTy = 0;
    r.CTxNonTourne = r.CTyNonTourne = 0;
    const QString p3 = ParaN(e, l, 3);
    // The origin's cross is no drawing for the order rules: ZoomIni may follow.
    if (!EstCouleurN(p3)) DessinePlus(e, r.OrigineX, r.OrigineY, 1, 0, CouleurParametre(e, p3), 1);
    s->CurrentX = r.OrigineX;
    s->CurrentY = r.OrigineY;
    const double ex = s->EstImprimante() ? r.OrigineX : r.OrigineX - r.Dx;
    const double ey = s->EstImprimante() ? r.OrigineY : r.OrigineY - r.Dy;
    const QString v4 = Trim(ParaBrut(e, l, 4)), v5 = Trim(ParaBrut(e, l, 5));
    if (v4.startsWith(u'%') && v4.size() >= 2) EcritVarNum(e, e.NiveauCourant, v4, ex);
    if (v5.startsWith(u'%') && v5.size() >= 2) EcritVarNum(e, e.NiveauCourant, v5, ey);
}

} // namespace

void AttachePane(Etat& e, Surface* pane) {
    e.Pane = pane;
    if (!pane) return;
    e.Repere.MmParPixelE = float(pane->MmParPixel());
    e.Repere.PointsParPixel = e.Repere.MmParPixelE / e.Repere.MmParPointI;
    pane->SetScaleMode(6);
    e.Repere.LargeurFenetreMm = pane->ScaleWidth;
    e.Repere.HauteurFenetreMm = pane->ScaleHeight;
}

void MesureImprimante(Etat& e, const Surface& imprimante) {
    e.Repere.MmParPointI = float(imprimante.MmParPixel());
    e.Repere.PointsParPixel = e.Repere.MmParPixelE / e.Repere.MmParPointI;
}

void EchelleImprimante(Etat& e) {
    if (!e.Surf) return;
    double W = 0, H = 0;
    EchelleUtilisateur(*e.Surf, e.Repere.FacteurX, e.Repere.FacteurY, W, H);
}

void MiseEnPlaceRepere(Etat& e) {
    Surface* s = e.Surf;
    EtatRepere& r = e.Repere;
    if (!s) return;
    // 1.
    if (s->EstImprimante()) {
        // Portrait unless `render --landscape` asks for the other way.
        s->SetOrientation(r.OrientationImprimante);
        r.FacteurZ = r.ZoomI;
    } else {
        r.FacteurZ = 1;
    }
    // 2.
    r.FacteurX = r.FacteurY = r.FacteurZ;
    double W = 0, H = 0;
    EchelleUtilisateur(*s, r.FacteurX, r.FacteurY, W, H);
    e.Txt.FacteurPolice = 1;
    // 3.
    if (!s->EstImprimante()) {
        s->Cls();
        r.FacteurZ = (e.Regl ? e.Regl->Zmm : 1.0f) * r.ZoomE;
        const double Wf = r.LargeurFenetreMm > 0 ? r.LargeurFenetreMm : W;
        const double Hf = r.HauteurFenetreMm > 0 ? r.HauteurFenetreMm : H;
        r.FacteurX = Wf * r.FacteurZ / W;
        r.FacteurY = Hf * r.FacteurZ / H;
        e.Txt.FacteurPolice = r.FacteurZ;
        s->ScaleWidth = W / r.FacteurZ;
        s->ScaleHeight = -(H / r.FacteurZ);
        s->ScaleLeft = 0;
        s->ScaleTop = H / r.FacteurZ;
    }
    // 4.
    OrigineParDefaut(e);
    // 5.
    r.OrigineX = r.Dx + e.Ctx(1).DecalX.value_or(0);
    r.OrigineY = r.Dy + e.Ctx(1).DecalY.value_or(0);
    RazEchelleRun(e);
    r.CTx = r.CTy = 0;
    r.CTxNonTourne = r.CTyNonTourne = 0;
}

void Tourne(double rotation, double& x, double& y) {
    if (rotation == 0) return;
    const double r = rotation * DegRad;
    const double xn = x * std::cos(r) + y * std::sin(r);
    const double yn = -x * std::sin(r) + y * std::cos(r);
    x = xn;
    y = yn;
}

bool TourneAutourCentre(const Etat& e, double rotation, double& x, double& y) {
    const double r = -rotation * DegRad;
    if (r == 0) return false;
    const double cx = e.Repere.OrigineX + e.Repere.CTx, cy = e.Repere.OrigineY + e.Repere.CTy;
    const double dx = x - cx, dy = y - cy;
    x = cx + dx * std::cos(r) + dy * std::sin(r);
    y = cy - dx * std::sin(r) + dy * std::cos(r);
    return true;
}

void PolygoneRempli(Etat& e, const QVector<QPointF>& pixels, int couleur) {
    Surface* s = e.Surf;
    if (!s) return;
    s->ForeColor = couleur;
    s->FillColor = couleur;
    s->FillStyle = 0;
    s->Polygon(pixels);
}

void PSetHorsPage(Etat& e, int couleur) {
    Surface* s = e.Surf;
    if (s) s->PSet(s->ScaleLeft - 1000, s->ScaleTop + 1000, couleur);
}

void InitialiseStylo(Etat& e, int couleur) {
    if (e.Repere.StyloInitialise) return;
    PSetHorsPage(e, couleur);
    e.Repere.StyloInitialise = true;
}

void LitRotation(Etat& e, const QString& texte, double& x, double& y) {
    EtatRepere& r = e.Repere;
    double angle = 0;
    r.RotationDonnee = AngleDonne(e, texte, angle);
    r.RotationCmd = r.RotationDonnee ? float(-angle) : r.AngRotDefaut;
    r.XNonTourne = float(x);
    r.YNonTourne = float(y);
    Tourne(r.RotationCmd, x, y);
}

double VersSurfaceX(const Etat& e, double x) { return x + e.Repere.OrigineX + e.Repere.CTx; }
double VersSurfaceY(const Etat& e, double y) { return y + e.Repere.OrigineY + e.Repere.CTy; }

QPointF LitPointCommande(Etat& e, const QString& l) {
    double x = 0, y = 0;
    ParaCoord(e, x, y, l, 1, e.Repere.PointX, e.Repere.PointY);
    LitRotation(e, ParaN(e, l, 2), x, y);
    return {VersSurfaceX(e, x), VersSurfaceY(e, y)};
}

float MmParPointCible(const Etat& e) {
    return EstImprimante(e) ? e.Repere.MmParPointI : e.Repere.MmParPixelE;
}

QPointF PixelDevice(const Etat& e, double x, double y, bool arrondi) {
    const EtatRepere& r = e.Repere;
    const double m = MmParPointCible(e);
    const double H = e.Surf ? e.Surf->ScaleTop : 0;
    const QPointF p(r.FacteurX * x / m, r.FacteurY * (H - y) / m);
    if (!arrondi) return p;
    return {std::nearbyint(p.x()), std::nearbyint(p.y())};
}

void TraitRot(Etat& e, double x1, double y1, double x2, double y2, double rotation, int couleur) {
    EtatRepere& rp = e.Repere;
    EtatStyles& st = e.Styles;
    Surface* s = e.Surf;
    if (!s) return;
    // 1. Turn both ends about the frame's centre.
    TourneAutourCentre(e, rotation, x1, y1);
    TourneAutourCentre(e, rotation, x2, y2);
    // A point handed to the line primitive is a 32-bit float; a point beyond
    // the float's range is an overflow of the line.
    x1 = Float32(x1); y1 = Float32(y1); x2 = Float32(x2); y2 = Float32(y2);
    // 2. The dash pattern's continuity. A segment of no length is drawn
    // whole, as a dot, and leaves the pattern as it stands.
    const bool point = x1 == x2 && y1 == y2;
    const bool tirets = st.TiretL1 > 0 && !point;
    if (tirets && (std::abs(x1 - st.TiretFinX) > 0.01 || std::abs(y1 - st.TiretFinY) > 0.01)) {
        st.TiretReste = 0;
        st.TiretPhase = 0;
    }
    // 3. Square ends: width 1 while the polygon does the body.
    const int largeur = s->DrawWidth;
    if (st.BoutCarre) {
        s->DrawWidth = 1;
        InitialiseStylo(e, couleur);
        const double m = MmParPointCible(e);
        const double dx = x2 - x1, dy = y2 - y1, L = std::hypot(dx, dy);
        rp.DemiLargeurX = L > 0 ? 0.5 * largeur * m * dy / (L * rp.FacteurX) : 0;
        rp.DemiLargeurY = L > 0 ? 0.5 * largeur * m * dx / (L * rp.FacteurY) : 0;
    }
    // 4.
    if (tirets) TraitTirete(e, x1, y1, x2, y2, couleur);
    else Segment(e, x1, y1, x2, y2, couleur);
    // 5.
    if (st.BoutCarre) {
        s->FillStyle = 1;
        s->DrawWidth = largeur;
    }
    st.TiretFinX = float(x2);
    st.TiretFinY = float(y2);
}

void Segment(Etat& e, double x1, double y1, double x2, double y2, int couleur) {
    Surface* s = e.Surf;
    if (!s) return;
    // 1. Colour N: the pen moves, nothing is drawn.
    if (couleur == -1) {
        s->CurrentX = x2;
        s->CurrentY = y2;
        return;
    }
    if (!e.Styles.BoutCarre) {
        s->Line(x1, y1, x2, y2, couleur);
        return;
    }
    // 3. Square ends: a filled polygon in device pixels, and a thin line.
    const double hx = e.Repere.DemiLargeurX, hy = e.Repere.DemiLargeurY;
    const QVector<QPointF> coins = {PixelDevice(e, x1 + hx, y1 - hy), PixelDevice(e, x1 - hx, y1 + hy),
                                    PixelDevice(e, x2 - hx, y2 + hy), PixelDevice(e, x2 + hx, y2 - hy)};
    PolygoneRempli(e, coins, couleur);
    s->Line(x1, y1, x2, y2, couleur);
    s->CurrentX = x2;
    s->CurrentY = y2;
}

void DessinePlus(Etat& e, double x, double y, double s, double a, int couleur, double k) {
    const double sk = k != 1 ? s / k : s;
    if (a == 0) {
        TraitRot(e, x - s, y, x + s, y, 0, couleur);
        TraitRot(e, x, y - sk, x, y + sk, 0, couleur);
        return;
    }
    TraitRot(e, x + s * std::cos(a), y - s * std::sin(a), x - s * std::cos(a), y + s * std::sin(a), 0,
             couleur);
    TraitRot(e, x - sk * std::sin(a), y - sk * std::cos(a), x + sk * std::sin(a), y + sk * std::cos(a),
             0, couleur);
}

// The pen in the frame of the origins: the Surface's position is read as the
// frame keeps it, in single precision, so that far from the page's edge a
// point keeps only a float's digits (100000.01 mm is read 100000.0078125).
namespace {
void StyloDansRepere(const Etat& e, double& X, double& Y) {
    const EtatRepere& r = e.Repere;
    X = float(e.Surf->CurrentX) - r.OrigineX - r.CTx;
    Y = float(e.Surf->CurrentY) - r.OrigineY - r.CTy;
}
} // namespace

void MajPointCourant(Etat& e, double angle) {
    EtatRepere& r = e.Repere;
    if (!e.Surf) return;
    double X = 0, Y = 0;
    StyloDansRepere(e, X, Y);
    // Back to the unturned frame of the command: the turn of LitRotation by
    // the opposite angle.
    Tourne(-angle, X, Y);
    r.PointX = float(X);
    r.PointY = float(Y);
}

void ErreurOrdre(Etat& e) {
    e.EtatOrdre = -e.EtatOrdre;
    throw ErreurProvoquee("ordre");
}

void VerifieEchelle(Etat& e) {
    if (e.EtatOrdre & 32) return;
    e.TexteErreur = QStringLiteral("Erreur ordre commandes / Error odre commands") + CrLf() + CrLf();
    throw ErreurProvoquee("ordre échelle");
}

void CmdFormatI(Etat& e) {
    if (e.NiveauCourant != 1) return;
    if (e.EtatOrdre > 0) ErreurOrdre(e);
    e.EtatOrdre = 1;
    const QString p = ParaN(e, e.LigneCourante, 1).toUpper();
    bool paysage;
    if (p.contains(QLatin1String("LANDS")) || p.contains(QLatin1String("PAYS"))) paysage = true;
    else if (p.contains(QLatin1String("PORT"))) paysage = false;
    else throw ErreurCommande();
    if (paysage) {
        e.Repere.FPay = true;
        EcritVarNum(e, 1, QStringLiteral("%FPay"), 1);
    }
    if (EstImprimante(e)) {
        e.Surf->SetOrientation(paysage ? 2 : 1);
        EchelleImprimante(e);
    }
}

namespace {
void ZoomInitial(Etat& e, float& cible) {
    if (e.NiveauCourant != 1) return;
    if (e.EtatOrdre > 4) ErreurOrdre(e);
    cible = ZoomDepartDe(ParaVal0(e, e.LigneCourante, 1));
}
} // namespace

float ZoomDepartDe(double valeur) {
    const float z = std::abs(float(valeur));
    return z == 0 ? 1.0f : z;
}

void CmdZoomIni(Etat& e) { ZoomInitial(e, e.Repere.ZoomDepart); }
void CmdZoomIniI(Etat& e) { ZoomInitial(e, e.Repere.ZoomDepartI); }

// Retired from main programs: a command error at level 1, skipped below it.
void CmdFacteur(Etat& e) {
    if (e.NiveauCourant == 1) throw ErreurCommande();
}

void CmdCentreE(Etat& e) { Centre(e, true, false); }
void CmdCentreI(Etat& e) { Centre(e, false, true); }
void CmdCentreEI(Etat& e) { Centre(e, true, true); }

void CmdCT(Etat& e) {
    EtatRepere& r = e.Repere;
    Surface* s = e.Surf;
    if (!s) return;
    const QString l = e.LigneCourante;
    double x = 0, y = 0;
    ParaCoord(e, x, y, l, 1, r.CTxNonTourne + r.PointX, r.CTyNonTourne + r.PointY);
    e.EtatOrdre |= 4;
    const QString texteY = ParaN(e, l, 2);
    LitRotation(e, texteY, x, y); // saves the unturned pair and turns x, y
    r.CTxNonTourne = r.XNonTourne;
    r.CTyNonTourne = r.YNonTourne;
    r.CTx = float(x);
    r.CTy = float(y);
    e.Ctx().CTx = r.CTx;
    e.Ctx().CTy = r.CTy;
    if (e.NiveauCourant == 1) {
        EcritVarNum(e, 1, QStringLiteral("%CTx"), r.CTx);
        EcritVarNum(e, 1, QStringLiteral("%CTy"), r.CTy);
    }
    const QString p3 = ParaN(e, l, 3);
    if (!Trim(l).isEmpty() && !EstCouleurN(p3)) {
        DessinePlus(e, r.OrigineX + r.CTx, r.OrigineY + r.CTy, 1, 0, CouleurParametre(e, p3), 1);
        e.EtatOrdre |= 64;
    }
    s->CurrentX = r.OrigineX + r.CTx;
    s->CurrentY = r.OrigineY + r.CTy;
    MajPointCourant(e, r.RotationCmd);
}

void CmdAngRot(Etat& e) {
    EtatRepere& r = e.Repere;
    const QString l = e.LigneCourante;
    const double angle = ParaVal0(e, l, 1);
    r.AngRotDefaut = float(-angle);
    e.Ctx().AngleDefaut = r.AngRotDefaut;
    const std::optional<double> niveaux = ParaVal(e, l, 2);
    if (niveaux && *niveaux == -1) {
        EcritVarNum(e, e.NiveauCourant, QStringLiteral("%ANGR"), angle);
        return;
    }
    if (e.NiveauCourant == 1) EcritVarNum(e, 1, QStringLiteral("%ANGR"), angle);
    r.NivAngRot = niveaux ? e.NiveauCourant + int(*niveaux) : 5;
}

void CmdNPage(Etat& e) {
    Surface* s = e.Surf;
    if (s) {
        if (s->EstImprimante()) {
            s->NewPage();
            e.Txt.PageMarquee = false;
        } else {
            s->Cls();
            if (e.Host) e.Host->PompeEvenements();
        }
    }
    e.EtatOrdre = 0;
}

void CmdRefCur(Etat& e) {
    if (e.NiveauCourant != 1) return;
    EtatRepere& r = e.Repere;
    const QString l = e.LigneCourante;
    double x = 0, y = 0;
    ParaCoord(e, x, y, l, 1, r.PointX, r.PointY);
    double angle = 0;
    AngleDonne(e, ParaN(e, l, 2), angle);
    r.RefCurX = FormatPointZeroDiese(x);
    r.RefCurY = FormatPointZeroDiese(y);
    r.RefCurAngle = FormatPointZeroDiese(-angle);
}

void CmdPoint(Etat& e) {
    Surface* s = e.Surf;
    if (!s) return;
    const QString l = e.LigneCourante;
    double x = 0, y = 0;
    StyloDansRepere(e, x, y);
    double angle = 0;
    if (AngleDonne(e, ParaN(e, l, 2), angle) && angle != 0) Tourne(angle, x, y);
    const QString deux = ParaBrut(e, l, 1) + ParaBrut(e, l, 2);
    if (deux.contains(u'%')) {
        const QString vx = Trim(ParaBrut(e, l, 1));
        QString vy = Trim(ParaBrut(e, l, 2));
        const int p = InStr(vy, e.Separateur2);
        if (p > 0) vy = Trim(Left(vy, p - 1));
        if (vx.startsWith(u'%') && vx.size() >= 2) EcritVarNum(e, e.NiveauCourant, vx, x);
        if (vy.startsWith(u'%') && vy.size() >= 2) EcritVarNum(e, e.NiveauCourant, vy, y);
        return;
    }
    if (e.NiveauCourant != 1) return;
    auto deuxDecimales = [](double v) { return StrF(float(std::round(v * 100) / 100)); };
    RecritLigneEditeur(e, QStringLiteral("'? =") + deuxDecimales(x) + QStringLiteral(", ") +
                              deuxDecimales(y));
}

// --- the drawing's part of a run's start and of a level's entry and end
// (declared in language/commandes.h)

void RazEtatDessin(Etat& e) {
    const EtatRepere garde = e.Repere;
    e.Repere = EtatRepere();
    EtatRepere& r = e.Repere;
    // What outlives a run: zooms, measures, pan and pane size. All else, the
    // current point and the temporary centre among it, starts at 0.
    r.ZoomE = garde.ZoomE;
    r.ZoomI = garde.ZoomI;
    r.ZoomDepart = garde.ZoomDepart;
    r.ZoomDepartI = garde.ZoomDepartI;
    r.MmParPixelE = garde.MmParPixelE;
    r.MmParPointI = garde.MmParPointI;
    r.PointsParPixel = garde.PointsParPixel;
    r.DecalageVueX = garde.DecalageVueX;
    r.DecalageVueY = garde.DecalageVueY;
    r.LargeurEditeur = garde.LargeurEditeur;
    r.LargeurFenetreMm = garde.LargeurFenetreMm;
    r.HauteurFenetreMm = garde.HauteurFenetreMm;
    r.OrientationImprimante = garde.OrientationImprimante;
    e.Styles = EtatStyles();
    e.Ech = Echelle();
    e.Grad = EtatGrad();
    e.Val = EtatVal();
    e.Txt = EtatTexte();
    e.Cercle = EtatCercle();
    e.Cadre = EtatCadre();
    e.Inclusion = EtatInclusion();
}

void EntreeNiveauDessin(Etat& e, int niveau) {
    CtxFic& c = e.PileFic[niveau];
    EtatRepere& r = e.Repere;
    Surface* s = e.Surf;
    // 7.
    if (s) s->ForeColor = 0;
    r.AngRotDefaut = c.AngleDefaut;
    r.FacteurTraitX = r.FacteurTraitY = 1;
    // 10.
    if (niveau == 1) {
        MiseEnPlaceRepere(e);
    } else {
        r.OrigineX = r.Dx + c.DecalX.value_or(0);
        r.OrigineY = r.Dy + c.DecalY.value_or(0);
    }
    // 11.
    e.Styles.CouleurDefaut = 0;
    e.Styles.CouleurCmd = 0;
    r.CTx = r.CTy = 0;
    r.CTxNonTourne = r.CTyNonTourne = 0;
    e.Txt.TaillePolice = e.Regl ? e.Regl->TaillePoliceDefaut : 10;
    if (s) {
        s->ForeColor = 0;
        s->Font.Bold = s->Font.Italic = s->Font.Underline = false;
        s->Font.Name = QStringLiteral("Times New Roman");
        s->Font.Size = e.Txt.TaillePolice * e.Txt.FacteurPolice;
    }
    // The default thickness: one printer dot, never under one device pixel.
    e.Styles.EpaisCourante = float(LargeurTrait(e, 1, false));
    c.EpaisDefaut = e.Styles.EpaisCourante;
    if (s) s->DrawWidth = int(e.Styles.EpaisCourante);
}

void FinNiveauDessin(Etat& e, int niveau) {
    EtatRepere& r = e.Repere;
    Surface* s = e.Surf;
    if (niveau == 1 && s && s == e.Pane) {
        // The part of a panned pane outside the sheet shows grey (mask pen).
        if (r.Dx > 0) s->BoiteMasque(0, 0, r.Dx, s->ScaleTop, RGB(230, 230, 230));
        if (r.Dy > 0) s->BoiteMasque(0, 0, s->ScaleWidth, r.Dy, RGB(230, 230, 230));
    }
    r.SourisOrigineX = r.OrigineX;
    r.SourisOrigineY = r.OrigineY;
    r.SourisAngle = -r.AngRotDefaut;
    r.SourisAngleRad = float(-r.AngRotDefaut * DegRad);
    r.SourisRefX = r.OrigineX + r.RefCurX.toDouble();
    r.SourisRefY = r.OrigineY + r.RefCurY.toDouble();
}

void EffacePane(Etat& e) {
    if (e.Pane) e.Pane->Cls();
}
