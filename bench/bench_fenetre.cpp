// Speed of the main window: F4 on each example dial, typing in a program of
// 1,000 lines (colouring is per block), loading and recolouring it whole.
// Its main: a QApplication on the offscreen platform (principal.h).
#include "app/editeur.h"
#include "app/pane.h"

#include "fenetre_banc.h"
#include "principal.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QTest>
#include <QTextBlock>

#include <benchmark/benchmark.h>

namespace {

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

// Started on a program's text, with no file; or on a file, as `mirel FILE`
// is: its folder is the working folder, where the examples' library of
// external commands is found.
struct Fenetre : FenetreBanc {
    explicit Fenetre(const QString& texte) {
        f->show();
        f->Demarrer(QString());
        f->RTB1->ChargeTexte(texte);
        f->SetModifie(false);
    }
    struct SurFichier {};
    Fenetre(SurFichier, const QString& chemin) { f->Demarrer(chemin); }
};

// F4 on an example: the whole run on the pane and its repaint.
void F4(benchmark::State& state, const QString& chemin) {
    Fenetre w(Fenetre::SurFichier{}, chemin);
    for (auto _ : state) {
        w.f->Visualiser();
        w.f->pane->repaint();
    }
    state.counters["runs"] = w.f->NombreExecutions;
    if (!w.boites.Vues.isEmpty()) state.SkipWithError("the run showed a message box");
}

// One benchmark "F4/<name>" for each examples/*.dat.
void EnregistreF4() {
    const QDir d(QStringLiteral(MIREL_SOURCE_DIR "/examples"));
    for (const QString& nom : d.entryList({QStringLiteral("*.dat")}, QDir::Files, QDir::Name)) {
        const QString chemin = d.filePath(nom);
        const std::string titre = ("F4/" + QFileInfo(nom).completeBaseName()).toStdString();
        benchmark::RegisterBenchmark(titre.c_str(),
                                     [chemin](benchmark::State& st) { F4(st, chemin); })
            ->Unit(benchmark::kMillisecond);
    }
}

// One key typed in the middle of a 1,000-line program, then the caret leaves
// the line (Down) and comes back (Up): the change event, the block painted
// black, the recolouring of the block when the caret leaves it.
void BM_Frappe_1000Lignes(benchmark::State& state) {
    Fenetre w(Programme(1000));
    Editeur* ed = w.f->RTB1;
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
    for (auto _ : state) w.f->RTB1->ChargeTexte(texte);
}
BENCHMARK(BM_Chargement_1000Lignes)->Unit(benchmark::kMillisecond);

void BM_CtrlK_1000Lignes(benchmark::State& state) {
    Fenetre w(Programme(1000));
    for (auto _ : state) w.f->RTB1->Cmd_Ctrl_K();
}
BENCHMARK(BM_CtrlK_1000Lignes)->Unit(benchmark::kMillisecond);

} // namespace

int main(int argc, char** argv) { return LanceBenchmarks<QApplication>(argc, argv, EnregistreF4); }
