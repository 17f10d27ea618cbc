// Numbers as text: StrF (single precision, 7 digits), StrD (15 digits) and ValNombre.
#include "language/erreur.h"
#include "language/nombre.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>

TEST(StrF, SevenSignificantDigitsNoLeadingZeroExponentOutsideTheRange) {
    const std::pair<float, const char*> cas[] = {
        {0, "0"}, {-0.0f, "0"}, {12, "12"}, {-7, "-7"}, {1234567, "1234567"}, {9999999, "9999999"},
        {0.5f, ".5"}, {-0.5f, "-.5"}, {0.25f, ".25"}, {-0.1f, "-.1"}, {-1234.5f, "-1234.5"},
        {3.14159265f, "3.141593"}, {1.0f / 3.0f, ".3333333"}, {2.0f / 3.0f, ".6666667"},
        {0.1f + 0.2f, ".3"}, {123.456f, "123.456"},
        // From 8 integer digits, and below 1E-4, the exponent form.
        {1e7f, "1E+07"}, {-12345678.0f, "-1.234568E+07"}, {1.5e10f, "1.5E+10"},
        {16777216.0f, "1.677722E+07"}, {FLT_MAX, "3.402823E+38"}, {-FLT_MAX, "-3.402823E+38"},
        {0.0001f, ".0001"}, {0.0001234567f, ".0001234567"}, {1e-5f, "1E-05"}, {-1e-5f, "-1E-05"},
        {1.5e-5f, "1.5E-05"}, {1.234567e-10f, "1.234567E-10"}, {1e-30f, "1E-30"},
        {FLT_MIN, "1.175494E-38"}, {std::nextafter(0.0f, 1.0f), "1.401298E-45"},
        // Rounded at the 7th digit, a half away from zero; 1E12 as a float is 999999995904.
        {1000000.0f * 1000000.0f, "1E+12"}, {99999992.0f, "9.999999E+07"},
        {12345674.0f, "1.234567E+07"}, {12345675.0f, "1.234568E+07"}, {12345665.0f, "1.234567E+07"},
        {1234567.5f, "1234568"}, {1234566.5f, "1234567"}, {-1234566.5f, "-1234567"},
        // The rounded value chooses the form; the float below 1 keeps its 7 nines.
        {9.9999997e-5f, ".0001"}, {-9.9999997e-5f, "-.0001"}, {0.99999994f, ".9999999"},
    };
    for (const auto& [v, texte] : cas) EXPECT_EQ(StrF(v).toStdString(), texte);
}

TEST(StrD, FifteenSignificantDigits) {
    const std::pair<double, const char*> cas[] = {
        {0, "0"}, {0.3, ".3"}, {-0.5, "-.5"}, {3.14159265358979, "3.14159265358979"},
        {1e12, "1000000000000"}, {123456789012345.0, "123456789012345"}, {1e15, "1E+15"},
        {0.0001, ".0001"}, {0.00001, "1E-05"}, {double(0.1f), ".100000001490116"},
    };
    for (const auto& [v, texte] : cas) EXPECT_EQ(StrD(v).toStdString(), texte);
}

TEST(ValNombre, ReadsTheLeadingNumberSkippingBlanks) {
    const std::pair<const char*, double> cas[] = {
        {"   12 ", 12}, {"-.5", -0.5}, {"+3", 3}, {"12abc", 12}, {"1 2", 12}, {"1E+12", 1e12},
        {"1e3", 1000}, {"1.5E-05", 1.5e-5}, {"1E+", 1}, {"1.2.3", 1.2}, {"1,5", 1}, {"abc", 0},
        {"", 0}, {"-", 0}, {".", 0}, {"1E-400", 0},
    };
    for (const auto& [texte, v] : cas) EXPECT_EQ(ValNombre(texte), v) << texte;
    EXPECT_THROW(ValNombre("1E400"), ErreurProvoquee);
    for (const float v : {-1234.5f, 1e12f, 1.5e-5f, 3.141593f, 1.234568e7f})
        EXPECT_EQ(float(ValNombre(StrF(v))), v) << v;
}
