// Run state of Part 3.2: frames. Owned by that Part; fields are added with it.
#pragma once

struct EtatCadre {
};
