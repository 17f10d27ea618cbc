// The drawing pane of `Form1`: the whole client area, the editor standing
// over its right side, so the drawing keeps its full width when the editor
// is hidden.
//
// No retained drawing: a run paints through a `SurfacePeinte` into an image of
// the pane (at the screen's device pixel ratio, anti-aliased), and the pane
// shows that image.
//
// The view. The pane has a scale of its own, `EchelleVue`: how many
// millimetres of the drawing one millimetre of the screen shows at zoom 1.
// It is the screen's size of a pixel as a run sees it (2 shows twice as much
// of the sheet), so every run, the mouse read-out and the pan offsets agree
// with it without knowing of it; the program's own zoom (`ZoomE`, %Zoom) is
// untouched and a run still resets it. The pane itself only reports the
// user's gestures: the wheel, a plain left drag (the image follows the
// pointer until the button is released) and its resizes; `Apercu` turns them
// into runs. A tool that wants the mouse for itself (freehand drawing) sets
// `Navigation(false)`: the pane then neither pans nor zooms and all mouse
// events still reach the `souris...` signals.
#pragma once

#include <QImage>
#include <QPointF>
#include <QRectF>
#include <QWidget>

#include <memory>

class QLabel;
class Surface;
class SurfacePeinte;

// Where the last run put the drawing on the pane, for the view's gestures.
struct CadreVue {
    double unitesParPixel = 1;  // Surface units per pane pixel
    double largeurPx = 0, hauteurPx = 0;
    double editeurPx = 0;       // the editor's width over the right side, 0 when hidden
    double origineX = 0, origineY = 0; // the level-1 origin, Surface units
};

// A new view: the scale multiplied by `facteur` and the pan offsets (VueX,
// VueY) that put the origin where the gesture wants it.
struct ReglageVue {
    double facteur = 1;
    double vueX = 0, vueY = 0;
};

// The wheel: the drawing's point under `pixel` stays under it.
ReglageVue ZoomAutour(const CadreVue& c, QPointF pixel, double facteur);
// A drag by `delta` pixels: the drawing follows the pointer.
ReglageVue Glisse(const CadreVue& c, QPointF delta);
// The ink (pane pixels) fills the part of the pane left of the editor, with a
// margin, centred. With `agrandir` false the drawing is never shown larger
// than at the present scale.
ReglageVue Ajuste(const CadreVue& c, const QRectF& encre, bool agrandir);
// The factor of the scale, never below 1, that brings the ink's top and
// right edges into the visible part, the pane's lower left corner fixed
// (the sheet's corner when the view is not panned). 1 when nothing is cut
// there, a pen's width over the edge included.
double FacteurDepuisCoin(const CadreVue& c, const QRectF& encre);

class Pane : public QWidget {
    Q_OBJECT
public:
    explicit Pane(QWidget* parent = nullptr);
    ~Pane() override;

    // The Surface of the last run.
    Surface* surface() const;
    // A fresh Surface over the pane's image, fitting the pane, before a run:
    // its ink starts empty. Always true (the caller attaches it).
    bool Prepare();
    const QImage& image() const { return image_; }
    // Millimetres per logical pixel of the screen.
    double MmParPixel() const;
    // The same as a run sees it: times the view's scale (MmParPixelE).
    double MmParPixelVue() const { return MmParPixel() * echelle_; }
    double EchelleVue() const { return echelle_; }
    // Kept between 1/50 and 50. It reaches the drawing at the next run.
    void SetEchelleVue(double echelle);
    // What the last run drew, in pane pixels; empty when nothing.
    QRectF Encre() const;
    // Off: the wheel and the drag leave the view alone (a tool has the mouse).
    void Navigation(bool active) { navigation_ = active; }
    bool NavigationActive() const { return navigation_; }
    // A line at the top of the pane, for the reason a live run stopped, cut
    // to `largeur` pixels; empty hides it.
    void EcritEtat(const QString& texte, int largeur);
    QString TexteEtat() const;

signals:
    void sourisBouge(QPointF pixel, Qt::MouseButtons boutons, Qt::KeyboardModifiers mods);
    void sourisClic(QPointF pixel, Qt::MouseButton bouton, Qt::KeyboardModifiers mods);
    void sourisDoubleClic(QPointF pixel, Qt::KeyboardModifiers mods);
    // A wheel turn over the pane: the factor of the view's scale wanted.
    void molette(QPointF pixel, double facteur);
    // A plain left drag ended, `delta` pixels from where it started.
    void glisse(QPointF delta);
    void tailleChangee();

protected:
    void paintEvent(QPaintEvent* ev) override;
    void mouseMoveEvent(QMouseEvent* ev) override;
    void mousePressEvent(QMouseEvent* ev) override;
    void mouseReleaseEvent(QMouseEvent* ev) override;
    void mouseDoubleClickEvent(QMouseEvent* ev) override;
    void wheelEvent(QWheelEvent* ev) override;
    void resizeEvent(QResizeEvent* ev) override;

private:
    QImage image_;
    double echelle_ = 1;
    bool navigation_ = true;
    std::unique_ptr<SurfacePeinte> surface_;
    // The plain left drag: where it started, how far it went.
    std::optional<QPointF> debutGlisse_;
    QPointF decalage_;
    QLabel* etat_ = nullptr;
};
