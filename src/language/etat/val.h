// Run state of Part 2.5: scale values. Owned by that Part; fields are added with it.
#pragma once

struct EtatVal {
};
