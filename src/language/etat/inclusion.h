// Run state of Part 4.3: file inclusion. Owned by that Part; fields are added with it.
#pragma once

struct EtatInclusion {
};
