// `Surface`: the drawing object of Part 2.1 (Platform interfaces).
//
// It keeps the state of the original drawing object (user window in
// `ScaleMode` 6, pen position, colours, fill style, width, font) and offers its
// operations in `Surface` units. Device pixels are the target's own dots: on
// the screen the pane's logical pixels, on the printer the dots of a 600 dpi
// virtual printer, whatever file is finally written (design.md §1).
//
// Every operation may be recorded in a `Journal` (the dump of design.md §6).
// `SurfacePeinte` paints on a QPaintDevice; `SurfaceEnregistree` paints
// nothing and only measures and records.
#pragma once

#include <QColor>
#include <QFont>
#include <QImage>
#include <QPointF>
#include <QString>
#include <QVector>

#include <memory>
#include <optional>

enum class GenreSurface { Ecran, Imprimante };

// `Font` of the drawing object.
struct PoliceSurface {
    QString Name = QStringLiteral("Times New Roman");
    double Size = 10;     // points
    bool Bold = false, Italic = false, Underline = false, Strikethrough = false;
    int Weight = 400;
    int Charset = 0;
};

// The outline text metrics of the current font, in device pixels
// (`GetOutlineTextMetricsA`: tmAscent, tmHeight, tmInternalLeading).
struct MetriquesPolice {
    double Ascent = 0, Height = 0, InternalLeading = 0;
};

// One recorded operation; coordinates in `Surface` units.
struct OpSurface {
    enum Genre { Ligne, Cercle, Polygone, Texte, Point, Image, Effacement, NouvellePage };
    Genre genre = Ligne;
    double x1 = 0, y1 = 0, x2 = 0, y2 = 0; // line ends; circle centre (x1, y1); text,
                                           // pset, image position; image w, h in x2, y2
    double r = 0;
    std::optional<double> debut, fin;      // circle angles, radians as given
    double aspect = 1;
    int couleur = 0;                       // BGR as the original, -1 none
    std::optional<int> remplissage;        // fill colour, none = not filled
    int largeur = 1;                       // DrawWidth, device pixels
    double largeurMm = 0;
    QVector<QPointF> points;               // polygon, Surface units
    QString texte, police, fichier;
    double taille = 0, angle = 0;
    bool gras = false, italique = false, souligne = false;
};

using Journal = QVector<OpSurface>;

// Colour helpers: the original keeps colours as red + 256 green + 65536 blue.
inline QColor VersQColor(int bgr) {
    return QColor(bgr & 0xFF, (bgr >> 8) & 0xFF, (bgr >> 16) & 0xFF);
}
inline int RGB(int r, int g, int b) { return r + 256 * g + 65536 * b; }

class Surface {
public:
    Surface(GenreSurface genre, double largeurPx, double hauteurPx, double mmParPixel);
    virtual ~Surface();

    GenreSurface Genre() const { return genre_; }
    bool EstImprimante() const { return genre_ == GenreSurface::Imprimante; }

    // --- the user window
    // ScaleMode 6 (millimetres, the device's size, y downward) or 3 (pixels).
    void SetScaleMode(int mode);
    int ScaleMode() const { return scaleMode_; }
    double ScaleWidth = 0, ScaleHeight = 0, ScaleLeft = 0, ScaleTop = 0;

    // Device size and resolution.
    double LargeurPx() const { return largeurPx_; }
    double HauteurPx() const { return hauteurPx_; }
    double MmParPixel() const { return mmParPixel_; }
    // Printer Orientation: 1 portrait, 2 landscape (width and height swap).
    int Orientation() const { return orientation_; }
    void SetOrientation(int o);

    // From Surface units to device pixels and back (the user window's mapping).
    QPointF VersPixel(double x, double y) const;
    QPointF DepuisPixel(double px, double py) const;
    double PixelsParUniteX() const { return largeurPx_ / ScaleWidth; }

    // --- the pen
    double CurrentX = 0, CurrentY = 0;
    int ForeColor = 0;
    int FillColor = 0;
    int FillStyle = 1;  // 0 solid, 1 transparent
    int DrawWidth = 1;  // device pixels
    PoliceSurface Font;

    // --- the operations
    void Line(double x1, double y1, double x2, double y2, int couleur);
    // A filled box in the mask mode of the original (Part 1.1, end of level step 1).
    void BoiteMasque(double x1, double y1, double x2, double y2, int couleur);
    // `Circle`: radius in horizontal units; aspect above 1 divides the horizontal
    // radius, below 1 multiplies the vertical one. Angles in radians
    // counter-clockwise, none for a full turn; a negative angle (not -0) draws a
    // radius line to that end. With FillStyle 0 only closed figures are filled
    // (a full turn, or both angles negative). The pen goes to the centre.
    void Circle(double x, double y, double r, int couleur,
                std::optional<double> debut = {}, std::optional<double> fin = {},
                std::optional<double> aspect = {});
    void PSet(double x, double y, int couleur);
    // `Polygon` through `hDC`: points in device pixels, outline in ForeColor with
    // DrawWidth, filled with FillColor when FillStyle is 0.
    void Polygon(const QVector<QPointF>& pixels);
    // A polygon given in Surface units (the shapes that fill in Surface units).
    void PolygonUnites(const QVector<QPointF>& points);
    // Text with the current Font, its baseline starting at x, y (Surface units),
    // turned by angle degrees counter-clockwise. With haut = true, x, y is the top
    // left of the text cell instead (`SetTextAlign` 0).
    void TextOut(double x, double y, double angle, const QString& texte, bool haut = false);
    double TextWidth(const QString& texte) const;
    // Negative when y runs upward, as the original's (Part 3.3).
    double TextHeight(const QString& texte) const;
    MetriquesPolice Metriques() const;
    void PaintPicture(const QImage& image, const QString& fichier,
                      double x, double y, double w, double h);
    void Cls();
    void NewPage();
    virtual void EndDoc() {}

    // The QFont of Font at the device's resolution (for painting and measuring).
    QFont PoliceQt() const;

    // Recording: when set, every operation is appended.
    void SetJournal(Journal* j) { journal_ = j; }
    Journal* journal() const { return journal_; }

protected:
    // Device operations, in device pixels. The recording surface leaves them empty.
    virtual void DevLigne(QPointF, QPointF, const QColor&, int) {}
    virtual void DevBoiteMasque(const QRectF&, const QColor&) {}
    virtual void DevEllipse(QPointF, double, double, std::optional<double>,
                            std::optional<double>, const QColor&, int,
                            std::optional<QColor>) {}
    virtual void DevPoint(QPointF, const QColor&) {}
    virtual void DevPolygone(const QVector<QPointF>&, const QColor&, int,
                             std::optional<QColor>) {}
    virtual void DevTexte(QPointF, double, const QString&, const QFont&, const QColor&) {}
    virtual void DevImage(const QRectF&, const QImage&) {}
    virtual void DevEffacer() {}
    virtual void DevNouvellePage() {}
    virtual void DevOrientation() {}

    void Enregistre(OpSurface op);
    double largeurPx_, hauteurPx_;

private:
    GenreSurface genre_;
    double mmParPixel_;
    int scaleMode_ = 3;
    int orientation_ = 1;
    Journal* journal_ = nullptr;
    QImage mesure_; // the device on which fonts are measured, at the target's resolution
};

// A surface that paints nothing: it measures and records. The default target
// of `dump` and of the tests.
class SurfaceEnregistree : public Surface {
public:
    using Surface::Surface;
};
