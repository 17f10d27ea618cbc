// The dispatch table: upper-case keyword to routine, in the order and groups
// of the language's command list.
#include "language/commandes.h"

#include "app/core/inclusion.h"
#include "drawing/cote.h"
#include "drawing/echelle.h"
#include "drawing/grad.h"
#include "drawing/marques.h"
#include "drawing/plot.h"
#include "drawing/repere.h"
#include "drawing/sect.h"
#include "drawing/styles.h"
#include "drawing/val.h"
#include "language/es.h"
#include "language/flux.h"
#include "language/para.h"
#include "language/variables.h"
#include "shapes/bezier.h"

#include <QHash>

#include <algorithm>
#include <iterator>
#include <string_view>
#include "shapes/cadre.h"
#include "shapes/cercle.h"
#include "shapes/chain.h"
#include "shapes/image.h"
#include "shapes/palcoul.h"
#include "shapes/poly.h"
#include "shapes/qa.h"
#include "shapes/texte.h"

namespace {

constexpr Commande Table[] = {
    // One keyword per line, a blank line between groups.
    {"ZOOMINI", CmdZoomIni},
    {"ZOOMINII", CmdZoomIniI},

    {"COULEUR", CmdCouleur},

    {"CADRE", CmdCadre},
    {"CADREP", CmdCadreP},
    {"CADREA", CmdCadreA},
    {"CADREAP", CmdCadreAP},

    {"TAILLEP", CmdTailleP},
    {"POLICE", CmdPolice},
    {"TEXTE", CmdTexte},
    {"TEXTEC", CmdTexteC},

    {"EPAIST", CmdEpaisT},

    {"QA", CmdQA},
    {"QA1", CmdQA1},
    {"QA2", CmdQA2},
    {"QA12", CmdQA12},

    {"TRAIT", CmdTrait},
    {"PLUS", CmdPlus},
    {"+", CmdPlus},
    {"X", CmdX},
    {"PERCER", CmdPercer},

    {"PERCERX", CmdPercerX},
    {"VOYANT", CmdVoyant},
    {"FLECHE", CmdFleche},
    {"FLECHEP", CmdFlecheP},

    {"COTE", CmdCote},

    {"CENTREE", CmdCentreE},
    {"CENTREI", CmdCentreI},
    {"CENTREEI", CmdCentreEI},
    {"CT", CmdCT},

    {"DECAL", CmdDecal},

    {"ARC", CmdArc},
    {"DROITE", CmdDroite},
    {"DROITEV", CmdDroiteV},
    {"EXPOSANT", CmdExposant},

    {"INVERSION", CmdInversion},

    {"SECT", CmdSect},
    {"SECTP", CmdSectP},

    {"CERCLE", CmdCercle},
    {"CERCLEI", CmdCercle},
    {"CERCLEP", CmdCercle},
    {"CERCLEPI", CmdCercle},

    {"GRAD", CmdGrad},
    {"GRAD1", CmdGrad1},

    {"VAL", CmdVal},
    {"VALR", CmdValR},
    {"VALD", CmdValD},
    {"VAL1", CmdVal1},
    {"VAL1R", CmdVal1R},

    {"VAL1D", CmdVal1D},

    {"POLY", CmdPoly},
    {"POLYP", CmdPolyP},
    {"POLYR", CmdPolyR},
    {"POLYRP", CmdPolyRP},

    {"DEMILUNE", CmdDemiLune},
    {"DEMILUNEP", CmdDemiLuneP},

    {"?", CmdPoint},

    {"IMAGE", CmdImage},

    {"FICHIER", CmdFichier},

    {"FORMATI", CmdFormatI},

    {"SEPARATEUR", CmdSeparateur},

    {"STOP", CmdStop},
    {"!", CmdStop},

    {"PALCOUL", CmdPalCoul},
    {"PALCOUL2", CmdPalCoul2},
    {"PALCOUL3", CmdPalCoul3},

    {"IF", CmdIf},
    {"ELSEIF", CmdElseIf},
    {"IFT", CmdIfT},
    {"ELSEIFT", CmdElseIfT},

    {"ELSE", CmdElse},
    {"ENDIF", CmdEndIf},
    {"GOTO", CmdGoto},

    {"LISTEVAR", CmdListeVar},
    {"INPUT", CmdInput},
    {"OPEN", CmdOpen},
    {"OPENA", CmdOpenA},

    {"LVAR", CmdLVar},
    {"PRINTA", CmdPrintA},
    {"OPTIONS#$", CmdOptions},
    {"SHELL#$", CmdShell},

    {"NPAGE", CmdNPage},

    {"CHAIN", CmdChain},

    {"PLOT", CmdPlot},
    {"PLOTP", CmdPlotP},
    {"PLOTS", CmdPlotS},

    {"BEZIER", CmdBezier},
    {"BEZIERP", CmdBezierP},
    {"BEZIER_AGR", CmdBezierAGr},

    {"DMKCODE", CmdDmkCode},

    {"REFCUR", CmdRefCur},

    {"STOPARG", CmdStopArg},

    {"ANGROT", CmdAngRot},

    {"FACTEURS", CmdFacteur},
    {"FACTEUR", CmdFacteur},
};

// Every keyword has its routine: the command loop calls it without a check.
static_assert(std::ranges::all_of(Table, [](const Commande& c) { return c.routine != nullptr; }));

// Each keyword is listed once: a second entry would never be reached.
constexpr bool MotsUniques() {
    for (size_t i = 0; i < std::size(Table); ++i)
        for (size_t j = i + 1; j < std::size(Table); ++j)
            if (std::string_view(Table[i].mot) == std::string_view(Table[j].mot)) return false;
    return true;
}
static_assert(MotsUniques());

} // namespace

const Commande* TrouveCommande(const QString& mot) {
    // The entries by keyword: a line's keyword is looked up at every line of
    // every run.
    static const QHash<QString, const Commande*> index = [] {
        QHash<QString, const Commande*> h;
        for (const Commande& c : Table) h.insert(QLatin1String(c.mot), &c);
        return h;
    }();
    return index.value(mot, nullptr);
}
