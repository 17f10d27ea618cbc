// The window of the benchmarks: its settings in memory, its boxes answered
// at once as nobody watching would (and kept, so that a benchmark can tell
// that a run showed one), a printer named "bench".
#pragma once

#include "app/boites.h"
#include "app/fenetre.h"
#include "app/services.h"

#include <memory>

struct FenetreBanc {
    ConfigMemoire config;
    BoitesSansPersonne boites;
    std::unique_ptr<Form1> f;
    FenetreBanc() {
        config.Pose(CleCfg::FichierDat, QString()); // no last file to open
        ServicesFenetre s;
        s.config = &config;
        s.boites = &boites;
        s.nomImprimante = [] { return QStringLiteral("bench"); };
        f = std::make_unique<Form1>(s);
    }
    ~FenetreBanc() { f->Demarre = false; } // no unload questions
};
