// The number-to-text routine `StrF` (the original's Str of a Single), its
// 64-bit sibling `StrD`, and `ValNombre` (the original's Val). Part 1.4, Data model.
#include "language/erreur.h"
#include "language/nombre.h"

#include <gtest/gtest.h>

#include <cfloat>
#include <cmath>

namespace {

// Texts compared as std::string, so that a failure prints them.
std::string S(float v) { return StrF(v).toStdString(); }
std::string D(double v) { return StrD(v).toStdString(); }

} // namespace

TEST(StrF, Entiers) {
    EXPECT_EQ(S(0), "0");
    EXPECT_EQ(S(1), "1");
    EXPECT_EQ(S(12), "12");
    EXPECT_EQ(S(100), "100");
    EXPECT_EQ(S(-7), "-7");
    EXPECT_EQ(S(1000000), "1000000");
    EXPECT_EQ(S(1234567), "1234567");
    EXPECT_EQ(S(9999999), "9999999");
    EXPECT_EQ(S(-1234567), "-1234567");
}

TEST(StrF, NoLeadingZero) {
    EXPECT_EQ(S(0.5f), ".5");
    EXPECT_EQ(S(-0.5f), "-.5");
    EXPECT_EQ(S(0.25f), ".25");
    EXPECT_EQ(S(0.1f), ".1");
    EXPECT_EQ(S(-0.1f), "-.1");
}

TEST(StrF, MinusZeroIsZero) { EXPECT_EQ(S(-0.0f), "0"); }

TEST(StrF, DecimalsAndSevenDigits) {
    EXPECT_EQ(S(1.5f), "1.5");
    EXPECT_EQ(S(-1234.5f), "-1234.5");
    EXPECT_EQ(S(3.14159265f), "3.141593");
    EXPECT_EQ(S(1.0f / 3.0f), ".3333333");
    EXPECT_EQ(S(2.0f / 3.0f), ".6666667");
    EXPECT_EQ(S(0.1f + 0.2f), ".3");
    EXPECT_EQ(S(123.456f), "123.456");
    EXPECT_EQ(S(6.283185f), "6.283185");
}

TEST(StrF, ExponentFromSevenIntegerDigits) {
    EXPECT_EQ(S(1e7f), "1E+07");
    EXPECT_EQ(S(12345678.0f), "1.234568E+07");
    EXPECT_EQ(S(-12345678.0f), "-1.234568E+07");
    EXPECT_EQ(S(1e12f), "1E+12");
    EXPECT_EQ(S(1.5e10f), "1.5E+10");
    EXPECT_EQ(S(16777216.0f), "1.677722E+07");
    EXPECT_EQ(S(FLT_MAX), "3.402823E+38");
    EXPECT_EQ(S(-FLT_MAX), "-3.402823E+38");
}

TEST(StrF, ExponentBelowFourZeros) {
    EXPECT_EQ(S(0.0001f), ".0001");
    EXPECT_EQ(S(0.00012345f), ".00012345");
    EXPECT_EQ(S(0.0001234567f), ".0001234567");
    EXPECT_EQ(S(1e-5f), "1E-05");
    EXPECT_EQ(S(-1e-5f), "-1E-05");
    EXPECT_EQ(S(1.5e-5f), "1.5E-05");
    EXPECT_EQ(S(1.234567e-10f), "1.234567E-10");
    EXPECT_EQ(S(1e-30f), "1E-30");
}

TEST(StrF, TinyValues) {
    EXPECT_EQ(S(FLT_MIN), "1.175494E-38");
    EXPECT_EQ(S(std::nextafter(0.0f, 1.0f)), "1.401298E-45"); // the smallest denormal
}

TEST(StrF, RoundingAtTheSeventhDigit) {
    // 1E12 as a float is 999999995904: rounded at the 7th digit it is 1E+12.
    EXPECT_EQ(S(1000000.0f * 1000000.0f), "1E+12");
    EXPECT_EQ(S(99999992.0f), "9.999999E+07");
    EXPECT_EQ(S(12345674.0f), "1.234567E+07");
    EXPECT_EQ(S(12345676.0f), "1.234568E+07");
    // A half at the 8th digit goes away from zero.
    EXPECT_EQ(S(12345675.0f), "1.234568E+07");
    EXPECT_EQ(S(12345665.0f), "1.234567E+07");
    EXPECT_EQ(S(1234567.5f), "1234568");
    EXPECT_EQ(S(1234566.5f), "1234567");
    EXPECT_EQ(S(-1234566.5f), "-1234567");
}

TEST(StrF, RoundingDecidesTheForm) {
    // The exponent of the rounded value chooses the form.
    EXPECT_EQ(S(9.9999997e-5f), ".0001");
    EXPECT_EQ(S(-9.9999997e-5f), "-.0001");
    EXPECT_EQ(S(0.99999994f), ".9999999"); // the float below 1 keeps its 7 nines
}

TEST(StrD, FifteenDigits) {
    EXPECT_EQ(D(0), "0");
    EXPECT_EQ(D(2), "2");
    EXPECT_EQ(D(0.3), ".3");
    EXPECT_EQ(D(-0.5), "-.5");
    EXPECT_EQ(D(3.14159265358979), "3.14159265358979");
    EXPECT_EQ(D(1e12), "1000000000000");
    EXPECT_EQ(D(123456789012345.0), "123456789012345");
    EXPECT_EQ(D(1e15), "1E+15");
    EXPECT_EQ(D(0.0001), ".0001");
    EXPECT_EQ(D(0.00001), "1E-05");
    EXPECT_EQ(D(double(0.1f)), ".100000001490116");
}

TEST(ValNombre, LikeVal) {
    EXPECT_EQ(ValNombre("12"), 12);
    EXPECT_EQ(ValNombre("   12 "), 12);
    EXPECT_EQ(ValNombre(".5"), 0.5);
    EXPECT_EQ(ValNombre("-.5"), -0.5);
    EXPECT_EQ(ValNombre("+3"), 3);
    EXPECT_EQ(ValNombre("12abc"), 12);
    EXPECT_EQ(ValNombre("1 2"), 12);
    EXPECT_EQ(ValNombre("1E+12"), 1e12);
    EXPECT_EQ(ValNombre("1e3"), 1000);
    EXPECT_EQ(ValNombre("1.5E-05"), 1.5e-5);
    EXPECT_EQ(ValNombre("1E+"), 1);
    EXPECT_EQ(ValNombre("1.2.3"), 1.2);
    EXPECT_EQ(ValNombre("1,5"), 1);
    EXPECT_EQ(ValNombre("abc"), 0);
    EXPECT_EQ(ValNombre(""), 0);
    EXPECT_EQ(ValNombre("-"), 0);
    EXPECT_EQ(ValNombre("."), 0);
    EXPECT_EQ(ValNombre("1E-400"), 0);
}

TEST(ValNombre, OverflowFails) { EXPECT_THROW(ValNombre("1E400"), ErreurProvoquee); }

TEST(ValNombre, ReadsBackStrF) {
    for (const float v : {0.5f, -1234.5f, 1e12f, 1.5e-5f, 3.141593f, 1.234568e7f})
        EXPECT_EQ(float(ValNombre(StrF(v))), v) << S(v);
}
