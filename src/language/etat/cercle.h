// Run state of Part 3.1: circles. Owned by that Part; fields are added with it.
#pragma once

struct EtatCercle {
};
