// The view menu of `Form1` and what the pane's gestures do: the live
// preview, the fitted view, the wheel's zoom, the drag's pan and the redraw
// after a resize.
//
// The live preview runs the text about 300 ms after typing pauses. A live
// run is a run that never stops the user: it opens no box and no prompt and
// writes no file. At the first line that would (`Input`, `ListeVar`,
// `Shell#$`, an `OpenA` that opens or deletes a file, a rewrite of the
// editor's text, an error box) it stops;
// the reason stands in a band at the top left of the pane and an error line is
// painted red as F4 paints it, the caret left where the user types. F4 still
// runs everything. A live run lets no events through: keys typed meanwhile
// wait in the queue and reach the editor after it, none lost.
//
// The view's gestures change the pane's scale (`Pane::EchelleVue`) and the
// pan offsets of the window (the ones F6 sets), then redraw keeping the
// program's zoom, like the zoom dialog's run. F4 still resets the zoom to 1;
// the view's scale is the screen's, not the program's, and stays.
#pragma once

#include "app/pane.h"

#include <QObject>
#include <QString>
#include <QTimer>

#include <functional>

class Form1;
class QAction;
class QMenu;

// Captions of the view menu, by language section (0, 400, 800, 1200).
struct TextesVue {
    QString Menu, Ajuster, Direct, Arret, Duree;
};
TextesVue TextesDeVue(int langue);

// The status text of a live run stopped at `ligne` for `raison`.
QString TexteArretApercu(int langue, int ligne, const QString& raison);

class Apercu : public QObject {
    Q_OBJECT
public:
    explicit Apercu(Form1& f);

    // Captions in the menus' language.
    void Legendes();
    // A file was loaded: the end of its first run is followed by a fit when
    // the drawing does not show whole.
    void ApresChargement();

    // The view menu's commands.
    void AjusteDessin(bool agrandir = true);
    void ActiveDirect(bool oui);
    bool DirectActif() const;

    // One live run now (the timer's end).
    void ExecuteDirect();
    // The live run's delay after the last key, ms.
    static constexpr int DelaiDirect = 300;

    QMenu* Mnu_Vue = nullptr;
    QAction* Mnu_Ajuster = nullptr;
    QAction* Mnu_ApercuDirect = nullptr;
    QTimer Minuterie;       // the live run after typing pauses
    QTimer MinuterieTaille; // the redraw after a resize

private:
    // The user changed the text (typing, undo, redo, the command dialog): a
    // live run follows the pause.
    void TexteChange();
    CadreVue Cadre() const;
    // The view changed: the new scale and offsets, then a run at the same zoom.
    void Applique(const ReglageVue& r);
    void Molette(QPointF pixel, double facteur);
    void Glisse(QPointF delta);
    void Taille();
    // A run at the same zoom that answers the boxes and prompts as the
    // user did in the window's last run, and stops rather than ask anew.
    void RelanceVue();
    void SansQuestion(bool vue, const std::function<void()>& lance);
    bool EnCours() const; // a run is under way
    bool Libre() const;   // no run under way, no tool holding the mouse
    void FinDeRun();

    Form1& f_;
    bool ajusterApresRun_ = false;
};
