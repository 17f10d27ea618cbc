// Run state of Part 2.4: graduations. Owned by that Part; fields are added with it.
#pragma once

struct EtatGrad {
};
