// The dispatch table of Part 1.1: upper-case keyword to routine, in the order
// of the groups of the spec. A null routine is a command whose Part is not
// built yet; its line fails with a message naming it.
#include "language/commandes.h"

#include "drawing/echelle.h"
#include "drawing/grad.h"
#include "drawing/repere.h"
#include "drawing/sect.h"
#include "drawing/styles.h"
#include "language/es.h"
#include "language/flux.h"
#include "language/para.h"
#include "language/variables.h"
#include "shapes/cadre.h"

namespace {

const Commande Table[] = {
    {"ZOOMINI", CmdZoomIni}, {"ZOOMINII", CmdZoomIniI},
    {"COULEUR", CmdCouleur},
    {"CADRE", CmdCadre}, {"CADREP", CmdCadreP}, {"CADREA", CmdCadreA}, {"CADREAP", CmdCadreAP},
    {"TAILLEP", nullptr}, {"POLICE", nullptr}, {"TEXTE", nullptr}, {"TEXTEC", nullptr},
    {"EPAIST", CmdEpaisT},
    {"QA", nullptr}, {"QA1", nullptr}, {"QA2", nullptr}, {"QA12", nullptr},
    {"TRAIT", nullptr}, {"PLUS", nullptr}, {"+", nullptr}, {"X", nullptr}, {"PERCER", nullptr},
    {"PERCERX", nullptr}, {"VOYANT", nullptr}, {"FLECHE", nullptr}, {"FLECHEP", nullptr},
    {"COTE", nullptr},
    {"CENTREE", CmdCentreE}, {"CENTREI", CmdCentreI}, {"CENTREEI", CmdCentreEI}, {"CT", CmdCT},
    {"DECAL", CmdDecal},
    {"ARC", CmdArc}, {"DROITE", CmdDroite}, {"DROITEV", CmdDroiteV}, {"EXPOSANT", CmdExposant},
    {"INVERSION", CmdInversion},
    {"SECT", CmdSect}, {"SECTP", CmdSectP},
    {"CERCLE", nullptr}, {"CERCLEI", nullptr}, {"CERCLEP", nullptr}, {"CERCLEPI", nullptr},
    {"GRAD", CmdGrad}, {"GRAD1", CmdGrad1},
    {"VAL", nullptr}, {"VALR", nullptr}, {"VALD", nullptr}, {"VAL1", nullptr}, {"VAL1R", nullptr},
    {"VAL1D", nullptr},
    {"POLY", nullptr}, {"POLYP", nullptr}, {"POLYR", nullptr}, {"POLYRP", nullptr},
    {"DEMILUNE", nullptr}, {"DEMILUNEP", nullptr},
    {"?", CmdPoint},
    {"IMAGE", nullptr},
    {"FICHIER", nullptr},
    {"FORMATI", CmdFormatI},
    {"SEPARATEUR", CmdSeparateur},
    {"STOP", CmdStop}, {"!", CmdStop},
    {"PALCOUL", nullptr}, {"PALCOUL2", nullptr}, {"PALCOUL3", nullptr},
    {"IF", CmdIf}, {"ELSEIF", CmdElseIf}, {"IFT", CmdIfT}, {"ELSEIFT", CmdElseIfT},
    {"ELSE", CmdElse}, {"ENDIF", CmdEndIf}, {"GOTO", CmdGoto},
    {"LISTEVAR", CmdListeVar}, {"INPUT", CmdInput}, {"OPEN", CmdOpen}, {"OPENA", CmdOpenA},
    {"LVAR", CmdLVar}, {"PRINTA", CmdPrintA}, {"OPTIONS#$", CmdOptions}, {"SHELL#$", CmdShell},
    {"NPAGE", CmdNPage},
    {"CHAIN", nullptr},
    {"PLOT", nullptr}, {"PLOTP", nullptr}, {"PLOTS", nullptr},
    {"BEZIER", nullptr}, {"BEZIERP", nullptr}, {"BEZIER_AGR", nullptr},
    {"DMKCODE", nullptr},
    {"REFCUR", CmdRefCur},
    {"STOPARG", CmdStopArg},
    {"ANGROT", CmdAngRot},
    {"FACTEURS", CmdFacteur}, {"FACTEUR", CmdFacteur},
};

} // namespace

std::span<const Commande> TableCommandes() { return Table; }
