// Speed of the main window (Part 4.1): F4 on an example, typing in a program of
// 1,000 lines (colouring is per block), loading and recolouring it whole.
// Its own main: a QApplication on the offscreen platform.
#include "app/editeur.h"
#include "app/fenetre.h"
#include "app/pane.h"
#include "app/services.h"

#include <QApplication>
#include <QFile>
#include <QTest>
#include <QTextBlock>

#include <benchmark/benchmark.h>

namespace {

QString Exemple() {
    QFile f(QStringLiteral(MIREL_SOURCE_DIR "/examples/origines.dat"));
    f.open(QIODevice::ReadOnly);
    return QString::fromUtf8(f.readAll());
}

// A program of n lines in the usual mix: keywords, comments, conditions, texts.
QString Programme(int n) {
    static const char* const modeles[] = {
        "Arc = 30, 150, 60 ' the needle's path",
        "CT = %1, 0",
        "' a comment line that explains the next one",
        "If %a > 1 Then Trait = 1, 2, 3, %1",
        "Texte = 1, 2, , , It's %1 mm",
        "%v%1 = 3 * %1",
        "Cercle = 0, 0, %1 _",
        "  , 0, 360",
        "Grad = 10, 5§90, 1, 11, 1, Noir"};
    QStringList l;
    for (int i = 0; i < n; ++i)
        l << QString::fromUtf8(modeles[i % 9]).replace(QStringLiteral("%1"), QString::number(i));
    return l.join(QStringLiteral("\r\n")) + QStringLiteral("\r\n");
}

// Boxes that answer at once (the Open dialog at start-up is cancelled).
struct Muettes : BoitesQt {
    Reponse Message(QWidget*, const QString&, const QString&, Boutons, Icone) override {
        return Reponse::Ok;
    }
    QString FichierOuvrir(QWidget*, const QString&, const QString&) override { return {}; }
};

struct Fenetre {
    ConfigMemoire config;
    FichiersDisque fichiers;
    Muettes boites;
    Form1 f;
    explicit Fenetre(const QString& texte) : f(Services()) {
        f.show();
        f.Demarrer(QString()); // no file: the Open dialog is the stand-in's, cancelled below
        f.RTB1->ChargeTexte(texte);
        f.SetModifie(false);
    }
    ServicesFenetre Services() {
        config.Valeurs.FichierDat.clear();
        ServicesFenetre s;
        s.config = &config;
        s.fichiers = &fichiers;
        s.boites = &boites;
        s.nomImprimante = [] { return QStringLiteral("bench"); };
        return s;
    }
};

void BM_F4_Origines(benchmark::State& state) {
    Fenetre w(Exemple());
    for (auto _ : state) {
        w.f.Visualiser();
        w.f.pane->repaint();
    }
    state.counters["runs"] = w.f.NombreExecutions;
}
BENCHMARK(BM_F4_Origines)->Unit(benchmark::kMillisecond);

// One key typed in the middle of a 1,000-line program, then the caret leaves
// the line (Down) and comes back (Up): the change event, the block painted
// black, the recolouring of the block when the caret leaves it.
void BM_Frappe_1000Lignes(benchmark::State& state) {
    Fenetre w(Programme(1000));
    Editeur* ed = w.f.RTB1;
    QTextCursor c(ed->document()->findBlockByNumber(500));
    c.movePosition(QTextCursor::EndOfBlock);
    ed->setTextCursor(c);
    bool ajoute = true;
    for (auto _ : state) {
        QTest::keyClick(ed, ajoute ? Qt::Key_X : Qt::Key_Backspace);
        QTest::keyClick(ed, Qt::Key_Down);
        QTest::keyClick(ed, Qt::Key_Up);
        ajoute = !ajoute;
    }
}
BENCHMARK(BM_Frappe_1000Lignes)->Unit(benchmark::kMillisecond);

void BM_Chargement_1000Lignes(benchmark::State& state) {
    Fenetre w{QString()};
    const QString texte = Programme(1000);
    for (auto _ : state) w.f.RTB1->ChargeTexte(texte);
}
BENCHMARK(BM_Chargement_1000Lignes)->Unit(benchmark::kMillisecond);

void BM_CtrlK_1000Lignes(benchmark::State& state) {
    Fenetre w(Programme(1000));
    for (auto _ : state) w.f.RTB1->Cmd_Ctrl_K();
}
BENCHMARK(BM_CtrlK_1000Lignes)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) {
    if (qEnvironmentVariableIsEmpty("QT_QPA_PLATFORM")) qputenv("QT_QPA_PLATFORM", "offscreen");
    QApplication app(argc, argv);
    benchmark::Initialize(&argc, argv);
    benchmark::RunSpecifiedBenchmarks();
    benchmark::Shutdown();
    return 0;
}
