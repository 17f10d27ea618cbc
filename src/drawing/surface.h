// `Surface`: the drawing object that every command draws on.
//
// It keeps the state of a drawing object (user window in
// `ScaleMode` 6, pen position, colours, fill style, width, font) and offers its
// operations in `Surface` units. Device pixels are the target's own dots: on
// the screen the pane's logical pixels, on the printer the dots of a 600 dpi
// virtual printer, whatever file is finally written.
//
// Every operation may be recorded in a `Journal` (what `mirel dump` prints).
// `SurfacePeinte` paints on a QPaintDevice; `SurfaceEnregistree` paints
// nothing and only measures and records.
#pragma once

#include <QColor>
#include <QFont>
#include <QFontMetricsF>
#include <QImage>
#include <QPointF>
#include <QString>
#include <QVector>

#include <functional>
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

// Fonts are measured and painted at this em height in pixels and scaled to
// the size asked: unhinted outlines scale linearly, and Qt would round a size
// in points to whole device pixels (13 px for 10 points at 96 dpi, 2.5 % short
// of 13.33), so screen, PDF and PNG would not agree.
constexpr int TailleEtalonPx = 1000;

// The outline text metrics of the current font, in device pixels: ascent,
// cell height and internal leading.
struct MetriquesPolice {
    double Ascent = 0, Height = 0, InternalLeading = 0;
};

// A font made for the device: the handle of a `CLogFont`. Its em
// height is in device pixels of the target, its escapement in degrees
// counter-clockwise.
struct PoliceDevice {
    QString Name;
    double HauteurPx = 0;
    bool Bold = false, Italic = false, Underline = false, Strikethrough = false;
    double Escapement = 0;
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
    int couleur = 0;                       // BGR, -1 none
    std::optional<int> remplissage;        // fill colour, none = not filled
    int largeur = 1;                       // DrawWidth, device pixels
    double largeurMm = 0;
    QVector<QPointF> points;               // polygon, Surface units
    QString texte, police, fichier;
    double taille = 0, angle = 0;
    bool gras = false, italique = false, souligne = false;
};

using Journal = QVector<OpSurface>;

// The most operations one headless run draws: ten times the largest `Plot`
// (50,100 points) and more. A program that loops on drawing commands is
// stopped there instead of filling memory.
constexpr qsizetype MaxOperationsRun = 1'000'000;

// Colour helpers: a colour is kept as one number, red + 256 green + 65536 blue.
// A negative one is the colour N, whichever way it came (a default colour N, an
// "RVB" of negative values): it paints nothing. A mark in it reaches no device
// (an engraver reading the SVG would cut even an invisible path), and an
// outline in it around a coloured fill is transparent.
inline bool Encre(int bgr) { return bgr >= 0; }
inline QColor VersQColor(int bgr) {
    if (!Encre(bgr)) return QColor(Qt::transparent);
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
    // A filled box drawn in mask mode: the grey margins of a panned pane.
    void BoiteMasque(double x1, double y1, double x2, double y2, int couleur);
    // `Circle`: radius in horizontal units; aspect above 1 divides the horizontal
    // radius, below 1 multiplies the vertical one. Angles in radians
    // counter-clockwise, none for a full turn; a start equal to the end is a full
    // turn too; a negative angle (not -0) draws a
    // radius line to that end. With FillStyle 0 only closed figures are filled
    // (a full turn, or both angles negative). The pen goes to the centre.
    void Circle(double x, double y, double r, int couleur,
                std::optional<double> debut = {}, std::optional<double> fin = {},
                std::optional<double> aspect = {});
    void PSet(double x, double y, int couleur);
    // `Polygon` straight on the device: points in device pixels, outline in
    // ForeColor with DrawWidth, filled with FillColor when FillStyle is 0.
    void Polygon(const QVector<QPointF>& pixels);
    // A polygon given in Surface units (the shapes that fill in Surface units).
    void PolygonUnites(const QVector<QPointF>& points);
    // Text with the current Font, its baseline starting at x, y (Surface units),
    // turned by angle degrees counter-clockwise. With haut = true, x, y is the top
    // left of the text cell instead (`SetTextAlign` 0).
    void TextOut(double x, double y, double angle, const QString& texte, bool haut = false);
    double TextWidth(const QString& texte) const;
    // Negative when y runs upward, like the user window's ScaleHeight.
    double TextHeight(const QString& texte) const;
    MetriquesPolice Metriques() const;
    // --- The device's text calls: alignment, selection of a device font,
    // `Print`, `TextOutA`.
    // `SetTextAlign`: 24 baseline and left (the default), 0 top and left.
    void SetTextAlign(int mode) { alignementTexte_ = mode; }
    int TextAlign() const { return alignementTexte_; }
    // Selects a device font (none: the Surface's own `Font`); returns the former one.
    std::optional<PoliceDevice> SelectFont(std::optional<PoliceDevice> police);
    // `Print` without line end: the text at CurrentX, CurrentY, with the
    // selected font, aligned by TextAlign; CurrentX moves by the text's width.
    void Print(const QString& texte);
    // `TextOutA`: the text at device pixels (xd, yd), selected font, TextAlign.
    void TextOutA(int xd, int yd, const QString& texte);

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
    // At most `limite` operations from now on (0: no limit). The one past it
    // calls `surLimite` once; it and all later ones are neither drawn nor kept.
    void LimiteOperations(qsizetype limite, std::function<void()> surLimite);
    bool LimiteAtteinte() const { return limite_ > 0 && operations_ > limite_; }
    // Called every `PasVeille` operations (none when empty): a command that
    // draws for long lets the interface run and can be stopped there. It may
    // throw; the operation under way is then neither drawn nor kept.
    void Veille(std::function<void()> veille) { veille_ = std::move(veille); }
    static constexpr int PasVeille = 256;

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

    // Counts and records an operation; false past the limit of operations,
    // when it is not to be drawn.
    bool Enregistre(OpSurface op);
    double largeurPx_, hauteurPx_;
    // Something was drawn since the device's last clear, or may have been (a
    // new picture): set by every operation but a clear; a device that cleared
    // its picture sets it back.
    bool peintDepuisEffacement_ = true;

    // The QFont of a device font, meant at the Surface's resolution.
    QFont PoliceQtDevice(const PoliceDevice& p) const;
    // The metrics of a font at the etalon size; k turns them into device pixels.
    QFontMetricsF MesureEtalon(const QFont& f, double& k) const;
    // Writes with the selected font (or Font) at a device point, by TextAlign.
    void EcritTexteDevice(QPointF p, const QString& texte);

private:
    GenreSurface genre_;
    double mmParPixel_;
    int scaleMode_ = 3;
    int orientation_ = 1;
    Journal* journal_ = nullptr;
    qsizetype limite_ = 0, operations_ = 0;
    std::function<void()> surLimite_;
    std::function<void()> veille_;
    int depuisVeille_ = 0;
    int alignementTexte_ = 24;
    std::optional<PoliceDevice> policeChoisie_;
};

// A surface that paints nothing: it measures and records. The default target
// of `dump` and of the tests.
class SurfaceEnregistree : public Surface {
public:
    using Surface::Surface;
};
