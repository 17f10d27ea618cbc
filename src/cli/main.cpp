#include "cli/cli.h"

int main(int argc, char** argv) { return MirelMain(argc, argv); }
