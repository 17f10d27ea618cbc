// Run-time input and output commands: data files, prompts, listings, shell.
#pragma once

struct Etat;

// Before a run writes or deletes a file: the host's leave (a live run writes
// nothing), and the included files the run has seen are looked at again.
// False: nothing is to be written.
bool EcritureAccordee(Etat& e);

void CmdOpen(Etat& e);
void CmdLVar(Etat& e);
void CmdOpenA(Etat& e);
void CmdPrintA(Etat& e);
void CmdInput(Etat& e);
void CmdListeVar(Etat& e);
void CmdOptions(Etat& e);
void CmdShell(Etat& e);
