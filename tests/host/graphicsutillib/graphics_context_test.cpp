// Tests of the current graphics context.
#include "graphicsutillib/graphics_context.h"

#include <gtest/gtest.h>

TEST(GraphicsContext, NoContextUntilOneIsMadeCurrentAndNestedScopesRestore) {
  EXPECT_EQ(getContextKXRID(), -1);
  {
    graphicsutil::ContextScope outer(1, 0);
    {
      graphicsutil::ContextScope inner(7, 3);
      EXPECT_EQ(getContextKXRID(), 7);
      EXPECT_EQ(getContextIndex(), 3u);
    }
    EXPECT_EQ(getContextKXRID(), 1);
    EXPECT_EQ(getContextIndex(), 0u);
  }
  EXPECT_EQ(getContextKXRID(), -1);
}
