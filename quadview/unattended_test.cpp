// The quad view run without a person: every redraw path taken and the four views checked.
#include "quadview/unattended.h"

#include <gtest/gtest.h>

#include "testsupport/testsupport.h"

namespace {

// An empty scene: the views stay white.
GLuint CompileNothing() {
  GLuint list = glGenLists(1);
  glNewList(list, GL_COMPILE);
  glEndList();
  return list;
}

TEST(QuadViewUnattended, TakesEveryRedrawPathAndChecksTheFourViews) {
  testsupport::MsgBoxRecorder boxes;
  quadview::UnattendedQuadRun run = quadview::RunUnattended({"QuadView", true});
  ASSERT_EQ(run.status, 1) << run.result;
  EXPECT_EQ(run.result, "3") << "the form boxes start ticked with Force Redraw";
  EXPECT_TRUE(run.verdict.Passed()) << run.verdict.Text();
  std::vector<std::string> names;
  for (const auto& c : run.verdict.checks) names.push_back(c.name);
  EXPECT_EQ(names, (std::vector<std::string>{"quad view after the first paint",
                                             "quad view after a resize",
                                             "quad view after a repaint of the window",
                                             "quad view after a repaint of the views",
                                             "quad view after the last redraw"}));

  run = quadview::RunUnattended({"QuadView", false}, CompileNothing);
  EXPECT_EQ(run.status, 1);
  EXPECT_EQ(run.result, "0");
  ASSERT_NE(run.verdict.Failed(), nullptr);
  EXPECT_EQ(run.verdict.Failed()->name, "quad view after the first paint") << run.verdict.Text();
  EXPECT_TRUE(boxes.calls().empty());
}

}  // namespace
