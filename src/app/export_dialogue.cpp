#include "app/export_dialogue.h"

#include "app/boites.h"
#include "app/core/config.h"
#include "app/core/rendu.h"
#include "app/core/session.h"
#include "app/editeur.h"
#include "app/fenetre.h"
#include "language/chaines.h"

#include <QAction>
#include <QApplication>
#include <QCheckBox>
#include <QComboBox>
#include <QDialogButtonBox>
#include <QFormLayout>
#include <QSpinBox>

namespace {

struct TextesExport {
    QString Titre, Page, Orientation, Portrait, Paysage, Dpi, Contours;
    QString Coupe; // the drawing runs off the page
};

// The dialog's labels, one a line of their row.
TextesExport TextesDExport(int langue) {
    const QStringList l = LoadResString(376 + langue).split(u'\n');
    return {l.value(0), l.value(1), l.value(2), l.value(3), l.value(4), l.value(5), l.value(6), l.value(7)};
}

constexpr int DpiMin = 10, DpiMax = 2400;

} // namespace

QString TexteChoixExport(const ChoixExport& c) {
    return QStringLiteral("%1;%2;%3;%4")
        .arg(c.page, c.paysage ? QStringLiteral("Paysage") : QStringLiteral("Portrait"))
        .arg(c.dpi)
        .arg(c.contours ? QStringLiteral("Contours") : QStringLiteral("Texte"));
}

ChoixExport ChoixExportDe(const QString& texte) {
    ChoixExport c;
    const QStringList p = texte.split(u';');
    const QString page = p.value(0).trimmed();
    for (const QString& n : NomsPages())
        if (page.compare(n, Qt::CaseInsensitive) == 0) c.page = n;
    c.paysage = p.value(1).trimmed().compare(QLatin1String("Paysage"), Qt::CaseInsensitive) == 0;
    bool ok = false;
    const int dpi = p.value(2).trimmed().toInt(&ok);
    if (ok && dpi >= DpiMin && dpi <= DpiMax) c.dpi = dpi;
    c.contours = p.value(3).trimmed().compare(QLatin1String("Contours"), Qt::CaseInsensitive) == 0;
    return c;
}

DialogueExport::DialogueExport(QWidget* parent, int langue, const QString& format, const ChoixExport& choix)
    : QDialog(parent) {
    const TextesExport t = TextesDExport(langue);
    setObjectName(QStringLiteral("DialogueExport"));
    setWindowTitle(QStringLiteral("Mirel   ") + t.Titre + u' ' + format.toUpper());
    auto* forme = new QFormLayout(this);
    Page = new QComboBox(this);
    Page->addItems(NomsPages());
    Page->setCurrentText(choix.page);
    forme->addRow(t.Page, Page);
    Orientation = new QComboBox(this);
    Orientation->addItems({t.Portrait, t.Paysage});
    Orientation->setCurrentIndex(choix.paysage ? 1 : 0);
    forme->addRow(t.Orientation, Orientation);
    Dpi = new QSpinBox(this);
    Dpi->setRange(DpiMin, DpiMax);
    Dpi->setValue(choix.dpi);
    Dpi->setEnabled(format == QLatin1String("png"));
    forme->addRow(t.Dpi, Dpi);
    Contours = new QCheckBox(t.Contours, this);
    Contours->setChecked(choix.contours);
    Contours->setEnabled(format == QLatin1String("svg"));
    forme->addRow(Contours);
    auto* boutons = new QDialogButtonBox(QDialogButtonBox::Ok | QDialogButtonBox::Cancel, this);
    connect(boutons, &QDialogButtonBox::accepted, this, &QDialog::accept);
    connect(boutons, &QDialogButtonBox::rejected, this, &QDialog::reject);
    forme->addRow(boutons);
}

ChoixExport DialogueExport::Choix() const {
    ChoixExport c;
    c.page = Page->currentText();
    c.paysage = Orientation->currentIndex() == 1;
    c.dpi = Dpi->value();
    c.contours = Contours->isChecked();
    return c;
}

void DialogueExport::Raccourcis(Form1& f) {
    f.Mnu_ExportPdf->setShortcut(QKeySequence(Qt::CTRL | Qt::Key_E));
    f.Mnu_ExportSvg->setShortcut(QKeySequence(Qt::CTRL | Qt::SHIFT | Qt::Key_E));
    f.Mnu_ExportPng->setShortcut(QKeySequence(Qt::CTRL | Qt::ALT | Qt::Key_E));
}

void DialogueExport::Exporte(Form1& f, const QString& format) {
    if (f.EnExecution()) return;
    // The last choices, read with the settings at start-up and kept there.
    ChoixExport c = ChoixExportDe(f.Config.Export);
    if (!f.s_.boites->Export(&f, f.regl.LangueMenus, format, c)) return;
    f.Config.Export = TexteChoixExport(c);
    f.s_.config->EcritConfig(CleCfg::Export, u' ' + f.Config.Export);

    // Named after the file of the caption: the last one saved, under Save as too.
    const QString fichier = f.NomCourant.isEmpty() ? f.FichierCourant : f.NomCourant;
    const QString base = fichier.isEmpty() ? f.DossierFichier + QStringLiteral("Mirel")
                                           : fichier.left(fichier.lastIndexOf(u'.'));
    const QString filtre = format.toUpper() + QStringLiteral(" (*.") + format + u')';
    const QString nom = f.s_.boites->FichierEnregistrer(&f, base + u'.' + format, filtre, format);
    if (nom.isEmpty()) return;
    QApplication::setOverrideCursor(Qt::WaitCursor);
    OptionsRendu o;
    o.page = TaillePage(c.page); // a name of the list: never invalid
    o.paysage = c.paysage;
    o.dpi = c.dpi;
    o.texteEnContours = c.contours && format == QLatin1String("svg");
    // An export of a program that loops must not freeze the window.
    o.delai = 60;
    // The program's questions answered as in the window's last run, while
    // they are the same.
    o.gardees = f.ReponsesDuRun;
    const ResultatRendu r = RendProgramme(f.RTB1->TexteCrLf(), f.FichierCourant, nom, o, f.regl);
    QApplication::restoreOverrideCursor();
    if (r.statut == 2 || r.statut == 3)
        f.s_.boites->Message(&f, QStringLiteral("Mirel"), r.statut == 2 ? r.erreur : r.arret, Boutons::Ok,
                             Icone::Critique);
    else if (!r.avertissement.isEmpty()) // written, but not whole
        f.s_.boites->Message(&f, QStringLiteral("Mirel"), TextesDExport(f.regl.LangueMessages).Coupe, Boutons::Ok,
                             Icone::Exclamation);
}

bool BoitesQt::Export(QWidget* parent, int langue, const QString& format, ChoixExport& choix) {
    DialogueExport d(parent, langue, format, choix);
    if (d.exec() != QDialog::Accepted) return false;
    choix = d.Choix();
    return true;
}
