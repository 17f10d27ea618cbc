// Run state of Part 2.3: the scale record Echelle. Owned by that Part; fields are added with it.
#pragma once

struct Echelle {
};
