#include <gtest/gtest.h>
#include "store/dialect.h"
TEST(Dialect, Smoke) { EXPECT_FALSE(tarvel::dialect::translate("DELETE * FROM x").sql.isEmpty()); }
