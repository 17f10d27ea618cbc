// Speed of the live preview in the window:
//   - Direct/<example>: one live run of each example on the window's pane
//     (the run the preview makes when typing pauses): meant to stay under
//     16 ms, one frame;
//   - Frappe/<largest example>: a key typed into the editor followed at once
//     by a live run, the worst case of a run starting just before the next
//     key: under 50 ms, typing at 20 characters a second never waits.
// Its main: a QApplication on the offscreen platform (principal.h).
#include "app/apercu.h"
#include "app/editeur.h"

#include "fenetre_banc.h"
#include "principal.h"

#include <QApplication>
#include <QDir>
#include <QFileInfo>
#include <QTest>

#include <benchmark/benchmark.h>

namespace {

const QString Dossier = QStringLiteral(MIREL_SOURCE_DIR "/examples/");

// A window started on an example, as `mirel FILE` is, with the live preview on.
struct Fenetre : FenetreBanc {
    Apercu* apercu = nullptr;
    explicit Fenetre(const QString& nom) {
        f->Demarrer(Dossier + nom);
        QApplication::processEvents();
        apercu = f->VueApercu;
        apercu->Mnu_ApercuDirect->setChecked(true);
    }
};

void Direct(benchmark::State& state, QString nom) {
    Fenetre w(nom);
    for (auto _ : state) w.apercu->ExecuteDirect();
    state.counters["arrets"] = w.f->pane->TexteEtat().isEmpty() ? 0 : 1;
}

void Frappe(benchmark::State& state, QString nom) {
    Fenetre w(nom);
    QTextCursor c = w.f->RTB1->textCursor();
    c.movePosition(QTextCursor::End);
    w.f->RTB1->setTextCursor(c);
    int n = 0;
    for (auto _ : state) {
        // A comment line typed at the end, a character at a time.
        QTest::keyClick(w.f->RTB1, (n++ % 40) == 0 ? '\'' : 'a');
        w.apercu->ExecuteDirect();
    }
}

void Enregistre() {
    QStringList noms = QDir(Dossier).entryList({"*.dat"}, QDir::Files, QDir::Name);
    noms.removeIf([](const QString& n) { return n.startsWith(QLatin1String("MCE_")); });
    QString plusGrand;
    for (const QString& nom : noms) {
        if (plusGrand.isEmpty() || QFileInfo(Dossier + nom).size() > QFileInfo(Dossier + plusGrand).size())
            plusGrand = nom;
        benchmark::RegisterBenchmark(("Direct/" + QFileInfo(nom).baseName().toStdString()).c_str(), Direct, nom)
            ->Unit(benchmark::kMillisecond);
    }
    benchmark::RegisterBenchmark(("Frappe/" + QFileInfo(plusGrand).baseName().toStdString()).c_str(), Frappe,
                                 plusGrand)
        ->Unit(benchmark::kMillisecond);
}

} // namespace

int main(int argc, char** argv) { return LanceBenchmarks<QApplication>(argc, argv, Enregistre); }
