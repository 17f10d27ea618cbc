#include "language/chaines.h"

#include <gtest/gtest.h>

TEST(Chaines, Row114French) { EXPECT_EQ(LoadResString(114), QStringLiteral("Erreur dans la ligne : ")); }
