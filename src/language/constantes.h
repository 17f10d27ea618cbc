// The program's literals: degrees become radians by 0.017453293, a full turn
// is 6.283185 and pi is 3.14159265358979. These values, not full-precision
// ones, belong to the behaviour: drawings depend on their rounding. A file
// takes them under its own short names (`constexpr double DegRad = Litteraux::DegRad;`).
#pragma once

namespace Litteraux {
inline constexpr double DegRad = 0.017453293;
inline constexpr double TourComplet = 6.283185;
inline constexpr double Pi = 3.14159265358979;
} // namespace Litteraux
