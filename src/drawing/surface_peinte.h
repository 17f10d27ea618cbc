// `Surface` over any QPaintDevice: the pane's pixmap, a QPdfWriter, a
// QSvgGenerator, a QImage.
#pragma once

#include "drawing/surface.h"

#include <QPainter>

#include <functional>
#include <memory>

class QPaintDevice;

class SurfacePeinte : public Surface {
public:
    // The device comes from `page(n)`, called for page 1 at once and for each
    // `NewPage`. `echelle` turns device pixels of the Surface into pixels of the
    // paint device (a 600 dpi virtual printer painted on a 300 dpi image: 0.5).
    using FournisseurPage = std::function<QPaintDevice*(int page)>;
    SurfacePeinte(GenreSurface genre, double largeurPx, double hauteurPx, double mmParPixel,
                  FournisseurPage page, double echelle = 1.0, bool antialias = true);
    ~SurfacePeinte() override;

    void EndDoc() override;
    int Pages() const { return page_; }
    // Text drawn as the filled outlines of its glyphs: an SVG whose letters
    // need no font where it is cut or engraved.
    void TexteEnContours(bool oui) { contours_ = oui; }
    // The extent of what was drawn, in device pixels of the Surface, over all
    // pages (points left out: the off-page PSet readies the pen on purpose;
    // white marks left out: no ink).
    QRectF Encre() const { return encre_; }

protected:
    void DevLigne(QPointF a, QPointF b, const QColor& c, int w) override;
    void DevBoiteMasque(const QRectF& r, const QColor& c) override;
    void DevEllipse(QPointF centre, double rx, double ry, std::optional<double> debut,
                    std::optional<double> fin, const QColor& c, int w,
                    std::optional<QColor> remp) override;
    void DevPoint(QPointF p, const QColor& c) override;
    void DevPolygone(const QVector<QPointF>& pts, const QColor& c, int w,
                     std::optional<QColor> remp) override;
    void DevTexte(QPointF p, double angle, const QString& texte, const QFont& f,
                  const QColor& c) override;
    void DevImage(const QRectF& r, const QImage& im) override;
    void DevEffacer() override;
    void DevNouvellePage() override;

public:
    // The device could not be painted on, or a paged device refused a new sheet.
    bool PageRefusee() const { return pageRefusee_; }
    // The device is a print job: once it has refused, the next drawing is
    // the line's printer failure.
    void PanneEstImprimante(bool oui) { panneImprimante_ = oui; }

private:
    bool pageRefusee_ = false;
    bool panneImprimante_ = false;
    bool pageEnAttente_ = false; // a new page asked for, begun by the next drawing
    // Begins the page asked for; false when there is nothing to paint on.
    // A print job that has refused fails here.
    bool Pret();
    bool contours_ = false;
    void Ouvre();
    // The pen of a colour and width, made again only when they change: a
    // curve of many thousand segments draws them all with one pen.
    const QPen& Stylo(const QColor& c, int w);
    struct StyloFait {
        QColor couleur;
        int largeur = 0;
        QPen pen;
    };
    std::optional<StyloFait> stylo_;
    // The ink box takes in the box of a mark. A white mark on the white sheet
    // leaves no ink (the hidden markers of the centre commands), so it is
    // never reported cut off. A box already inside costs no colour test: a
    // colour chart paints a million cells.
    void Etend(const QRectF& r, const QColor& trait, const std::optional<QColor>& remplissage = std::nullopt) {
        if (!encre_.isNull() && encre_.contains(r)) return;
        const auto sansEncre = [](const QColor& c) { return c.alpha() == 0 || c.rgb() == qRgb(255, 255, 255); };
        if (sansEncre(trait) && (!remplissage || sansEncre(*remplissage))) return;
        encre_ = encre_.isNull() ? r : encre_.united(r);
    }
    void Etend(const QRectF& r) { encre_ = encre_.isNull() ? r : encre_.united(r); }
    // The last filled polygon painted, when nothing came since: the band of
    // a gradient before the next one. `rectangle` when it is a rectangle on
    // whole pixels of the device (see DevPolygone).
    struct DernierPolygone {
        QVector<QPointF> points;
        QColor remplissage;
        bool rectangle = false;
    };
    std::optional<DernierPolygone> dernier_;
    // On a vector device, the segments drawn end to end in one pen, not yet
    // painted: they go out as one polyline, which an engraver or a plotter
    // follows in one pass, without a stop at every joint of an arc.
    struct Trace {
        QPolygonF points;
        QPen pen;
    };
    std::optional<Trace> trace_;
    // Paints the pending polyline, and forgets the last polygon: something
    // else is drawn, or the page ends.
    void Interrompt();
    QRectF encre_;
    FournisseurPage fournisseur_;
    QPaintDevice* device_ = nullptr;
    std::unique_ptr<QPainter> painter_;
    double echelle_;
    bool antialias_;
    bool raster_ = false; // painting pixels (a QImage, a QPixmap), not a vector file
    int page_ = 0;
};
