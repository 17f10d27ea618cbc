#include "cli/cli.h"

#include <cstdio>

int MirelMain(int, char**) {
    std::puts("mirel");
    return 0;
}
